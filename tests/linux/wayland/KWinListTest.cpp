#include <fstream>

#include "platform/linux/wayland/compositor/NativeWindowIds.h"
#include "tests/linux/wayland/KWinTest.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::TestWindow;
using ::testing::ElementsAre;

using KWinList = KWinTest;

TEST_F(KWinList, HasNativeWindowsAndThoseOfXOnceEachInTheirOrder) {
  const NativeWindow lowest(desktop_.environment(), {.title = "Lowest"});
  const TestWindow ofX(desktop_.xName(), {.title = "Of X"});
  const NativeWindow topmost(desktop_.environment(), {.title = "Topmost"});
  EXPECT_TRUE(eventually([&] {
    return titles() == std::vector<std::string>{"Topmost", "Of X", "Lowest"};
  })) << ::testing::PrintToString(titles());
  EXPECT_EQ(titled("Of X")->windowID, ofX.id());
  kwin_.raise("Lowest");
  EXPECT_TRUE(eventually([&] {
    return titles() == std::vector<std::string>{"Lowest", "Topmost", "Of X"};
  }));
}

TEST_F(KWinList, TellsWhatANativeWindowIs) {
  const auto applications = desktop_.home() / "data/applications";
  std::ofstream(applications / "com.example.editor.desktop")
      << "[Desktop Entry]\nType=Application\nName=Text Editor\nExec=editor\n";
  const NativeWindow window(desktop_.environment(), {.title = "Título — 文書",
                                                     .applicationId = "com.example.editor",
                                                     .width = 300,
                                                     .height = 200});
  kwin_.run("workspace.clientList()[0].frameGeometry = {x: 50, y: 60, width: 300, height: 200}");
  const auto record = titled("Título — 文書");
  ASSERT_NE(record, nullptr);
  EXPECT_TRUE(NativeWindowIds::isNative(record->windowID));
  EXPECT_EQ(record->frame, rect(50, 60, 300, 200));
  EXPECT_EQ(record->owningApplication->applicationName, "Text Editor");
  EXPECT_EQ(record->owningApplication->processID, window.pid());
  EXPECT_TRUE(record->isOnScreen);
  EXPECT_EQ(record->windowLayer, 0);
}

TEST_F(KWinList, LeavesOutWhatKWinPutsAroundAWindow) {
  const NativeWindow window(desktop_.environment(), {.title = "Native", .isDecorated = true});
  kwin_.moveTo("Native", {50, 60});
  const auto frame = kwin_.frameOf("Native");
  ASSERT_GT(frame.height, 300);
  const double titleBar = frame.height - 300;
  EXPECT_TRUE(eventually([&] {
    return titled("Native")->frame == rect(50, 60 + titleBar, 400, 300);
  })) << titled("Native")->frame.height();
}

TEST_F(KWinList, HasDecoratedWindowsOfXThatShareATitleOnce) {
  const TestWindow first(desktop_.xName(), {.title = "Document", .area = {100, 100, 300, 200}});
  const TestWindow second(desktop_.xName(), {.title = "Document", .area = {500, 300, 300, 200}});
  ASSERT_TRUE(eventually([&] { return kwin_.run("tell(workspace.clientList().length)") == "2"; }));
  EXPECT_TRUE(eventually([&] { return titles().size() == 2; }))
      << ::testing::PrintToString(titles());
}

TEST_F(KWinList, FollowsANativeWindowUnderItsNumberUntilItCloses) {
  NativeWindow window(desktop_.environment(), {.title = "Before"});
  const auto id = titled("Before")->windowID;
  window.setTitle("After");
  window.resize(500, 250);
  EXPECT_TRUE(eventually([&] {
    const auto record = titled("After");
    return record && record->frame.size == Size{500, 250};
  }));
  EXPECT_EQ(titled("After")->windowID, id);
  window.close();
  EXPECT_EQ(titled("After"), nullptr);
}

TEST_F(KWinList, HasMinimisedWindowsAndThoseOnAnotherDesktopAmongAllOnly) {
  NativeWindow minimised(desktop_.environment(), {.title = "Minimised"});
  const NativeWindow elsewhere(desktop_.environment(), {.title = "Elsewhere"});
  const NativeWindow here(desktop_.environment(), {.title = "Here"});
  minimised.minimise();
  kwin_.run("win('Elsewhere').desktop = 2");
  EXPECT_THAT(titles(ListedWindows::onScreen), ElementsAre("Here"));
  EXPECT_EQ(titles().size(), 3U);
  kwin_.showDesktop(2);
  EXPECT_THAT(titles(ListedWindows::onScreen), ElementsAre("Elsewhere"));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
