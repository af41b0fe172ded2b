#include "platform/linux/qt/Pointer.h"

#include <QCursor>

#include "platform/Event.h"
#include "platform/linux/qt/ScreenList.h"

namespace vistrel::platform::linux_desktop {

namespace {

const DispatchedPosition* innermost = nullptr;  // main thread

}  // namespace

Point pointerLocation() {
  const QPointF position = innermost != nullptr ? innermost->position_ : QPointF(QCursor::pos());
  return ScreenList::space().fromDesktop(position);
}

DispatchedPosition::DispatchedPosition(QPointF position) : position_(position), outer_(innermost) {
  innermost = this;
}

DispatchedPosition::~DispatchedPosition() { innermost = outer_; }

std::uint64_t modifierFlags(Qt::KeyboardModifiers modifiers) {
  std::uint64_t flags = modifierNone;
  if (modifiers.testFlag(Qt::ShiftModifier)) flags |= modifierShift;
  if (modifiers.testFlag(Qt::AltModifier)) flags |= modifierOption;
  if (modifiers.testFlag(Qt::ControlModifier)) flags |= modifierCommand;
  if (modifiers.testFlag(Qt::MetaModifier)) flags |= modifierControl;
  return flags;
}

}  // namespace vistrel::platform::linux_desktop
