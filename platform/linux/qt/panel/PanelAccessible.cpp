#include "platform/linux/qt/panel/PanelAccessible.h"

#include <QGuiApplication>
#include <algorithm>

#include "platform/linux/qt/panel/PanelWindow.h"

namespace vistrel::platform::linux_desktop {

namespace {

void collectElements(View& view, std::vector<View*>& elements) {
  if (view.accessibilityRole() != AccessibilityRole::none) return elements.push_back(&view);
  for (const auto& subview : view.subviews()) collectElements(*subview, elements);
}

}  // namespace

PanelAccessible::PanelAccessible(PanelWindow& native) : QAccessibleObject(&native) {}

PanelAccessible::~PanelAccessible() {
  for (const auto& [view, id] : ids_) QAccessible::deleteAccessibleInterface(id);
}

platform::Window* PanelAccessible::panel() const {
  const auto* native = static_cast<PanelWindow*>(object());
  return native == nullptr ? nullptr : native->panel();
}

QString PanelAccessible::situationText() const {
  return isValid() ? QString::fromStdString(static_cast<PanelWindow*>(object())->situationText())
                   : QString();
}

void PanelAccessible::reportChanges() {
  for (ViewAccessible* child : children()) child->reportChanges();
}

QWindow* PanelAccessible::window() const { return static_cast<PanelWindow*>(object()); }

QAccessibleInterface* PanelAccessible::parent() const {
  return QAccessible::queryAccessibleInterface(qGuiApp);
}

QAccessibleInterface* PanelAccessible::child(int index) const {
  const auto all = children();
  const auto position = static_cast<std::size_t>(index);
  return index >= 0 && position < all.size() ? all[position] : nullptr;
}

QAccessibleInterface* PanelAccessible::childAt(int x, int y) const {
  if (!isValid()) return nullptr;
  View& content = *panel()->contentView();
  const QPoint inWindow = QPoint(x, y) - rect().topLeft();
  View* hit = content.hitTest({inWindow.x() + 0.5, content.frame().height() - inWindow.y() - 0.5});
  while (hit != nullptr && hit->accessibilityRole() == AccessibilityRole::none) {
    hit = hit->superview();
  }
  return hit == nullptr ? nullptr : accessibleOf(*hit);
}

int PanelAccessible::childCount() const { return static_cast<int>(children().size()); }

int PanelAccessible::indexOfChild(const QAccessibleInterface* child) const {
  const auto all = children();
  const auto found = std::find(all.begin(), all.end(), child);
  return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

QString PanelAccessible::text(QAccessible::Text kind) const {
  if (kind == QAccessible::Description) return situationText();
  if (!isValid() || kind != QAccessible::Name) return {};
  const std::string label = panel()->contentView()->accessibilityLabel();
  return label.empty() ? window()->title() : QString::fromStdString(label);
}

QRect PanelAccessible::rect() const { return isValid() ? window()->geometry() : QRect(); }

QAccessible::State PanelAccessible::state() const {
  QAccessible::State state;
  state.invalid = !isValid();
  state.invisible = !isValid() || !window()->isVisible();
  return state;
}

std::vector<ViewAccessible*> PanelAccessible::children() const {
  if (!isValid()) return {};
  std::vector<View*> elements;
  collectElements(*panel()->contentView(), elements);
  std::vector<ViewAccessible*> children;
  children.reserve(elements.size());
  for (View* element : elements) children.push_back(accessibleOf(*element));
  return children;
}

ViewAccessible* PanelAccessible::accessibleOf(View& view) const {
  auto& id = ids_[view.weak_from_this()];
  if (id == 0) {
    id = QAccessible::registerAccessibleInterface(new ViewAccessible(*this, view.weak_from_this()));
  }
  return static_cast<ViewAccessible*>(QAccessible::accessibleInterface(id));
}

}  // namespace vistrel::platform::linux_desktop
