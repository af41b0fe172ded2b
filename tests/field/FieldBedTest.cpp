#include <algorithm>

#include "tests/support/EachWindowManager.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TestWindow.h"

namespace vistrel::testbed {
namespace {

class PrivateDisplayInTheField : public ::testing::TestWithParam<WindowManager> {};

// Not all of them draw a frame, and not all say so.
TEST_P(PrivateDisplayInTheField, HasItsManagerManageAWindow) {
  const PrivateDisplay display({.windowManager = GetParam()});
  const XConnection connection(display.name());
  const TestWindow window(display.name(), {.area = {200, 150, 300, 200}});
  EXPECT_TRUE(eventually([&] {
    const auto managed = connection.numbers(connection.root(), "_NET_CLIENT_LIST");
    return std::ranges::count(managed, window.id()) == 1;
  }));
}

VISTREL_WITH_FIELD_MANAGERS(PrivateDisplayInTheField);

}  // namespace
}  // namespace vistrel::testbed
