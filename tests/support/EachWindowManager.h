#pragma once

#include <gtest/gtest.h>
#include <string>

#include "tests/support/WindowManager.h"

/// Instantiates a suite of tests whose parameter is a window manager for all in `managers`.
#define VISTREL_WITH_MANAGERS(instances, suite, managers)                                       \
  INSTANTIATE_TEST_SUITE_P(instances, suite, ::testing::ValuesIn(::vistrel::testbed::managers), \
                           [](const auto& test) { return std::string(nameOf(test.param)); })
#define VISTREL_WITH_EACH_MANAGER(suite) \
  VISTREL_WITH_MANAGERS(WindowManagers, suite, windowManagers)
#define VISTREL_WITH_FURTHER_MANAGERS(suite) \
  VISTREL_WITH_MANAGERS(FurtherWindowManagers, suite, furtherWindowManagers)
#define VISTREL_WITH_FIELD_MANAGERS(suite) \
  VISTREL_WITH_MANAGERS(FieldWindowManagers, suite, fieldWindowManagers)
