#include "tests/support/Poll.h"

#include <poll.h>

namespace vistrel::testbed {

void letOthersRun() {
  constexpr int kMilliseconds = 5;
  ::poll(nullptr, 0, kMilliseconds);
}

}  // namespace vistrel::testbed
