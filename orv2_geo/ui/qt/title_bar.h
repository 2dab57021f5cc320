// title_bar.h: the title bar of a tool window, drawn by the window itself.
#pragma once

#include <QAbstractButton>
#include <QWidget>

namespace orv2_geo::qt {

/// The window's title and a box that closes it, and nothing to minimise it by.
/// A window manager's own bar may be too wide for a small form: beside its boxes
/// the title would be cut. The window is moved by this bar.
class TitleBar final : public QWidget {
 public:
  explicit TitleBar(QWidget* window);

  static constexpr int height = 21;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QAbstractButton* close_;
};

}  // namespace orv2_geo::qt
