#include "platform/Displays.h"
#include "platform/VirtualDisplay.h"
#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::classNamed;
using platform::ConfigureOption;
using platform::displayBounds;
using platform::DisplayID;
using platform::mainDisplayID;
using platform::onlineDisplayCount;
using platform::Rect;
using platform::RuntimeObject;
using platform::Size;

/// On a desktop that has room for further displays.
class DisplaysContract : public ContractTest {
 protected:
  static std::shared_ptr<RuntimeObject> makeSettings(std::uint32_t width, std::uint32_t height) {
    const auto settings = classNamed("CGVirtualDisplaySettings")->make();
    settings->send("setHiDPI:", {true});
    settings->send(
        "setModes:",
        {std::vector{classNamed("CGVirtualDisplayMode")
                         ->make("initWithWidth:height:refreshRate:", {width, height, 60.0})}});
    return settings;
  }
  /// Null when there is none.
  static std::shared_ptr<RuntimeObject> makeDisplay(std::uint32_t width, std::uint32_t height) {
    const auto descriptor = classNamed("CGVirtualDisplayDescriptor")->make();
    descriptor->send("setName:", {std::string("Contract")});
    descriptor->send("setMaxPixelsWide:", {width});
    descriptor->send("setMaxPixelsHigh:", {height});
    auto display = classNamed("CGVirtualDisplay")->make("initWithDescriptor:", {descriptor});
    if (!display) return nullptr;
    const auto applied = display->send("applySettings:", {makeSettings(width, height)});
    return std::get<bool>(applied) ? std::move(display) : nullptr;
  }
  static DisplayID idOf(RuntimeObject& display) {
    return std::get<std::uint32_t>(display.send("displayID"));
  }
  static void place(DisplayID display, std::int32_t x, std::int32_t y) {
    const auto configuration = platform::beginDisplayConfiguration();
    ASSERT_NE(configuration, nullptr);
    configuration->configureOrigin(display, x, y);
    configuration->complete(ConfigureOption::forSession);
  }
  static double mainMaxX() { return displayBounds(mainDisplayID()).maxX(); }

  const std::uint32_t before_ = onlineDisplayCount();
};

TEST_F(DisplaysContract, HasAMainDisplayAtTheOrigin) {
  EXPECT_GE(before_, 1U);
  const Rect bounds = displayBounds(mainDisplayID());
  EXPECT_EQ(bounds.origin, (platform::Point{0, 0}));
  EXPECT_EQ(bounds.size, platform::screens().front().frame.size);
}

TEST_F(DisplaysContract, KnowsNoBoundsOfADisplayThatThereIsNot) {
  EXPECT_EQ(displayBounds(0), Rect());
  EXPECT_EQ(displayBounds(987654321), Rect());
}

TEST_F(DisplaysContract, ListsTheClassesByWhatTheyAreTold) {
  const auto properties = classNamed("CGVirtualDisplayDescriptor")->properties();
  EXPECT_THAT(properties,
              testing::Contains(testing::Field(&platform::RuntimeProperty::name, "maxPixelsWide")));
  EXPECT_THAT(classNamed("CGVirtualDisplayDescriptor")->selectors(),
              testing::Contains("setMaxPixelsWide:"));
  EXPECT_THAT(classNamed("CGVirtualDisplay")->selectors(), testing::Contains("applySettings:"));
  EXPECT_EQ(classNamed("NoSuchClass"), nullptr);
}

TEST_F(DisplaysContract, MakesAVirtualDisplayThatTheMainLoopTakesDown) {
  auto display = makeDisplay(1280, 960);
  ASSERT_NE(display, nullptr);
  const DisplayID id = idOf(*display);
  EXPECT_NE(id, 0U);
  EXPECT_NE(id, mainDisplayID());
  ASSERT_TRUE(turnUntil([&] { return displayBounds(id).size == Size{640, 480}; }));
  EXPECT_EQ(onlineDisplayCount(), before_ + 1);
  EXPECT_EQ(displayBounds(mainDisplayID()).origin, (platform::Point{0, 0}));

  display.reset();
  EXPECT_EQ(onlineDisplayCount(), before_ + 1);
  EXPECT_EQ(displayBounds(id).size, (Size{640, 480}));
  ASSERT_TRUE(turnUntil([&] { return onlineDisplayCount() == before_; }));
  EXPECT_EQ(displayBounds(id), Rect());
}

TEST_F(DisplaysContract, PlacesAVirtualDisplayWhenTheConfigurationIsComplete) {
  const auto display = makeDisplay(1280, 960);
  ASSERT_NE(display, nullptr);
  const DisplayID id = idOf(*display);
  ASSERT_TRUE(turnUntil([&] { return displayBounds(id).width() > 0; }));
  const Rect bounds = displayBounds(id);
  {
    const auto dropped = platform::beginDisplayConfiguration();
    ASSERT_NE(dropped, nullptr);
    dropped->configureOrigin(id, static_cast<std::int32_t>(mainMaxX()) + 64, 32);
  }
  EXPECT_EQ(displayBounds(id), bounds);
  place(id, static_cast<std::int32_t>(mainMaxX()), 0);
  EXPECT_EQ(displayBounds(id), platform::rect(mainMaxX(), 0, 640, 480));
}

TEST_F(DisplaysContract, TellsVirtualDisplaysApart) {
  auto first = makeDisplay(1280, 960);
  const auto second = makeDisplay(1600, 1000);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  ASSERT_NE(idOf(*first), idOf(*second));
  EXPECT_EQ(onlineDisplayCount(), before_ + 2);
  first.reset();
  ASSERT_TRUE(turnUntil([&] { return onlineDisplayCount() == before_ + 1; }));
  EXPECT_EQ(displayBounds(idOf(*second)).size, (Size{800, 500}));
}

}  // namespace
}  // namespace vistrel::contract
