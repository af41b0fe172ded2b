#pragma once

#include <QStringList>
#include <QTimer>
#include <QVariant>
#include <functional>
#include <memory>

#include "platform/Menu.h"
#include "platform/linux/qt/tray/ExportedObject.h"
#include "platform/linux/qt/tray/MenuOpenings.h"
#include "platform/linux/qt/tray/NumberedMenu.h"

namespace vistrel::platform::linux_desktop {

/// A menu that other programs show (com.canonical.dbusmenu). It is made anew each time a person
/// opens it, however the host that shows it lets us know. A chosen item's action is sent at a later
/// turn of the main queue. Main thread.
class BusMenu final : public ExportedObject {
 public:
  /// `make` gives the menu as it is to be shown now; the host waits for it.
  BusMenu(const QDBusConnection& bus, const QString& path,
          std::function<std::shared_ptr<Menu>()> make);

  /// It would be another one now. A host that has read it hears of that a little later, and may
  /// read it anew: some show what they have read before they tell of an opening, and cannot make
  /// room for another line then.
  void mayHaveChanged();

 private:
  void addQuestions();
  void addSigns();

  bool begins(MenuSign sign);
  void isAboutToBeRead();
  void makeAnew();
  void replace();
  void announceChange();
  std::optional<MenuLayout> layout(int number, int depth, const QStringList& names) const;
  QList<NumberedProperties> properties(const QList<int>& numbers, const QStringList& names) const;

  /// Whether what the host has read of `number` is out of date.
  bool isAboutToShow(int number);
  /// False when there is no such line.
  bool receive(int number, const QString& event);
  bool choose(int number);
  std::shared_ptr<MenuItem> item(int number) const;

  const std::function<std::shared_ptr<Menu>()> make_;
  MenuOpenings openings_;
  NumberedMenu current_;
  NumberedMenu former_;  // which a person may still be looking at
  unsigned revision_ = 0;
  /// Whether a host has read it since it was last said to be out of date.
  bool isRead_ = false;
  bool isOutdated_ = false;
  QTimer changed_;
};

}  // namespace vistrel::platform::linux_desktop
