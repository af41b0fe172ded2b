#include "tests/desktop/DesktopTest.h"
#include "tests/support/GlobalMenu.h"

namespace vistrel::testbed {
namespace {

/// A desktop that shows the program's menus in a bar of its own.
class GlobalMenuTest : public DesktopTest {
 protected:
  /// Starts the program and waits for its menus.
  xcb_window_t start() {
    startVistrel();
    const xcb_window_t picker = vistrel_->picker().id();
    EXPECT_TRUE(eventually([&] { return menu_.hasMenuOf(picker); }));
    return picker;
  }
  /// Opens the menu and waits until it reads so.
  ::testing::AssertionResult opensWith(xcb_window_t window, const std::string& label,
                                       const std::string& outline) {
    menu_.open(window, label);
    std::string read;
    if (eventually([&] { return (read = menu_.outline(menu_.line(window, label))) == outline; })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "it reads:\n" << read;
  }

  GlobalMenu menu_{display_};
};

TEST_F(GlobalMenuTest, TheDesktopsOwnBarOffersWhatThePickersDoes) {
  const auto source = openSource({.title = "Save & &Close a_b", .decorated = false});
  const xcb_window_t picker = start();
  EXPECT_EQ(menu_.outline(picker), R"(Vistrel
  About Vistrel
  ---
  Hide Vistrel
  Quit Vistrel
Mirror
  Window Picker…
  Mirror Window
  Focus Mirror
  ---
  Hide All Mirrors
Window
  Minimize
  Close
)");
  EXPECT_TRUE(opensWith(picker, "Window", "Minimize\nClose\n---\nVistrel\n"));
  EXPECT_TRUE(opensWith(picker, "Focus Mirror", "(No window mirrors open)\n"));
  EXPECT_TRUE(opensWith(picker, "Mirror Window", "(Sample)\n  Save & &Close a_b\n"));
  menu_.choose(picker, "  Save & &Close a_b");
  vistrel_->panels(1);
  EXPECT_TRUE(opensWith(picker, "Focus Mirror", "Sample — Save & &Close a_b\n"));
  menu_.choose(picker, "Hide All Mirrors");
  vistrel_->panels(0);

  // The menus can be reached in the window as well, where their bar is not seen.
  activate(picker);
  input_.type(keyF10);
  input_.type(keyRight);  // on to "Mirror"
  input_.type(keyDown);   // to "Mirror Window"
  input_.type(keyRight);  // into it, to the first window
  input_.type(keyReturn);
  vistrel_->panels(1);
  input_.typeHolding(keyControl, 'w');
  EXPECT_TRUE(eventually([&] { return !isViewable(connection_, picker); }));
}

}  // namespace
}  // namespace vistrel::testbed
