#pragma once

#include <QAccessibleObject>
#include <map>
#include <memory>
#include <vector>

#include "platform/Window.h"
#include "platform/linux/qt/panel/ViewAccessible.h"

namespace vistrel::platform::linux_desktop {

class PanelWindow;

/// What screen readers know of a panel's window, which draws its views itself: its children stand
/// for those views that have a role. Made when a screen reader first asks; goes with the window.
class PanelAccessible final : public QAccessibleObject {
 public:
  explicit PanelAccessible(PanelWindow& native);
  ~PanelAccessible() override;

  /// Null once the panel has given the window up.
  platform::Window* panel() const;
  /// What is to be told of the source now; empty for nothing.
  QString situationText() const;
  /// Sends what has become of the views since the last time.
  void reportChanges();

  bool isValid() const override { return panel() != nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QString text(QAccessible::Text kind) const override;
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::Window; }
  QAccessible::State state() const override;

 private:
  std::vector<ViewAccessible*> children() const;
  ViewAccessible* accessibleOf(View& view) const;

  /// Of views that have ever been asked for. A panel's views come and go with it.
  using Ids = std::map<std::weak_ptr<View>, QAccessible::Id, std::owner_less<>>;
  mutable Ids ids_;
};

}  // namespace vistrel::platform::linux_desktop
