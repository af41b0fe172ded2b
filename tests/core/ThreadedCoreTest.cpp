#include <atomic>
#include <gtest/gtest.h>
#include <latch>
#include <thread>

#include "catalogue/WindowMirrorManager.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

constexpr double generously = 120;

/// The core over queues that are threads, for the thread sanitizer.
class ThreadedCoreTest : public CoreTest {
 protected:
  ThreadedCoreTest() : CoreTest(platform::simulated::Mode::threads) {}

  bool turnUntil(const std::function<bool()>& condition) {
    return desktop_.dispatch().turnMainUntil(condition, generously);
  }

  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
};

TEST_F(ThreadedCoreTest, ClosesTenThousandMirrorsDuringTheirStart) {
  const auto source = openSource();
  capture().paintWindow(source->windowID, brightPixels());
  for (int i = 0; i < 10'000; ++i) {
    manager_->mirror(source);
    // Now and then the start gets further before the close comes.
    if (i % 3 == 1) desktop_.turnMainQueue();
    if (i % 7 == 3) std::this_thread::yield();
    if (i % 2 == 0) {
      manager_->closeAll();
    } else {
      manager_->mirrors().begin()->second->closeClicked();
    }
  }
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
  desktop_.drain();
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty());
  for (const auto& stream : capture().streams()) ASSERT_FALSE(stream->isHeld());
}

TEST_F(ThreadedCoreTest, StopsAStreamWhoseMirrorIsClosedWhileItIsMade) {
  std::latch isMade(1);
  std::latch isClosed(1);
  capture().scriptStreams({.whenAddingOutput = [&] {
    isMade.count_down();
    isClosed.wait();
  }});
  manager_->mirror(openSource());
  const auto mirror = manager_->mirrors().begin()->second;
  isMade.wait();
  mirror->close();
  isClosed.count_down();
  desktop_.drain();
  EXPECT_THAT(
      capture().lastStream()->steps(),
      ElementsAre(StreamCall::Kind::addOutput, StreamCall::Kind::start, StreamCall::Kind::stop));
  EXPECT_FALSE(capture().lastStream()->isHeld());
}

TEST_F(ThreadedCoreTest, RecapturesWhileFramesArrive) {
  const auto source = openSource();
  manager_->mirror(source);
  const auto mirror = manager_->mirrors().begin()->second;
  std::atomic<bool> done = false;
  std::thread painter([&] {
    for (std::int64_t side = 10; !done; side = 10 + (side + 1) % 40) {
      capture().paintWindow(source->windowID,
                            side % 5 == 0 ? blackPixels(side, side) : brightPixels(side, side));
    }
  });
  for (int i = 0; i < 200; ++i) {
    mirror->stopCapture();
    mirror->startCapture();
    desktop_.turnMainQueue();
  }
  EXPECT_TRUE(turnUntil([&mirror] { return inside(*mirror).lastImage() != nullptr; }));
  done = true;
  painter.join();
  mirror->close();
}

TEST_F(ThreadedCoreTest, GrowsTheCaptureWhileFramesArrive) {
  const auto source = openSource();
  manager_->mirror(source);
  const auto mirror = manager_->mirrors().begin()->second;
  ASSERT_TRUE(turnUntil([&mirror] { return inside(*mirror).stream() != nullptr; }));
  for (int width = 300; width < 2500; width += 20) {
    capture().paintWindow(source->windowID, brightPixels(width, 100));
    windows().moveWindow(*mirror->panel(), rect(0, 0, width, 200));
    desktop_.turnMainQueue();
  }
  EXPECT_EQ(inside(*mirror).captureWidth(), 2000);
}

TEST_F(ThreadedCoreTest, ShowsManyMirrorsAtOnce) {
  std::vector<WindowRecord> sources;
  for (int i = 0; i < 16; ++i) {
    sources.push_back(openSource());
    capture().paintWindow(sources.back()->windowID, brightPixels());
    manager_->mirror(sources.back());
  }
  EXPECT_TRUE(turnUntil([this] {
    for (const auto& [id, mirror] : manager_->mirrors()) {
      if (!inside(*mirror).lastImage()) return false;
    }
    return true;
  }));
  manager_->closeAll();
}

TEST_F(ThreadedCoreTest, RefreshesTheCacheWhileMainWaits) {
  openSource();
  manager_->refreshWindowsBlocking(generously);
  EXPECT_EQ(manager_->cachedWindows().size(), 1U);
}

TEST_F(ThreadedCoreTest, TakesALateRefreshWhileTheCacheIsRead) {
  openSource();
  capture().answers().hold(Request::content);
  manager_->refreshWindowsBlocking(0);
  capture().answers().release(Request::content);
  EXPECT_TRUE(turnUntil([this] { return manager_->cachedWindows().size() == 1; }));
}

TEST_F(ThreadedCoreTest, FetchesOnMain) {
  openSource();
  std::size_t fetched = 0;
  manager_->fetchWindows([&fetched](const std::vector<WindowRecord>& windows) {
    EXPECT_TRUE(platform::mainQueue().isCurrent());
    fetched = windows.size();
  });
  EXPECT_TRUE(turnUntil([&fetched] { return fetched == 1; }));
}

}  // namespace
}  // namespace vistrel
