#pragma once

#include "tests/managed/Parked.h"

namespace vistrel::testbed {

// What holds of other programs' windows under any manager, those that are seldom tested among them.
// For the programs of tests that have the managers to name.

class ParkedUnderAnyManager : public Parked {};

/// Where a window can be on all desktops.
class ParkedOnEveryDesktop : public Parked {};

class BroughtToFrontUnderAnyManager : public ::testing::TestWithParam<WindowManager> {};

}  // namespace vistrel::testbed
