// host.h: a host that does anything the C header lets it do, at any moment.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/source.h"
#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::fuzzing {

/// A host with variables, arrays, texts, objects of the library and of its own, boxes
/// and forms. What it does next, the bytes tell. Its callbacks do more of the same: they
/// release, resize and write what a call under way works with.
class Host {
 public:
  Host(const std::uint8_t* data, std::size_t size);
  /// Gives everything back; each release must succeed, and each object of the host's own
  /// be told of its end.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Everything that the bytes say.
  void act_to_the_end();

  /// Of the library's objects that are left each still answers.
  void expect_usable();

 private:
  static constexpr std::size_t places = 8;  // variables of a type
  static constexpr std::size_t most_arguments = 14;
  static constexpr int deepest = 3;  // callbacks within calls
  static constexpr int most_acts = 60;
  static constexpr int most_callbacks = 200;

  /// A handle and the references that the host has to give back.
  struct Owned {
    orv2_handle handle = 0;
    std::uint16_t type = 0;  // ORV2_OBJECT, ORV2_TEXT, ORV2_..._ARRAY
    int references = 0;
  };

  /// What an array of the host's lies in, and what a resizing of it needs.
  struct Buffer {
    Host* host;
    std::size_t element_size;
    std::unique_ptr<char[]> bytes;
    std::size_t count;
  };

  // Things.
  orv2_handle new_object();
  orv2_handle new_host_object();
  orv2_handle new_text();
  orv2_handle new_array(std::uint16_t type);
  orv2_handle array_of_library(std::uint16_t type);
  orv2_handle array_of_host(std::uint16_t type);
  void fill(orv2_handle array, std::uint16_t type);
  void renew(Owned& owned);
  void give_back(Owned& owned);
  Owned& any() { return things_[source_->below(things_.size())]; }
  orv2_handle any_of(std::uint16_t type);
  orv2_handle any_handle();
  orv2_handle any_object();
  std::uint32_t any_count();
  std::int32_t any_lower();

  // Values.
  void write_variables();
  void* variable_of(std::uint16_t type);
  orv2_value value_of(std::uint16_t type);
  orv2_value any_value();
  std::size_t arguments_for(orv2_handle object, std::size_t position, orv2_value* arguments);

  // Acts.
  void act();
  void call_member();
  void call_by_name();
  void call_rows();
  void work_on_array();
  void work_on_text();
  void look_around();
  void look_at_form();
  void use_form();
  const char* control_name();

  // Statuses.
  std::int32_t checked(std::int32_t status);
  bool is_known(std::int32_t status) const;
  void expect_call(std::int32_t status, const orv2_value& result);
  std::int32_t answer();

  // Callbacks.
  template <class Work>
  std::int32_t called_back(Work&& work) noexcept;
  void write_into(const orv2_value& value);
  static std::int32_t on_set(void* host, const char* name, const orv2_value* value);
  static std::int32_t on_call(void* host, const char* name, const orv2_value* arguments,
                              std::size_t count, orv2_value* result);
  static void on_release(void* host);
  static std::int32_t on_box(void* host, const char* text, std::int32_t flags, const char* caption);
  static std::int32_t on_form(void* host, orv2_form* form);
  static std::int32_t on_events(void* host);
  static std::int32_t on_resize(void* buffer, std::int32_t old_lower, std::uint32_t old_count,
                                std::int32_t lower, std::uint32_t count, std::int16_t keep,
                                void** data);

  Source bytes_;
  Source* source_ = &bytes_;
  std::uint32_t points_;     // what arrays and counts mostly agree on
  std::size_t number_kind_;  // and what numbers they mostly hold
  std::array<Owned, 18> things_{};
  std::vector<std::unique_ptr<Buffer>> buffers_;
  std::array<double, places> doubles_{};
  std::array<float, places> singles_{};
  std::array<std::int32_t, places> longs_{};
  std::array<std::int16_t, places> shorts_{};
  std::array<orv2_handle, places> variables_{};
  std::vector<std::int32_t> answers_;  // failures of the host's own
  std::string lent_;                   // what the host's last answer points at
  orv2_form* form_ = nullptr;          // on the screen
  std::string name_;                   // of a control
  int depth_ = 0;
  int acts_ = 0;
  int callbacks_ = 0;
  int awaited_ = 0;  // objects of the host's own that are not told of their end yet
};

}  // namespace orv2_geo::fuzzing
