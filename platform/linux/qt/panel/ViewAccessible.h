#pragma once

#include <memory>
#include <string>

#include "platform/View.h"
#include "platform/linux/qt/windows/ScreenReaders.h"

namespace vistrel::platform::linux_desktop {

class PanelAccessible;

/// What screen readers know of one view in a panel. They may hold it longer than there is a view.
class ViewAccessible final : public LeafAccessible {
 public:
  /// `panel` owns this.
  ViewAccessible(const PanelAccessible& panel, std::weak_ptr<View> view);

  /// Sends what has become of the view since the last time.
  void reportChanges();

  bool isValid() const override;
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QString text(QAccessible::Text kind) const override;
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;

 private:
  /// What a screen reader hears of without asking.
  struct Told {
    QString name;
    QString description;
    bool isShown = false;
  };

  /// Null once the view has left the panel.
  std::shared_ptr<View> view() const;
  Told current() const;
  QString description(const View& view, const std::string& label) const;

  const PanelAccessible& panel_;
  const std::weak_ptr<View> view_;
  Told told_;
};

}  // namespace vistrel::platform::linux_desktop
