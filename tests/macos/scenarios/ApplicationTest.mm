#include <algorithm>

#include "tests/macos/fakes/DockFakes.h"
#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// A menu goes with its last use otherwise, and a line does not hold the menu that it is in.
#define HELD __attribute__((objc_precise_lifetime))

constexpr const char* permissionLine = "Enable Screen Recording to mirror windows…";

/// What a person does with the program as a whole.
class ApplicationLife : public MirrorScenario {
 protected:
  static NSMenu* menu(const std::string& title) {
    return line(NSApplication.sharedApplication.mainMenu, title).submenu;
  }
  static void choose(const std::string& inMenu, const std::string& title) {
    fake::forgetMessages();
    @autoreleasepool {
      fake::choose(line(menu(inMenu), title));
    }
  }
  static NSMenu* dockWindows(NSMenu* dock) { return line(dock, "Mirror a Window").submenu; }
  static std::vector<std::string> dockTitles() {
    @autoreleasepool {
      return titles(fake::openDockMenu());
    }
  }
  static std::vector<std::string> dockWindowTitles() {
    @autoreleasepool {
      return titles(dockWindows(fake::openDockMenu()));
    }
  }
  static long pickers() {
    const auto windows = fake::windows();
    return std::count_if(windows.begin(), windows.end(), [](NSWindow* window) {
      return window.title != nil && utf8(window.title) == "Vistrel";
    });
  }
  /// The picker in front and its list asked for anew.
  static void expectShownPicker() {
    EXPECT_TRUE(said({"makeKeyAndOrderFront:nil", "NSApplication#1 activateIgnoringOtherApps:1",
                      "SCShareableContent getShareableContentExcludingDesktopWindows:0 "
                      "onScreenWindowsOnly:1",
                      "VLTableView#1 reloadData"}));
    EXPECT_TRUE(picker().isShown);
    EXPECT_TRUE(picker().isKey);
    EXPECT_EQ(pickers(), 1);
  }
};

TEST_F(ApplicationLife, SaysWhatItIs) {
  desktop().version = "4.5";
  run([&] {
    desktop().alertAnswers = {NSAlertFirstButtonReturn, NSAlertFirstButtonReturn};
    choose("", "About Vistrel");
    EXPECT_TRUE(said({"NSAlert#1 setMessageText:\"Vistrel 4.5\"",
                      "NSAlert#1 setInformativeText:\"Live-mirror any on-screen window into a "
                      "floating, always-on-top panel.\n\nMade by Tollbeck.\"",
                      "NSAlert#1 addButtonWithTitle:\"OK\"", "NSAlert#1 runModal"}));
    EXPECT_THAT(desktop().alertAnswers, SizeIs(1));
    desktop().version = std::nullopt;
    choose("", "About Vistrel");
    EXPECT_TRUE(said({"setMessageText:\"Vistrel 1.0.0\"", "runModal"}));
  });
}

TEST_F(ApplicationLife, ShowsThePickerOnAClickOnItsIcon) {
  run([&] {
    for (const bool isClosed : {true, false}) {
      if (isClosed) choose("Window", "Close");
      EXPECT_EQ(picker().isShown, !isClosed);
      fake::forgetMessages();
      EXPECT_TRUE(fake::reopen());
      expectShownPicker();
    }
  });
}

TEST_F(ApplicationLife, ShowsThePickerFromItsMenus) {
  run([&] {
    choose("Window", "Close");
    choose("Mirror", "Window Picker…");
    expectShownPicker();
    dockTitles();
    countFromHere();
    choose("Window", "Close");
    fake::forgetMessages();
    @autoreleasepool {
      HELD NSMenu* const dock = fake::openDockMenu();
      fake::choose(line(dock, "Window Picker…"));
    }
    expectShownPicker();
  });
}

TEST_F(ApplicationLife, GoesOnWhenItsLastWindowIsClosed) {
  run([&] {
    choose("Window", "Close");
    EXPECT_TRUE(said({"NSWindow#1 close"}));
    EXPECT_FALSE(picker().isShown);
    fake::advance(1);
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("terminate:"))));
  });
  EXPECT_FALSE(hasTerminated());
}

TEST_F(ApplicationLife, MinimizesTheKeyWindow) {
  run([&] {
    choose("Window", "Minimize");
    EXPECT_TRUE(said({"NSWindow#1 miniaturize:"}));
    EXPECT_TRUE(picker().isMiniaturized);
  });
}

TEST_F(ApplicationLife, HidesAndComesBack) {
  run([&] {
    choose("", "Hide Vistrel");
    EXPECT_TRUE(said({"NSApplication#1 hide:NSMenuItem#"}));
    EXPECT_TRUE(NSApplication.sharedApplication.isHidden);
    fake::reopen();
    EXPECT_FALSE(NSApplication.sharedApplication.isHidden);
    EXPECT_TRUE(NSApplication.sharedApplication.isActive);
  });
}

TEST_F(ApplicationLife, QuitsWithoutFurtherAdo) {
  runWithMirror([&] {
    choose("", "Quit Vistrel");
    ADD_FAILURE() << "goes on";
  });
  EXPECT_TRUE(hasTerminated());
  EXPECT_THAT(fake::messages(), ElementsAre(HasSubstr("terminate:NSMenuItem#")));
}

