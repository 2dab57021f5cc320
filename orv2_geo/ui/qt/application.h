// application.h: the Qt application that boxes and forms are shown in.
#pragma once

class QApplication;

namespace orv2_geo::qt {

/// The host's application when it has one, else one of our own, made on first
/// use and kept as long as the process. Null where nothing can be shown: on a
/// thread other than the application's, in a host whose application has no
/// widgets, and where no display can be opened.
QApplication* application();

}  // namespace orv2_geo::qt
