#include <algorithm>
#include <random>

#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::IsEmpty;

/// What a person who acts at random has opened, in the plainest way.
struct OpenMirror {
  CGWindowID window = 0;
  bool isRolledUp = false;
  /// Where its source is parked.
  std::optional<CGPoint> parked;
  bool isOnHiddenDisplay = false;
  bool hasEnded = false;
};

class Walk : public MirrorScenario {
 protected:
  Walk() {
    desktop().windows.clear();
    for (CGWindowID i = 0; i < sourceCount; ++i) {
      // In the picker's order.
      desktop().windows.push_back({.id = firstSource + i,
                                   .frame = originalFrame(i),
                                   .application = std::string(1, static_cast<char>('A' + i)),
                                   .processID = static_cast<int>(200 + i)});
    }
  }

  void step() {
    desktop().virtualDisplays.classes["CGVirtualDisplay"] =
        random_() % 3 == 0 ? "" : "CGVirtualDisplay";
    desktop().takesDisplayConfigurations = random_() % 5 != 0;
    switch (random_() % 16) {
      case 0:
        return hideAll();
      case 1:
      case 2:
        return fake::advance(static_cast<double>(random_() % 30) / 10);
      case 3:
      case 4:
      case 5:
      case 6:
        return open();
      default:
        if (!mirrors_.empty()) command(random_() % mirrors_.size());
    }
  }

  void hideAll() {
    @autoreleasepool {
      NSMenu* const bar = NSApplication.sharedApplication.mainMenu;
      fake::choose(line(line(bar, "Mirror").submenu, "Hide All Mirrors"));
    }
    mirrors_.clear();
  }

  void check() {
    ASSERT_EQ(panels().size(), mirrors_.size());
    std::size_t hidden = 0;
    for (std::size_t i = 0; i < mirrors_.size(); ++i) {
      hidden += mirrors_[i].isOnHiddenDisplay ? 1 : 0;
      EXPECT_EQ(panel(i).frame.size.height == titleBarHeight, mirrors_[i].isRolledUp);
    }
    EXPECT_EQ(desktop().virtualDisplays.displays.size(), hidden);
    for (CGWindowID i = 0; i < sourceCount; ++i) checkSource(i);
  }

 private:
  static constexpr CGWindowID firstSource = 50;
  static constexpr CGWindowID sourceCount = 4;
  static constexpr CGFloat titleBarHeight = 26;

  static CGRect originalFrame(CGWindowID index) {
    return {{10.0 + index, 20}, {700.0 + 50 * index, 500}};
  }

  void open() {
    const CGWindowID index = random_() % sourceCount;
    openMirror(index);
    for (OpenMirror& each : mirrors_) {
      if (each.window != firstSource + index) continue;
      each.isRolledUp = false;
      return;
    }
    mirrors_.push_back({.window = firstSource + index});
  }

  void command(std::size_t at) {
    OpenMirror& mirror = mirrors_[at];
    switch (random_() % 8) {
      case 0:
      case 1:
        closeMirror(at);
        mirrors_.erase(mirrors_.begin() + static_cast<std::ptrdiff_t>(at));
        return;
      case 2:
        MirrorScenario::command(
            mirror.isRolledUp ? "Roll Down (Show Mirror)" : "Roll Up (Title Only)", at);
        mirror.isRolledUp = !mirror.isRolledUp;
        return;
      case 3:
        MirrorScenario::command("Re-capture (Refresh / Fix Blur or Black)", at);
        mirror.hasEnded = false;
        return;
      case 4:
        return end(mirror);
      case 5:
        return deliver(mirror);
      default:
        return togglePark(mirror, at);
    }
  }

  void togglePark(OpenMirror& mirror, std::size_t at) {
    if (mirror.parked) {
      MirrorScenario::command("Stop Keeping Source Awake (Restore Window)", at);
      mirror.parked = std::nullopt;
      mirror.isOnHiddenDisplay = false;
      return;
    }
    MirrorScenario::command("Keep Source Awake (Park Off-Screen)", at);
    mirror.isOnHiddenDisplay = !desktop().virtualDisplays.classes["CGVirtualDisplay"].empty() &&
                               desktop().takesDisplayConfigurations;
    mirror.parked = mirror.isOnHiddenDisplay ? CGPoint{1448, 8} : CGPoint{1400, 860};
    mirror.hasEnded = false;
  }

  static SCStream* runningStream(CGWindowID window) {
    for (SCStream* stream : fake::streams()) {
      if (stream.isCapturing && stream.filter.window.windowID == window) return stream;
    }
    return nil;
  }

  static void deliver(const OpenMirror& mirror) {
    @autoreleasepool {
      if (SCStream* const stream = runningStream(mirror.window)) fake::deliver(stream, {});
    }
  }

  static void end(OpenMirror& mirror) {
    @autoreleasepool {
      if (SCStream* const stream = runningStream(mirror.window)) fake::stopWithError(stream, "end");
    }
    mirror.hasEnded = true;
  }

  void checkSource(CGWindowID index) {
    const CGWindowID window = firstSource + index;
    const auto mirror = std::find_if(mirrors_.begin(), mirrors_.end(),
                                     [&](const auto& each) { return each.window == window; });
    const bool isOpen = mirror != mirrors_.end();
    const CGPoint place =
        isOpen ? mirror->parked.value_or(originalFrame(index).origin) : originalFrame(index).origin;
    EXPECT_EQ(fake::describe(desktop().windows.at(index).frame.origin), fake::describe(place));
    EXPECT_EQ(runningStream(window) != nil, isOpen && !mirror->hasEnded);
  }

  std::vector<OpenMirror> mirrors_;
  std::mt19937 random_{41};
};

TEST_F(Walk, AgreesWithAModelAndLeavesNothingBehind) {
  run([&] {
    for (int i = 0; i < 400 && !HasFailure(); ++i) {
      SCOPED_TRACE(i);
      @autoreleasepool {
        step();
        check();
      }
    }
    hideAll();
    check();
    EXPECT_THAT(fake::streams(), IsEmpty());
    EXPECT_THAT(desktop().virtualDisplays.displays, IsEmpty());
  });
}

}  // namespace
}  // namespace vistrel
