#pragma once

#include <gtest/gtest.h>
#include <string>

#include "tests/support/WindowManager.h"

/// Instantiates a suite of tests whose parameter is a window manager for every one of them.
#define VISTREL_WITH_EACH_MANAGER(suite)                                            \
  INSTANTIATE_TEST_SUITE_P(WindowManagers, suite,                                   \
                           ::testing::ValuesIn(::vistrel::testbed::windowManagers), \
                           [](const auto& test) { return std::string(nameOf(test.param)); })