TEST_F(ApplicationLife, FillsTheDockMenuEachTime) {
  run([&] {
    EXPECT_THAT(dockTitles(), ElementsAre("Window Picker…", "Mirror a Window"));
    countFromHere();
    EXPECT_THAT(dockWindowTitles(), ElementsAre("Notes", "  Plan"));
    desktop().windows = {{.id = 5, .title = "Inbox", .application = "Mail"},
                         {.id = 6, .title = "Outbox", .application = "Mail"},
                         {.id = 77, .title = "Plan", .application = "Notes"}};
    EXPECT_THAT(dockWindowTitles(),
                ElementsAre("Mail", "  Inbox", "  Outbox", "-", "Notes", "  Plan"));
    desktop().windows.erase(desktop().windows.begin(), desktop().windows.begin() + 2);
    EXPECT_THAT(dockWindowTitles(), ElementsAre("Notes", "  Plan"));
    @autoreleasepool {
      for (NSMenuItem* each in fake::openDockMenu().itemArray) {
        EXPECT_EQ(utf8(each.keyEquivalent), "");
      }
    }
  });
}

TEST_F(ApplicationLife, OpensAMirrorFromTheDock) {
  run([&] {
    dockTitles();
    countFromHere();
    @autoreleasepool {
      HELD NSMenu* const dock = fake::openDockMenu();
      NSMenuItem* const plan = line(dockWindows(dock), "  Plan");
      EXPECT_EQ(plan.state, NSControlStateValueOff);
      fake::choose(plan);
    }
    ASSERT_THAT(panels(), SizeIs(1));
    EXPECT_EQ(stream().filter.window.windowID, 77U);
    EXPECT_THAT(dockTitles(), ElementsAre("Window Picker…", "Mirror a Window", "Hide All Mirrors"));
    @autoreleasepool {
      HELD NSMenu* const dock = fake::openDockMenu();
      NSMenuItem* const plan = line(dockWindows(dock), "  Plan");
      EXPECT_EQ(plan.state, NSControlStateValueOn);
      EXPECT_FALSE(fake::isEnabled(line(dockWindows(dock), "Notes")));
      fake::choose(plan);
      EXPECT_THAT(panels(), SizeIs(1));
      fake::choose(line(dock, "Hide All Mirrors"));
    }
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(fake::streams(), IsEmpty());
    EXPECT_THAT(dockTitles(), ElementsAre("Window Picker…", "Mirror a Window"));
  });
}

TEST_F(ApplicationLife, AsksForThePermissionWhereMenusListWindows) {
  desktop().isScreenCaptureAllowed = false;
  run([&] {
    fake::forgetMessages();
    EXPECT_THAT(dockWindowTitles(), ElementsAre(permissionLine));
    EXPECT_THAT(fake::messages(), Contains("CGRequestScreenCaptureAccess"));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("getShareableContent"))));

    @autoreleasepool {
      NSMenu* const windows = line(menu("Mirror"), "Mirror Window").submenu;
      fake::forgetMessages();
      fake::open(windows);
      EXPECT_THAT(titles(windows), ElementsAre(permissionLine));
      EXPECT_THAT(fake::messages(), Contains("CGRequestScreenCaptureAccess"));
      countFromHere();
      fake::choose(line(windows, permissionLine));
    }
    EXPECT_TRUE(said({"open x-apple.systempreferences:com.apple.preference.security"
                      "?Privacy_ScreenCapture"}));
  });
}

TEST_F(ApplicationLife, DoesNotAskForAPermissionThatItHas) {
  run([&] {
    dockTitles();
    fake::open(line(menu("Mirror"), "Mirror Window").submenu);
    countFromHere();
    fake::press(button(picker().contentView, "Refresh"));
    EXPECT_THAT(fake::messages(), Not(Contains("CGRequestScreenCaptureAccess")));
  });
}

TEST_F(ApplicationLife, QuitsAlsoWhenItCannotBeLaunchedAnew) {
  desktop().isScreenCaptureAllowed = false;
  desktop().launches = false;
  run([&] {
    desktop().alertAnswers = {NSAlertFirstButtonReturn};
    fake::press(button(picker().contentView, "Allow Screen Recording…"));
  });
  EXPECT_TRUE(hasTerminated());
  EXPECT_TRUE(said({"launch /usr/bin/open -n /Applications/Vistrel.app", "terminate:nil"}));
}

TEST_F(ApplicationLife, OpensThePickerWhereItWasLast) {
  desktop().savedFrames["VistrelPicker"] = {{300, 200}, {600, 500}};
  run([&] {
    EXPECT_EQ(fake::describe(picker().frame), "{{300,200},{600,500}}");
    EXPECT_EQ(fake::describe(picker().contentView.frame.size), "{600,472}");
    fake::reopen();
    EXPECT_EQ(fake::describe(picker().frame), "{{300,200},{600,500}}");
  });
}

}  // namespace
}  // namespace vistrel
