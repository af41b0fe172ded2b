#include <condition_variable>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/NativeWindowIds.h"
#include "platform/linux/wayland/WaylandSession.h"
#include "platform/linux/x11/X11Session.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;
using testbed::KWinScripts;
using testbed::KWinSession;
using testbed::NativeWindow;
using testbed::TestWindow;
using ::testing::ElementsAre;

/// As the program lists windows in a session of KWin.
class KWinList : public ::testing::Test {
 protected:
  KWinList() {
    desktop_.adoptEnvironment();
    session_ = openX11Session(Instances::any).session;
    vistrelJoinWaylandSession(*session_);
  }
  ~KWinList() override {
    session_.reset();
    shutDownSerialQueues();
  }

  std::vector<WindowRecord> list(ListedWindows which = ListedWindows::all) const {
    std::mutex mutex;
    std::condition_variable answered;
    std::shared_ptr<const ShareableContent> answer;
    bool isAnswered = false;
    session_->windowLister->request(DesktopWindows::excluded, which,
                                    [&](auto content, const auto& /*error*/) {
                                      const std::lock_guard lock(mutex);
                                      answer = std::move(content);
                                      isAnswered = true;
                                      answered.notify_one();
                                    });
    std::unique_lock lock(mutex);
    answered.wait(lock, [&] { return isAnswered; });
    return answer ? answer->windows : std::vector<WindowRecord>();
  }
  std::vector<std::string> titles(ListedWindows which = ListedWindows::all) const {
    std::vector<std::string> titles;
    for (const auto& each : list(which)) {
      if (each->windowLayer == 0) titles.push_back(each->title.value_or(""));
    }
    return titles;
  }
  WindowRecord titled(const std::string& title) const {
    for (const auto& each : list()) {
      if (each->title == title) return each;
    }
    return nullptr;
  }

  const KWinSession desktop_;
  KWinScripts kwin_{desktop_.busAddress()};
  std::unique_ptr<Session> session_;
};

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
