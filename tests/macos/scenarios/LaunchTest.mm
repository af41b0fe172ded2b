#include "tests/macos/scenarios/Scenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Launch : public Scenario {
 protected:
  static NSTableView* table() {
    return static_cast<NSTableView*>(findView(picker().contentView, [NSTableView class]));
  }
  static NSButton* grantButton() { return button(picker().contentView, "Allow Screen Recording…"); }
};

NSMenu* submenu(NSMenu* menu, const std::string& title) { return line(menu, title).submenu; }

TEST_F(Launch, TellsTheApplicationInAppKitsOrder) {
  run([] {
    EXPECT_TRUE(
        said({"NSApplication#1 setActivationPolicy:0", "setDelegate:VLApplicationDelegate#1",
              "NSApplication#1 run", "finishLaunching", "NSApplication#1 setMainMenu:NSMenu#",
              "NSApplication#1 setWindowsMenu:NSMenu#", "makeKeyAndOrderFront:nil",
              "activateIgnoringOtherApps:1",
              "SCShareableContent getShareableContentExcludingDesktopWindows:0 "
              "onScreenWindowsOnly:1 completionHandler:a block",
              "VLTableView#1 reloadData"}));
  });
}

TEST_F(Launch, BuildsTheMenuBar) {
  run([] {
    NSMenu* const bar = NSApplication.sharedApplication.mainMenu;
    EXPECT_THAT(titles(bar), ElementsAre("", "Mirror", "Window"));
    EXPECT_THAT(titles(submenu(bar, "")),
                ElementsAre("About Vistrel", "-", "Hide Vistrel", "Quit Vistrel"));
    NSMenu* const mirror = submenu(bar, "Mirror");
    EXPECT_THAT(titles(mirror), ElementsAre("Window Picker…", "Mirror Window", "Focus Mirror", "-",
                                            "Hide All Mirrors"));
    NSMenu* const window = submenu(bar, "Window");
    EXPECT_THAT(titles(window), ElementsAre("Minimize", "Close"));
    EXPECT_EQ(NSApplication.sharedApplication.windowsMenu, window);

    EXPECT_EQ(utf8(line(mirror, "Window Picker…").keyEquivalent), "n");
    EXPECT_EQ(utf8(line(submenu(bar, ""), "Hide Vistrel").keyEquivalent), "h");
    EXPECT_EQ(utf8(line(submenu(bar, ""), "Quit Vistrel").keyEquivalent), "q");
    EXPECT_EQ(utf8(line(window, "Minimize").keyEquivalent), "m");
    EXPECT_EQ(utf8(line(window, "Close").keyEquivalent), "w");
    for (NSMenu* menu : {submenu(bar, ""), mirror, window}) {
      for (NSMenuItem* each in menu.itemArray) {
        EXPECT_TRUE(each.isSeparator || fake::isEnabled(each)) << utf8(each.title);
      }
    }
  });
}

TEST_F(Launch, FillsTheMenuOfWindowsEachTimeItIsOpened) {
  desktop().windows = {{.title = "Plan", .application = "Notes"}};
  run([&] {
    NSMenu* const menu =
        submenu(submenu(NSApplication.sharedApplication.mainMenu, "Mirror"), "Mirror Window");
    fake::open(menu);
    countFromHere();
    EXPECT_THAT(titles(menu), Contains(HasSubstr("Plan")));
    desktop().windows = {{.title = "Inbox", .application = "Mail"}};
    fake::open(menu);
    EXPECT_THAT(titles(menu), Contains(HasSubstr("Inbox")));
    EXPECT_THAT(titles(menu), Not(Contains(HasSubstr("Plan"))));
    desktop().windows = {{.title = "Plan", .application = "Notes"}};
    fake::open(menu);
  });
}

TEST_F(Launch, MakesThePickersWindow) {
  run([] {
    EXPECT_TRUE(
        said({"NSWindow#1 initWithContentRect:{{0,0},{460,420}} styleMask:15 backing:2 defer:0",
              "NSWindow#1 setReleasedWhenClosed:0", "NSWindow#1 setTitle:\"Vistrel\"",
              "NSWindow#1 center", "NSWindow#1 setFrameUsingName:\"VistrelPicker\"",
              "NSWindow#1 setFrameAutosaveName:\"VistrelPicker\"",
              "NSWindow#1 makeKeyAndOrderFront:nil"}));
    EXPECT_TRUE(picker().isKey);
    EXPECT_EQ(NSApplication.sharedApplication.keyWindow, picker());
  });
}

