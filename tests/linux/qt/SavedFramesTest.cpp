#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

#include "platform/linux/qt/windows/SavedFrames.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

namespace fs = std::filesystem;

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

TEST(FrameText, WhateverStandsInAFileIsAFrameThatCouldBeKeptOrNone) {
  constexpr std::array<const char*, 12> words{"0",   "-1", "300", " ", "1e5",        "\n",
                                              "nan", "+",  ".",   "x", "0x1p-1074 ", "32767.5"};
  std::mt19937 random(20260);
  int frames = 0;
  for (int i = 0; i < 50'000; ++i) {
    std::string text = i % 2 == 0 ? "1 2 300 4" : "";
    for (auto length = random() % 5; length > 0; --length)
      text += words.at(random() % words.size());
    if (random() % 4 != 0) text += '\n';
    const auto frame = frameFromText(text);
    if (!frame) continue;
    ++frames;
    ASSERT_EQ(frameFromText(textOfFrame(*frame)), frame) << text;
    ASSERT_GE(std::min(frame->width(), frame->height()), 1) << text;
  }
  EXPECT_GT(frames, 100);
}

class SavedFramesTest : public ::testing::Test {
 protected:
  testbed::TemporaryDirectory directory_;
  static constexpr Rect frame = rect(10, 20, 460, 420);

  std::ptrdiff_t entries() const {
    const auto all = fs::directory_iterator(state_);
    return std::distance(begin(all), end(all));
  }

  fs::path state_ = directory_.path() / "not/there/yet";
  fs::path file_ = state_ / "VistrelPicker.frame";
  SavedFrames frames_{state_};
};

TEST_F(SavedFramesTest, AFrameIsKept) {
  EXPECT_EQ(frames_.load("VistrelPicker"), std::nullopt);
  frames_.save("VistrelPicker", frame);
  frames_.save("VistrelPicker", rect(11, 21, 461, 421));
  EXPECT_EQ(frames_.load("VistrelPicker"), rect(11, 21, 461, 421));
  EXPECT_EQ(SavedFrames(state_).load("VistrelPicker"), rect(11, 21, 461, 421));
}

TEST_F(SavedFramesTest, NothingButTheFrameIsLeftBehind) {
  frames_.save("VistrelPicker", frame);
  EXPECT_EQ(entries(), 1);
}

TEST_F(SavedFramesTest, ABrokenFileIsAsIfThereWereNone) {
  frames_.save("VistrelPicker", frame);
  std::ofstream(file_) << std::string(1'000'000, '1');
  EXPECT_EQ(frames_.load("VistrelPicker"), std::nullopt);
}

TEST_F(SavedFramesTest, WhateverStandsInTheFilesPlaceIsAsIfThereWereNone) {
  fs::create_directories(file_);
  frames_.save("VistrelPicker", frame);
  EXPECT_EQ(frames_.load("VistrelPicker"), std::nullopt);
}

TEST_F(SavedFramesTest, ALinkIsFollowedToWhatIsAFile) {
  fs::create_directories(state_);
  const auto elsewhere = directory_.path() / "kept elsewhere";
  std::ofstream(elsewhere) << textOfFrame(frame);
  fs::create_symlink(elsewhere, file_);
  EXPECT_EQ(frames_.load("VistrelPicker"), frame);
}

TEST_F(SavedFramesTest, DirectoriesThatWereMissingAreTheirOwnersAloneWhateverTheUmask) {
  const auto former = umask(0777);
  frames_.save("VistrelPicker", frame);
  umask(former);
  for (const auto& made : {state_, state_.parent_path(), state_.parent_path().parent_path()}) {
    EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all) << made;
  }
}

TEST_F(SavedFramesTest, WhereNothingCanBeMadeNothingHappens) {
  for (const char* directory : {"/dev/null/vistrel", "/proc/vistrel", ""}) {
    const SavedFrames nowhere(directory);
    nowhere.save("VistrelPicker", frame);
    EXPECT_EQ(nowhere.load("VistrelPicker"), std::nullopt) << directory;
  }
}

/// As on a disk that is full: no file of this process can grow.
class FullDisk {
 public:
  FullDisk() : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit nothing{0, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &nothing);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, formerHandler_);
  }

 private:
  void (*formerHandler_)(int);
  rlimit former_{};
};

TEST_F(SavedFramesTest, OnAFullDiskTheFormerFrameStays) {
  frames_.save("VistrelPicker", frame);
  {
    const FullDisk full;
    frames_.save("VistrelPicker", rect(1, 2, 300, 400));
  }
  EXPECT_EQ(frames_.load("VistrelPicker"), frame);
  EXPECT_EQ(entries(), 1);
}

TEST_F(SavedFramesTest, NamesCannotLeaveTheDirectory) {
  for (const char* name : {"", "..", "../escaped", "a/b", "a.b"}) {
    frames_.save(name, frame);
    EXPECT_EQ(frames_.load(name), std::nullopt) << name;
  }
  EXPECT_FALSE(fs::exists(state_));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
