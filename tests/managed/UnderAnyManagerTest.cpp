#include "tests/managed/UnderAnyManager.h"
#include "tests/support/EachWindowManager.h"

namespace vistrel::testbed {
namespace {

using enum platform::linux_desktop::SourceSituation;

const auto places = ::testing::Values(
    ParkingPlace{"GrowableWithKwin", DisplayServer::growable, WindowManager::kwin, false},
    ParkingPlace{"FixedWithMarco", DisplayServer::fixed, WindowManager::marco, false,
                 parkedBelowOthers},
    ParkingPlace{"GrowableWithIcewm", DisplayServer::growable, WindowManager::icewm, false,
                 parkedBelowOthers},
    ParkingPlace{"GrowableWithFluxbox", DisplayServer::growable, WindowManager::fluxbox, false});

const auto nameOfPlace = [](const auto& test) { return test.param.name; };

INSTANTIATE_TEST_SUITE_P(Places, ParkedUnderAnyManager, places, nameOfPlace);
INSTANTIATE_TEST_SUITE_P(Places, ParkedOnEveryDesktop, places, nameOfPlace);

VISTREL_WITH_EACH_MANAGER(BroughtToFrontUnderAnyManager);
VISTREL_WITH_FURTHER_MANAGERS(BroughtToFrontUnderAnyManager);

}  // namespace
}  // namespace vistrel::testbed