TEST_F(Launch, TiesThePickersViewsTogether) {
  run([] {
    NSView* const content = picker().contentView;
    const std::string root = fake::describe(content);
    const std::string scroll = fake::describe(findView(content, [NSScrollView class]));
    const std::string mirror = fake::describe(button(content, "Mirror"));
    const std::string refresh = fake::describe(button(content, "Refresh"));
    const std::string grant = fake::describe(grantButton());
    const auto tie = [](const std::string& first, NSLayoutAttribute a, const std::string& second,
                        NSLayoutAttribute b, double constant) {
      return "NSLayoutConstraint constraintWithItem:" + first + " attribute:" + std::to_string(a) +
             " relatedBy:0 toItem:" + second + " attribute:" + std::to_string(b) +
             " multiplier:1 constant:" + fake::describeNumber(constant);
    };
    for (const std::string& each :
         {tie(scroll, NSLayoutAttributeLeading, root, NSLayoutAttributeLeading, 18),
          tie(scroll, NSLayoutAttributeTrailing, root, NSLayoutAttributeTrailing, -18),
          tie(scroll, NSLayoutAttributeBottom, root, NSLayoutAttributeBottom, -56),
          tie(refresh, NSLayoutAttributeBottom, root, NSLayoutAttributeBottom, -14),
          tie(grant, NSLayoutAttributeLeading, refresh, NSLayoutAttributeTrailing, 8),
          tie(grant, NSLayoutAttributeCenterY, refresh, NSLayoutAttributeCenterY, 0),
          tie(mirror, NSLayoutAttributeTrailing, root, NSLayoutAttributeTrailing, -18)}) {
      EXPECT_THAT(fake::messages(), Contains(each));
    }
    EXPECT_EQ(fake::activeConstraints(content), 14);
    EXPECT_FALSE(button(content, "Mirror").translatesAutoresizingMaskIntoConstraints);
    EXPECT_EQ(utf8(button(content, "Mirror").keyEquivalent), "\r");
  });
}

TEST_F(Launch, ListsWindowsThatAreWorthMirroring) {
  desktop().windows = {{.id = 1, .title = "Plan", .application = "Notes"},
                       {.id = 2, .title = "Shelf", .application = "Dock", .layer = 20},
                       {.id = 3, .title = "Inbox", .application = "Mail"},
                       {.id = 4, .title = "Away", .application = "Mail", .isOnScreen = false}};
  run([] {
    EXPECT_THAT(rows(table()), ElementsAre("Mail — Inbox", "Notes — Plan"));
    EXPECT_THAT(shownTexts(picker().contentView),
                ElementsAre("Mirror a window", "2 windows — double-click to mirror."));
    EXPECT_TRUE(grantButton().isHidden);
  });
}

TEST_F(Launch, AsksForThePermissionThatIsRefused) {
  desktop().isScreenCaptureAllowed = false;
  desktop().windows = {{}};
  run([] {
    EXPECT_THAT(fake::messages(), Contains("CGRequestScreenCaptureAccess"));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("getShareableContent"))));
    EXPECT_THAT(rows(table()), IsEmpty());
    EXPECT_FALSE(grantButton().isHidden);
    EXPECT_THAT(shownTexts(picker().contentView),
                Contains("Click “Allow Screen Recording…”, enable Vistrel, then Refresh."));
  });
}

TEST_F(Launch, ListsWindowsWhenThePermissionIsGrantedLater) {
  desktop().isScreenCaptureAllowed = false;
  run([&] {
    desktop().alertAnswers = {NSAlertFirstButtonReturn + 1};
    fake::press(grantButton());
    EXPECT_TRUE(
        said({"CGRequestScreenCaptureAccess",
              "open x-apple.systempreferences:com.apple.preference.security"
              "?Privacy_ScreenCapture",
              "setMessageText:\"Allow Screen Recording for Vistrel\"",
              "addButtonWithTitle:\"Relaunch Now\"", "addButtonWithTitle:\"Later\"", "runModal"}));
    desktop().isScreenCaptureAllowed = true;
    fake::press(button(picker().contentView, "Refresh"));
    EXPECT_TRUE(grantButton().isHidden);
    EXPECT_THAT(shownTexts(picker().contentView),
                Contains("No mirror-worthy windows found. Open an app window and Refresh."));
  });
  EXPECT_FALSE(hasTerminated());
}

TEST_F(Launch, RelaunchesWhenThePersonSaysSo) {
  desktop().isScreenCaptureAllowed = false;
  run([&] {
    desktop().alertAnswers = {NSAlertFirstButtonReturn};
    fake::press(grantButton());
  });
  EXPECT_TRUE(hasTerminated());
  EXPECT_TRUE(said({"launch /usr/bin/open -n /Applications/Vistrel.app", "terminate:nil"}));
}

}  // namespace
}  // namespace vistrel
