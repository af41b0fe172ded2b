// Takes the pictures of the guide from the running program: a private display, ordinary windows,
// and a person at the pointer and the keyboard.

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include "tests/desktop/demo/DemoDesktop.h"
#include "tests/support/EmbeddingTray.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

using enum DemoDesktop::Program;

Rect around(Rect a, Rect b) {
  const int left = std::min(a.x, b.x);
  const int top = std::min(a.y, b.y);
  return {left, top, std::max(a.x + a.width, b.x + b.width) - left,
          std::max(a.y + a.height, b.y + b.height) - top};
}

/// The person, and where the pictures go.
class Photographer {
 public:
  Photographer(DemoDesktop& desktop, std::filesystem::path folder)
      : desktop_(desktop), folder_(std::move(folder)) {}

  void takeAll() {
    desktop_.start();
    movePickerAside();
    takePicker();
    takeAbout();
    const PanelOnScreen panel = desktop_.mirror(tide, 1);
    // There the menu over it lies beside all other windows.
    constexpr Point corner{24, 24};
    dragTo(panel, corner, corner);
    takePanel(panel);
    takeContextMenu(panel);
    takeRolledUp(panel);
    takeSnapped(panel);
    takeTrayMenu();
  }

 private:
  /// To where no other window lies under it.
  void movePickerAside() {
    const xcb_window_t picker = desktop_.vistrel().picker().id();
    desktop_.vistrel().pickerRows(3);
    desktop_.activate(picker);
    // EWMH 1.5, _NET_MOVERESIZE_WINDOW: x alone, by a pager
    constexpr std::uint32_t xByPager = 1 << 8 | 2 << 12;
    constexpr std::uint32_t aside = 1432;
    desktop_.connection().sendToManager(picker, "_NET_MOVERESIZE_WINDOW", {xByPager, aside});
    await("the picker did not go aside", [&] { return pickerFrame().x > 1400; });
  }
  Rect pickerFrame() const { return desktop_.framedArea(desktop_.vistrel().picker().id()); }

  void takePicker() { save("picker", pickerFrame()); }

  void takePanel(const PanelOnScreen& panel) { save("panel", panel.area()); }

  void takeContextMenu(const PanelOnScreen& panel) {
    desktop_.hand().moveTo(panel.contents().centre());
    desktop_.hand().click(1, InputDriver::Button::right);
    const xcb_window_t menu = awaitWindow(
        "a menu", [&](xcb_window_t window) { return isUnmanaged(desktop_.connection(), window); });
    const Rect area = desktop_.framedArea(menu);
    const ScreenReader screen(desktop_.connection());
    const Picture before = screen.read(area);
    desktop_.hand().type(keyDown);
    await("no line of the menu is chosen", [&] { return screen.read(area) != before; });
    save("context-menu", around(panel.area(), area));
    desktop_.hand().type(keyEscape);
  }

  /// With the lists of windows that it opens.
  void takeTrayMenu() {
    const Rect bar{1480, 860, 320, 24};
    EmbeddingTray tray(desktop_.display().name(), bar);
    const xcb_window_t icon = tray.icon();
    const Rect area = areaOf(desktop_.connection(), icon).value();
    const ScreenReader screen(desktop_.connection());
    await("the icon is not drawn",
          [&] { return screen.readAll().at(area.centre()) != EmbeddingTray::grey; });
    desktop_.hand().rest(betweenClicks);
    // The menu opens below the pointer, and is to leave the icon to be seen.
    const Point foot{area.centre().x, area.y + area.height - 1};
    desktop_.hand().clickAt(foot, 1, InputDriver::Button::right);
    const auto isMenu = [&](xcb_window_t window) {
      return window != icon && isUnmanaged(desktop_.connection(), window);
    };
    const xcb_window_t menu = awaitWindow("the icon's menu", isMenu);
    for (const std::uint32_t key : {keyDown, keyDown, keyRight}) desktop_.hand().type(key);
    const xcb_window_t windows = awaitWindow("its list of windows", [&](xcb_window_t window) {
      return window != menu && isMenu(window);
    });
    save("tray-menu", around(bar, around(desktop_.framedArea(menu), desktop_.framedArea(windows))));
    for (int open = 0; open < 2; ++open) desktop_.hand().type(keyEscape);
  }

