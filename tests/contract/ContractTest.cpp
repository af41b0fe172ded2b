#include "tests/contract/ContractTest.h"

#include <atomic>

namespace vistrel::contract {

platform::WindowRecord ContractTest::listed(platform::WindowID id, platform::ListedWindows which) {
  struct Answer {
    platform::WindowRecord record;
    std::atomic<bool> arrived = false;
  };
  const auto answer = std::make_shared<Answer>();
  platform::getShareableContent(
      platform::DesktopWindows::included, which,
      [answer, id](const std::shared_ptr<const platform::ShareableContent>& content, const auto&) {
        if (content) {
          for (const auto& window : content->windows) {
            if (window->windowID == id) answer->record = window;
          }
        }
        answer->arrived = true;
      });
  EXPECT_TRUE(turnUntil([&answer] { return answer->arrived.load(); }));
  return answer->record;
}

}  // namespace vistrel::contract
