#include <gtest/gtest.h>

#include "catalogue/WindowMirrorManager.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

class WindowCatalogueTest : public CoreTest {
 protected:
  using Titles = std::vector<std::string>;

  static Titles titlesOf(const std::vector<WindowRecord>& windows) {
    Titles titles;
    for (const auto& window : windows) titles.push_back(*window->title);
    return titles;
  }

  void fetch() {
    manager_->fetchWindows([this](const std::vector<WindowRecord>& windows) {
      EXPECT_TRUE(platform::mainQueue().isCurrent());
      fetched_.push_back(titlesOf(windows));
    });
  }

  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
  std::vector<Titles> fetched_;  // one list per completion
};

TEST_F(WindowCatalogueTest, StartsEmpty) {
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
  EXPECT_THAT(manager_->cachedWindows(), IsEmpty());
}

TEST_F(WindowCatalogueTest, FetchesTheListInOrderOnMainLater) {
  openSource("Beta", "b");
  openSource("alpha", "a");
  fetch();
  EXPECT_THAT(fetched_, IsEmpty());
  desktop_.turnMainQueue();
  EXPECT_THAT(fetched_, ElementsAre(Titles{"a", "b"}));
  EXPECT_THAT(capture().contentRequests(),
              ElementsAre(ContentRequest{DesktopWindows::included, ListedWindows::onScreen}));
}

TEST_F(WindowCatalogueTest, FetchingLeavesTheCacheAlone) {
  openSource("App", "old");
  manager_->refreshWindowsBlocking(0.7);
  openSource("App", "new");
  fetch();
  desktop_.turnMainQueue();
  EXPECT_EQ(fetched_.back().size(), 2U);
  EXPECT_EQ(titlesOf(manager_->cachedWindows()), Titles{"old"});
}

TEST_F(WindowCatalogueTest, LeavesOutTheProgramsOwnWindows) {
  desktop_.workspace().setProcessIdentifier(99);
  openSource();
  fetch();
  desktop_.turnMainQueue();
  EXPECT_THAT(fetched_, ElementsAre(IsEmpty()));
}

TEST_F(WindowCatalogueTest, FetchesNothingAtOnceWithoutPermission) {
  capture().setAccess(false, false);
  openSource();
  fetch();
  EXPECT_THAT(fetched_, ElementsAre(IsEmpty()));
  desktop_.turnMainQueue();
  EXPECT_EQ(fetched_.size(), 1U);
  EXPECT_THAT(capture().contentRequests(), IsEmpty());
}

TEST_F(WindowCatalogueTest, AsksForPermissionOnlyWhenItHasNone) {
  fetch();
  EXPECT_EQ(capture().requestCount(), 0);
  capture().setAccess(false, true);
  openSource();
  fetch();
  EXPECT_EQ(capture().requestCount(), 1);
  desktop_.turnMainQueue();
  EXPECT_EQ(fetched_.back(), Titles{"Title"});
}

TEST_F(WindowCatalogueTest, FetchesNothingWhenTheServiceFails) {
  capture().failContent(Error{"whatever"});
  openSource();
  fetch();
  desktop_.turnMainQueue();
  EXPECT_THAT(fetched_, ElementsAre(IsEmpty()));
}

TEST_F(WindowCatalogueTest, FetchesNothingOnceTheManagerIsGone) {
  capture().answers().hold(Request::content);
  openSource();
  fetch();
  manager_.reset();
  desktop_.turnMainQueue();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_THAT(fetched_, ElementsAre(IsEmpty()));
}

TEST_F(WindowCatalogueTest, AnswersEachFetchOnceInWhateverOrderTheServiceAnswers) {
  capture().answers().hold(Request::content);
  const auto first = openSource("App", "first");
  fetch();
  capture().closeWindow(first->windowID);
  openSource("App", "second");
  fetch();
  capture().answers().releaseOne(Request::content, 1);
  desktop_.turnMainQueue();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_THAT(fetched_, ElementsAre(Titles{"second"}, Titles{"first"}));
}

TEST_F(WindowCatalogueTest, BlockingRefreshFillsTheCacheBeforeItReturns) {
  openSource("Beta", "b");
  openSource("alpha", "a");
  manager_->refreshWindowsBlocking(0.7);
  EXPECT_EQ(titlesOf(manager_->cachedWindows()), (Titles{"a", "b"}));
  EXPECT_THAT(capture().contentRequests(),
              ElementsAre(ContentRequest{DesktopWindows::included, ListedWindows::onScreen}));
}

TEST_F(WindowCatalogueTest, BlockingRefreshMakesNoPermissionTest) {
  manager_->refreshWindowsBlocking(0.7);
  EXPECT_EQ(capture().preflightCount(), 0);
  EXPECT_EQ(capture().requestCount(), 0);
}

TEST_F(WindowCatalogueTest, BlockingRefreshSeesAnAnswerThatComesInTime) {
  capture().answers().setDelay(Request::content, 0.6);
  openSource();
  const auto before = platform::now();
  manager_->refreshWindowsBlocking(0.7);
  EXPECT_EQ(titlesOf(manager_->cachedWindows()), Titles{"Title"});
  EXPECT_LT(platform::now().timeIntervalSince(before), 0.65);
}

TEST_F(WindowCatalogueTest, BlockingRefreshWaitsNoLongerThanItsTimeout) {
  openSource("App", "old");
  manager_->refreshWindowsBlocking(0.7);
  openSource("App", "new");
  capture().answers().setDelay(Request::content, 5);
  const auto before = platform::now();
  manager_->refreshWindowsBlocking(0.7);
  EXPECT_NEAR(platform::now().timeIntervalSince(before), 0.7, 1e-6);
  EXPECT_EQ(titlesOf(manager_->cachedWindows()), Titles{"old"});
}

TEST_F(WindowCatalogueTest, AnswerAfterTheTimeoutStillReplacesTheCache) {
  capture().answers().hold(Request::content);
  openSource();
  manager_->refreshWindowsBlocking(0.7);
  EXPECT_THAT(manager_->cachedWindows(), IsEmpty());
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
  EXPECT_EQ(titlesOf(manager_->cachedWindows()), Titles{"Title"});
}

TEST_F(WindowCatalogueTest, FailedRefreshKeepsTheCache) {
  openSource("App", "old");
  manager_->refreshWindowsBlocking(0.7);
  capture().failContent(Error{"whatever"});
  const auto before = platform::now();
  manager_->refreshWindowsBlocking(0.7);
  EXPECT_EQ(platform::now(), before);
  EXPECT_EQ(titlesOf(manager_->cachedWindows()), Titles{"old"});
}

TEST_F(WindowCatalogueTest, AnswerAfterTheManagerIsGoneIsHarmless) {
  capture().answers().hold(Request::content);
  manager_->refreshWindowsBlocking(0.7);
  manager_.reset();
  capture().answers().release(Request::content);
  desktop_.turnMainQueue();
}

TEST_F(WindowCatalogueTest, OpensTheSystemsSettingsPage) {
  manager_->openScreenRecordingSettings();
  EXPECT_THAT(
      desktop_.workspace().openedURLs(),
      ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));
}

}  // namespace
}  // namespace vistrel
