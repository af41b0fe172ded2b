#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/DBus.h"
#include "tests/support/Rect.h"

namespace vistrel::testbed {

/// A line of an icon's menu as a tray shows it.
struct TrayMenuLine {
  int number = 0;
  /// As it came, with underscores that mark mnemonics.
  std::string label;
  bool isEnabled = true;
  bool isSeparator = false;
  bool isCheckable = false;
  bool isOn = false;
  bool opensSubmenu = false;
  std::vector<TrayMenuLine> children = {};

  /// What a person reads.
  std::string title() const;
};

/// The lines from the top, each as `MenuOnScreen::lines` has them, those of submenus indented below
/// what opens them.
std::string textOf(const std::vector<TrayMenuLine>& lines);

/// An icon in a tray as a person uses it who has a tray of the status notifier protocol
/// (org.kde.StatusNotifierItem, com.canonical.dbusmenu). Throws BusError when it does not answer.
class TrayItem {
 public:
  explicit TrayItem(BusObject item);

  std::string text(const char* property) const;
  bool truth(const char* property) const;
  std::string toolTipTitle() const;
  struct Pixmap {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;  // alpha, red, green, blue
  };
  std::vector<Pixmap> pixmaps() const;

  /// A click.
  void activate() const { item_.call(itemInterface, "Activate", "ii", 0, 0); }
  /// A click with the other button in a tray that does not show the menu itself.
  void askForMenu(Point at) const { item_.call(itemInterface, "ContextMenu", "ii", at.x, at.y); }

  /// How trays let a program know that its menu opens: most ask it beforehand, whose answer some do
  /// not heed but wait to be told; some tell it while what they have read earlier is open already;
  /// some just read.
  enum class Opening { asked, askedInVain, told, read };
  std::vector<TrayMenuLine> openMenu(Opening opening = Opening::asked);
  /// Chooses the line of that title, in a submenu perhaps; the menu closes. Throws
  /// std::runtime_error when there is none.
  void choose(const std::vector<TrayMenuLine>& menu, const std::string& title) const;
  /// Whether the program has told trays, since this was last asked or the menu last opened, that
  /// the menu has become another one.
  bool wasToldOfNewLayout();
  void closeMenu() const { tell(wholeMenu, "closed"); }

 private:
  static constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
  static constexpr int wholeMenu = 0;

  /// `types` are those of the value, which `read` reads.
  template <class Read>
  auto property(const char* name, const char* types, const Read& read) const {
    BusMessage reply =
        item_.call("org.freedesktop.DBus.Properties", "Get", "ss", itemInterface, name);
    return reply.structure(
        types, [&] { return read(reply); }, SD_BUS_TYPE_VARIANT);
  }
  std::vector<TrayMenuLine> readMenu() const;
  void tell(int number, const char* event) const;
  void waitUntilToldOfNewLayout();

  BusObject item_;
  BusObject menu_;
  std::vector<TrayMenuLine> lastRead_;
};

}  // namespace vistrel::testbed