  /// A second mirror, dragged so close below the first that it jumps onto its edge.
  void takeSnapped(const PanelOnScreen& panel) {
    const PanelOnScreen second = desktop_.mirror(builder, 2);
    const Rect area = panel.area();
    constexpr int close = 6;
    dragTo(second, {area.x + area.width + close, area.y + close}, {area.x + area.width, area.y});
    save("snapped", around(area, second.area()));
  }

  void takeRolledUp(const PanelOnScreen& panel) {
    const int full = panel.area().height;
    doubleClickTitle(panel, PanelOnScreen::titleBarHeight);
    save("rolled-up", panel.area());
    doubleClickTitle(panel, full);
  }
  void doubleClickTitle(const PanelOnScreen& panel, int heightAfter) {
    desktop_.hand().rest(betweenClicks);
    desktop_.hand().clickAt(panel.titleBar(), 2);
    await("a panel did not roll", [&] { return panel.area().height == heightAfter; });
  }

  void takeAbout() {
    const xcb_window_t picker = desktop_.vistrel().picker().id();
    for (const std::uint32_t key : {keyF10, keyDown, keyReturn}) desktop_.hand().type(key);
    const xcb_window_t about = awaitWindow("the About box", [&](xcb_window_t window) {
      return window != picker && frameExtentsOf(desktop_.connection(), window) &&
             hasState(desktop_.connection(), window, "_NET_WM_STATE_MODAL");
    });
    save("about", desktop_.framedArea(about));
    desktop_.hand().type(keyEscape);
  }

  /// Drags the panel so that its corner comes to `to`, from where it jumps to `end`.
  void dragTo(const PanelOnScreen& panel, Point to, Point end) {
    const Rect area = panel.area();
    const Point from = panel.contents().centre();
    desktop_.hand().rest(betweenClicks);
    desktop_.hand().drag(from, {from.x + to.x - area.x, from.y + to.y - area.y}, 20);
    await("a panel did not go where it was dragged", [&] {
      // A compositing manager shows it there a moment after it is there.
      return panel.area() == Rect{end.x, end.y, area.width, area.height} &&
             panel.dot() == Dot::live;
    });
  }

  template <class Condition>
  void await(const std::string& complaint, const Condition& isThere) {
    if (!eventually(isThere)) throw std::runtime_error(complaint);
  }

  template <class Condition>
  xcb_window_t awaitWindow(const std::string& what, const Condition& isIt) {
    xcb_window_t found = XCB_WINDOW_NONE;
    await(what + " did not open", [&] {
      const auto windows =
          windowsOfProcess(desktop_.connection(), desktop_.vistrel().process().pid());
      const auto it = std::ranges::find_if(windows, [&](xcb_window_t window) {
        return isViewable(desktop_.connection(), window) && isIt(window);
      });
      if (it != windows.end()) found = *it;
      return found != XCB_WINDOW_NONE;
    });
    return found;
  }

  /// What is there and a little around it.
  void save(const std::string& name, Rect area) {
    constexpr int margin = 16;
    const Rect part = intersection(
        {area.x - margin, area.y - margin, area.width + 2 * margin, area.height + 2 * margin});
    ScreenReader(desktop_.connection()).read(part).savePng(folder_ / (name + ".png"));
  }
  Rect intersection(Rect part) const {
    const Picture screen = desktop_.screen();
    const int left = std::max(part.x, 0);
    const int top = std::max(part.y, 0);
    return {left, top, std::min(part.x + part.width, screen.width()) - left,
            std::min(part.y + part.height, screen.height()) - top};
  }

  static constexpr std::uint32_t betweenClicks = 700;

  DemoDesktop& desktop_;
  const std::filesystem::path folder_;
};

void takePictures(const std::filesystem::path& folder) {
  DemoDesktop desktop(
      {.width = 1920, .height = 1080, .windowManager = WindowManager::xfwm4Compositing});
  Photographer(desktop, folder).takeAll();
}

}  // namespace
}  // namespace vistrel::testbed

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: vistrel-guide-pictures FOLDER\n";
    return EXIT_FAILURE;
  }
  try {
    vistrel::testbed::takePictures(argv[1]);
    return EXIT_SUCCESS;
  } catch (const std::exception& failure) {
    std::cerr << "The pictures cannot be taken: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
}
