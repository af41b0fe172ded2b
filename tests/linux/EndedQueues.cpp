#include <gtest/gtest.h>

#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Ends the queues' threads once a program's tests are done, as Vistrel does when it quits: the
/// thread sanitizer takes threads that nobody waits for for leaks.
class EndedQueues : public testing::Environment {
 public:
  void TearDown() override { shutDownSerialQueues(); }
};

[[maybe_unused]] const auto* const endedQueues = testing::AddGlobalTestEnvironment(new EndedQueues);

}  // namespace
}  // namespace vistrel::platform::linux_desktop
