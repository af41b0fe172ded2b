#include "tests/managed/UnderAnyManager.h"
#include "tests/support/EachWindowManager.h"

namespace vistrel::testbed {
namespace {

using enum platform::linux_desktop::SourceSituation;

const ParkingPlace awesome{"GrowableWithAwesome", DisplayServer::growable, WindowManager::awesome,
                           false};
const ParkingPlace i3{"GrowableWithI3", DisplayServer::growable, WindowManager::i3, false};
const ParkingPlace jwm{"GrowableWithJwm", DisplayServer::growable, WindowManager::jwm, true};
const ParkingPlace metacity{"FixedWithMetacity", DisplayServer::fixed, WindowManager::metacity,
                            false, parkedBelowOthers};
const ParkingPlace bspwm{"GrowableWithBspwm", DisplayServer::growable, WindowManager::bspwm, false};
const ParkingPlace herbstluftwm{"GrowableWithHerbstluftwm", DisplayServer::growable,
                                WindowManager::herbstluftwm, false};

const auto nameOfPlace = [](const auto& test) { return test.param.name; };

INSTANTIATE_TEST_SUITE_P(Places, ParkedUnderAnyManager,
                         ::testing::Values(awesome, i3, jwm, metacity, bspwm, herbstluftwm),
                         nameOfPlace);
INSTANTIATE_TEST_SUITE_P(Places, ParkedOnEveryDesktop,
                         ::testing::Values(awesome, i3, jwm, metacity, bspwm), nameOfPlace);

/// Where no window can be on all desktops.
class ParkedOnOneDesktop : public Parked {};

TEST_P(ParkedOnOneDesktop, AWindowIsSaidNotToBeDrawnWhileThatIsNotShown) {
  auto& situations = *bed_.session().providers().sourceSituations;
  const auto window = open();
  const ParkedWindow parked(bed_, window->id());
  EXPECT_EQ(situations.of(window->id()), ordinary);
  goToDesktop(1);
  EXPECT_TRUE(eventually([&] { return situations.of(window->id()) == parkedOnHiddenDesktop; }));
}

INSTANTIATE_TEST_SUITE_P(Places, ParkedOnOneDesktop, ::testing::Values(herbstluftwm), nameOfPlace);

VISTREL_WITH_FIELD_MANAGERS(BroughtToFrontUnderAnyManager);

}  // namespace
}  // namespace vistrel::testbed
