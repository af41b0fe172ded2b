#include "tests/support/Poll.h"

#include <poll.h>

namespace vistrel::testbed {

void letOthersRun() {
  constexpr int milliseconds = 5;
  ::poll(nullptr, 0, milliseconds);
}

}  // namespace vistrel::testbed
