#include <tuple>

#include "tests/desktop/KeepAwake.h"
#include "tests/desktop/TestedHere.h"

namespace vistrel::testbed {
namespace {

using Bed = std::tuple<DisplayServer, WindowManager>;

std::string nameOfManager(const ::testing::TestParamInfo<Bed>& test) {
  return std::string(nameOf(std::get<WindowManager>(test.param)));
}

/// Parking under each manager. Where on the screen or beside it is the program's choice: a manager
/// may leave it only one.
class KeepAwakeUnderManagers : public KeepAwake, public ::testing::WithParamInterface<Bed> {
 protected:
  KeepAwakeUnderManagers()
      : KeepAwake({.windowManager = std::get<WindowManager>(GetParam()),
                   .server = std::get<DisplayServer>(GetParam())}) {}
};

TEST_P(KeepAwakeUnderManagers, TheSourceIsOutOfSightAndLiveUntilItIsTakenBack) {
  // Wherever the manager has put it.
  const PanelOnScreen panel = openPanel(0, 1);
  ASSERT_TRUE(eventually([&] { return panel.shows(fourColours); }));
  keepAwakeForAWhile(panel,
                     [&] { return isOnHiddenDisplay() || isInCorner() || isBelowAllOthers(); });
}

INSTANTIATE_TEST_SUITE_P(ScreenThatGrows, KeepAwakeUnderManagers,
                         ::testing::Combine(::testing::Values(DisplayServer::growable),
                                            ::testing::ValuesIn(managersTestedHere())),
                         nameOfManager);
INSTANTIATE_TEST_SUITE_P(FixedScreen, KeepAwakeUnderManagers,
                         ::testing::Combine(::testing::Values(DisplayServer::fixed),
                                            ::testing::ValuesIn(managersTestedHere())),
                         nameOfManager);

}  // namespace
}  // namespace vistrel::testbed
