// x11.h: what Qt has no words for on an X display. Elsewhere nothing is done.
#pragma once

#include <QWidget>

namespace orv2_geo::qt {

/// No entry for `window` in the task bar. To be called before it is first shown.
void keep_out_of_task_bar(QWidget& window);

}  // namespace orv2_geo::qt
