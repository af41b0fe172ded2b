#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "tests/contract/ContractBed.h"

namespace vistrel::contract {

inline constexpr platform::PixelBGRA red{.blue = 40, .green = 40, .red = 220, .alpha = 255};
inline constexpr platform::PixelBGRA green{.blue = 70, .green = 180, .red = 40, .alpha = 255};
inline constexpr platform::PixelBGRA blue{.blue = 220, .green = 80, .red = 50, .alpha = 255};
inline constexpr platform::PixelBGRA yellow{.blue = 60, .green = 210, .red = 230, .alpha = 255};
inline constexpr Quadrants fourColors{red, green, blue, yellow};
inline constexpr Quadrants otherColors{yellow, blue, green, red};

MATCHER_P(IsColor, expected, "") {
  constexpr int tolerance = 8;
  const auto near = [](int a, int b) { return std::abs(a - b) <= tolerance; };
  *result_listener << "red " << int{arg.red} << " green " << int{arg.green} << " blue "
                   << int{arg.blue};
  return near(arg.red, expected.red) && near(arg.green, expected.green) &&
         near(arg.blue, expected.blue);
}

class ContractTest : public testing::Test {
 protected:
  ContractTest() : bed_(makeContractBed()) {}

  bool turnUntil(const std::function<bool()>& condition) { return bed_->turnUntil(condition); }

  /// The listed window, as it is now; null when it is not listed.
  platform::WindowRecord listed(platform::WindowID id,
                                platform::ListedWindows which = platform::ListedWindows::all);

  const std::unique_ptr<ContractBed> bed_;
};

}  // namespace vistrel::contract
