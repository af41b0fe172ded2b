#include "platform/linux/qt/panel/ViewAccessible.h"

#include <QWindow>
#include <utility>

#include "platform/linux/qt/panel/PanelAccessible.h"

namespace vistrel::platform::linux_desktop {

namespace {

QAccessible::Role qtRole(AccessibilityRole role) {
  switch (role) {
    case AccessibilityRole::none:
      return QAccessible::NoRole;
    case AccessibilityRole::staticText:
      return QAccessible::StaticText;
    case AccessibilityRole::status:
      return QAccessible::AlertMessage;
    case AccessibilityRole::button:
      return QAccessible::PushButton;
    case AccessibilityRole::image:
      return QAccessible::Graphic;
    case AccessibilityRole::growArea:
      return QAccessible::Grip;
  }
  return QAccessible::NoRole;
}

const QString& qtName(AccessibilityAction action) {
  switch (action) {
    case AccessibilityAction::press:
      return QAccessibleActionInterface::pressAction();
    case AccessibilityAction::increment:
      return QAccessibleActionInterface::increaseAction();
    case AccessibilityAction::decrement:
      return QAccessibleActionInterface::decreaseAction();
  }
  return QAccessibleActionInterface::pressAction();
}

bool showsPicture(const View& view) {
  return view.layer() != nullptr && view.layer()->contents() != nullptr;
}

}  // namespace

ViewAccessible::ViewAccessible(const PanelAccessible& panel, std::weak_ptr<View> view)
    : panel_(panel), view_(std::move(view)), told_(current()) {}

void ViewAccessible::reportChanges() {
  const Told before = std::exchange(told_, current());
  const bool isRenamed = told_.name != before.name;
  if (isRenamed) report(*this, QAccessible::NameChanged);
  if (told_.description != before.description) report(*this, QAccessible::DescriptionChanged);
  if (before.isShown && !told_.isShown) report(*this, QAccessible::ObjectHide);
  // Screen readers read a message out when it comes to be shown, and only then.
  const bool isNewMessage = isRenamed && role() == QAccessible::AlertMessage;
  if (told_.isShown && (!before.isShown || isNewMessage)) report(*this, QAccessible::ObjectShow);
}

bool ViewAccessible::isValid() const { return view() != nullptr; }

QWindow* ViewAccessible::window() const { return panel_.window(); }

QAccessibleInterface* ViewAccessible::parent() const {
  return QAccessible::queryAccessibleInterface(panel_.window());
}

QString ViewAccessible::text(QAccessible::Text kind) const {
  const auto view = this->view();
  if (!view) return {};
  const std::string label = view->accessibilityLabel();
  if (kind == QAccessible::Name) return QString::fromStdString(label);
  return kind == QAccessible::Description ? description(*view, label) : QString();
}

QString ViewAccessible::description(const View& view, const std::string& label) const {
  if (showsPicture(view)) return panel_.situationText();
  return view.toolTip() == label ? QString() : QString::fromStdString(view.toolTip());
}

QRect ViewAccessible::rect() const {
  const auto view = this->view();
  if (!view) return {};
  const Rect frame = view->frameInWindowFromTop();
  return QRectF(frame.minX(), frame.minY(), frame.width(), frame.height())
      .toAlignedRect()
      .translated(panel_.rect().topLeft());
}

QAccessible::Role ViewAccessible::role() const {
  const auto view = this->view();
  return qtRole(view ? view->accessibilityRole() : AccessibilityRole::none);
}

QAccessible::State ViewAccessible::state() const {
  QAccessible::State state;
  const auto view = this->view();
  state.invalid = !view;
  state.invisible = !view || view->isHiddenOrHasHiddenAncestor() || panel_.state().invisible;
  return state;
}

void* ViewAccessible::interface_cast(QAccessible::InterfaceType type) {
  if (type != QAccessible::ActionInterface || actionNames().isEmpty()) return nullptr;
  return static_cast<QAccessibleActionInterface*>(this);
}

QStringList ViewAccessible::actionNames() const {
  QStringList names;
  const auto view = this->view();
  if (!view) return names;
  for (const AccessibilityAction action : view->accessibilityActions()) {
    names.append(qtName(action));
  }
  return names;
}

void ViewAccessible::doAction(const QString& name) {
  const auto view = this->view();
  if (!view) return;
  for (const AccessibilityAction action : view->accessibilityActions()) {
    if (qtName(action) == name) return view->accessibilityPerform(action);
  }
}

std::shared_ptr<View> ViewAccessible::view() const {
  auto view = view_.lock();
  return view && panel_.panel() != nullptr && view->window() == panel_.panel() ? view : nullptr;
}

ViewAccessible::Told ViewAccessible::current() const {
  const auto view = this->view();
  if (!view) return {};
  return {text(QAccessible::Name), text(QAccessible::Description),
          !view->isHiddenOrHasHiddenAncestor()};
}

}  // namespace vistrel::platform::linux_desktop
