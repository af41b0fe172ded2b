#pragma once

#include <QAccessible>
#include <memory>

#include "platform/View.h"

namespace vistrel::platform::linux_desktop {

class PanelAccessible;

/// What screen readers know of one view in a panel. They may hold it longer than there is a view.
class ViewAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  /// `panel` owns this.
  ViewAccessible(const PanelAccessible& panel, std::weak_ptr<View> view);

  /// Sends what has become of the view since the last time.
  void reportChanges();

  bool isValid() const override;
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

 private:
  /// What a screen reader hears of without asking.
  struct Told {
    QString name;
    bool isShown = false;
  };

  /// Null once the view has left the panel.
  std::shared_ptr<View> view() const;
  Told current() const;

  const PanelAccessible& panel_;
  const std::weak_ptr<View> view_;
  Told told_;
};

}  // namespace vistrel::platform::linux_desktop
