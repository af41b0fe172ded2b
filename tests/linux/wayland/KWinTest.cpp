#include "tests/linux/wayland/KWinTest.h"

#include <condition_variable>
#include <mutex>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/WaylandSession.h"
#include "platform/linux/x11/X11Session.h"

namespace vistrel::platform::linux_desktop {

KWinTest::KWinTest(const testbed::KWinSession::Options& options) : desktop_(options) {
  desktop_.adoptEnvironment();
  begin();
}

void KWinTest::begin() {
  const auto openSource = std::make_shared<OpenSource>(openSourceWindow);
  session_ = openX11Session(Instances::any, [openSource](const auto& mirror, WindowID window) {
               return (*openSource)(mirror, window);
             }).session;
  vistrelJoinWaylandSession(*session_, *openSource);
}

KWinTest::~KWinTest() {
  session_.reset();
  shutDownSerialQueues();
}

std::vector<WindowRecord> KWinTest::list(ListedWindows which) const {
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

std::vector<std::string> KWinTest::titles(ListedWindows which) const {
  std::vector<std::string> titles;
  for (const auto& each : list(which)) {
    if (each->windowLayer == 0) titles.push_back(each->title.value_or(""));
  }
  return titles;
}

WindowRecord KWinTest::titled(const std::string& title) const {
  for (const auto& each : list()) {
    if (each->title == title) return each;
  }
  return nullptr;
}

}  // namespace vistrel::platform::linux_desktop
