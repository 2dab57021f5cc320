// x11.h: what Qt has no words for on an X display. On another platform nothing is
// done and nothing found.
#pragma once

#include <QRect>
#include <QWidget>
#include <QWindow>
#include <cstdint>

namespace orv2_geo::qt {

/// No entry for `window` in the task bar. To be called before it is first shown.
void keep_out_of_task_bar(QWidget& window);

/// The window on the screen that is `number`, or holds it; 0 when there is none.
std::uint64_t host_window_named(std::uint64_t number);

/// The active window when it is this process's, else the topmost one of this
/// process's that is on the screen; 0 when there is none.
std::uint64_t host_window_in_front();

/// Where it is, without its frame; null once it is gone.
QRect host_window_place(std::uint64_t number);

/// Tells Qt where `window` is: some window managers never do for one without a
/// frame of theirs, and what Qt puts beside it would come up elsewhere.
void correct_place(QWindow& window);

}  // namespace orv2_geo::qt
