#include <gtest/gtest.h>

#include "parking/VLVirtualDisplay.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

/// Classes of an undocumented part of the system may change with it.
class OddVirtualDisplayClassesTest : public CoreTest {
 protected:
  void expectNoDisplay(const platform::simulated::OddVirtualDisplayClasses& oddities) {
    desktop_.virtualDisplays().setOddities(oddities);
    EXPECT_EQ(VLVirtualDisplay::displayWithWidth(1280, 960, ""), nullptr);
    desktop_.turnMainQueue();
    EXPECT_EQ(desktop_.displays().onlineDisplayCount(), 1U);
  }
};

TEST_F(OddVirtualDisplayClassesTest, ThatMakeNoObjectsMakeNoDisplay) {
  for (const char* name : {"CGVirtualDisplayDescriptor", "CGVirtualDisplaySettings",
                           "CGVirtualDisplayMode", "CGVirtualDisplay"}) {
    SCOPED_TRACE(name);
    expectNoDisplay({.makingNothing = {name}, .answers = {}});
  }
}

TEST_F(OddVirtualDisplayClassesTest, ThatDoNotTellWhetherSettingsWereTakenMakeNoDisplay) {
  expectNoDisplay({.makingNothing = {}, .answers = {{"applySettings:", {}}}});
  expectNoDisplay({.makingNothing = {}, .answers = {{"applySettings:", std::string("YES")}}});
}

TEST_F(OddVirtualDisplayClassesTest, WhoseDisplayHasNoNumberMakeNoDisplay) {
  expectNoDisplay({.makingNothing = {}, .answers = {{"displayID", {}}}});
  expectNoDisplay({.makingNothing = {}, .answers = {{"displayID", std::string("2")}}});
}

}  // namespace
}  // namespace vistrel
