// recording_interface.h: a user interface that writes down what it shows.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo::testing_support {

class RecordingInterface final : public UserInterface {
 public:
  struct Box {
    std::string text;
    std::int32_t flags;
    std::optional<std::string> caption;
    friend bool operator==(const Box&, const Box&) = default;
  };

  RecordingInterface() : before_(install_user_interface(this)) {}
  ~RecordingInterface() override { install_user_interface(before_); }
  RecordingInterface(const RecordingInterface&) = delete;
  RecordingInterface& operator=(const RecordingInterface&) = delete;

  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    boxes.push_back({text.to_utf8(), flags, std::nullopt});
    if (caption != nullptr) boxes.back().caption = caption->to_utf8();
  }
  void show_modal(Form& form) override {
    if (user) user(form);
  }
  void handle_events() override { ++yields; }

  std::vector<Box> boxes;
  std::function<void(Form&)> user;
  int yields = 0;

 private:
  UserInterface* before_;
};

}  // namespace orv2_geo::testing_support
