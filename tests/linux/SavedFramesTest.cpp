#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "platform/linux/qt/SavedFrames.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(FrameText, ComesBackAsItWas) {
  for (const Rect& frame : {rect(0, 0, 460, 420), rect(-12.5, 700.25, 460.125, 1)}) {
    EXPECT_EQ(frameFromText(textOfFrame(frame)), frame);
  }
}

TEST(FrameText, BrokenTextsAreNoFrames) {
  for (const char* text :
       {"", "\n", "1 2 3\n", "1 2 3 4", "1 2 3 4 5\n", "1 2 3 4\n\n", "1 2 3 four\n", "1,2,3,4\n",
        "nan 2 300 400\n", "1 2 inf 400\n", "1e999 2 300 400\n", "\x01\x02\x03\n"}) {
    EXPECT_EQ(frameFromText(text), std::nullopt) << text;
  }
}

TEST(FrameText, FramesThatNoWindowCanHaveAreNoFrames) {
  for (const char* text : {"0 0 0 400\n", "0 0 300 -400\n", "0 0 300 0.5\n", "40000 0 300 400\n",
                           "0 0 99999 400\n", "0 -1e300 300 400\n"}) {
    EXPECT_EQ(frameFromText(text), std::nullopt) << text;
  }
}

TEST(StateDirectory, FollowsTheBaseDirectorySpecification) {
  EXPECT_EQ(stateDirectory("", "/home/ann"), "/home/ann/.local/state/vistrel");
  EXPECT_EQ(stateDirectory("/var/ann", "/home/ann"), "/var/ann/vistrel");
  EXPECT_EQ(stateDirectory("relative", "/home/ann"), "/home/ann/.local/state/vistrel");
}

class SavedFramesTest : public ::testing::Test {
 protected:
  testbed::TemporaryDirectory directory_;
  std::filesystem::path state_ = directory_.path() / "not/there/yet";
  SavedFrames frames_{state_};
};

TEST_F(SavedFramesTest, AFrameIsKept) {
  EXPECT_EQ(frames_.load("VistrelPicker"), std::nullopt);
  frames_.save("VistrelPicker", rect(10, 20, 460, 420));
  frames_.save("VistrelPicker", rect(11, 21, 461, 421));
  EXPECT_EQ(frames_.load("VistrelPicker"), rect(11, 21, 461, 421));
  EXPECT_EQ(SavedFrames(state_).load("VistrelPicker"), rect(11, 21, 461, 421));
}

TEST_F(SavedFramesTest, NothingButTheFrameIsLeftBehind) {
  frames_.save("VistrelPicker", rect(10, 20, 460, 420));
  const auto entries = std::filesystem::directory_iterator(state_);
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(SavedFramesTest, ABrokenFileIsAsIfThereWereNone) {
  frames_.save("VistrelPicker", rect(10, 20, 460, 420));
  std::ofstream(state_ / "VistrelPicker.frame") << std::string(1'000'000, '1');
  EXPECT_EQ(frames_.load("VistrelPicker"), std::nullopt);
}

TEST_F(SavedFramesTest, ADirectoryInTheFilesPlaceIsAsIfThereWereNone) {
  std::filesystem::create_directories(state_ / "VistrelPicker.frame");
  frames_.save("VistrelPicker", rect(10, 20, 460, 420));
  EXPECT_EQ(frames_.load("VistrelPicker"), std::nullopt);
}

TEST_F(SavedFramesTest, NamesCannotLeaveTheDirectory) {
  for (const char* name : {"", "..", "../escaped", "a/b", "a.b"}) {
    frames_.save(name, rect(10, 20, 460, 420));
    EXPECT_EQ(frames_.load(name), std::nullopt) << name;
  }
  EXPECT_FALSE(std::filesystem::exists(state_));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
