#include "orv2_geo/ui/qt/pointer.h"

#include <QCursor>
#include <QGuiApplication>

namespace orv2_geo::qt {

BusyPointer::BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }

BusyPointer::~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }

PointerAtRest::PointerAtRest() {
  const QCursor* pointer = QGuiApplication::overrideCursor();
  was_busy_ = pointer != nullptr && pointer->shape() == Qt::WaitCursor;
  if (was_busy_) QGuiApplication::restoreOverrideCursor();
}

PointerAtRest::~PointerAtRest() {
  if (was_busy_) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

}  // namespace orv2_geo::qt
