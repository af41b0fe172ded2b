#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <utility>

#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/TestedHere.h"
#include "tests/support/AccessibilityBus.h"

namespace vistrel::testbed {
namespace {

constexpr Rect wholeScreen{0, 0, 1280, 1024};

bool overlap(Rect a, Rect b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

bool isInside(Rect inner, Rect outer) {
  return inner.x >= outer.x && inner.y >= outer.y &&
         inner.x + inner.width <= outer.x + outer.width &&
         inner.y + inner.height <= outer.y + outer.height;
}

Rgb meanOf(const Picture& screen, Rect area) {
  int red = 0;
  int green = 0;
  int blue = 0;
  for (int y = area.y; y < area.y + area.height; ++y) {
    for (int x = area.x; x < area.x + area.width; ++x) {
      red += screen.at(x, y).red;
      green += screen.at(x, y).green;
      blue += screen.at(x, y).blue;
    }
  }
  const auto mean = [&](int sum) {
    return static_cast<std::uint8_t>(sum / (area.width * area.height));
  };
  return {mean(red), mean(green), mean(blue)};
}

/// From 1, where what one has more of than elsewhere the other has too, down to -1; none is 0, as
/// where all are the same.
double correlationOf(const std::vector<std::pair<double, double>>& values) {
  double meanA = 0;
  double meanB = 0;
  for (const auto& [a, b] : values) {
    meanA += a / static_cast<double>(values.size());
    meanB += b / static_cast<double>(values.size());
  }
  double together = 0;
  double ofA = 0;
  double ofB = 0;
  for (const auto& [a, b] : values) {
    together += (a - meanA) * (b - meanB);
    ofA += (a - meanA) * (a - meanA);
    ofB += (b - meanB) * (b - meanB);
  }
  const double most = std::sqrt(ofA * ofB);
  return most > 0 ? together / most : 0;
}

/// A program that people mirror, all the way from the picker to its end.
class ProgramAsSource : public DesktopTest, public ::testing::WithParamInterface<SourceProgram> {
 protected:
  static constexpr int columns = 32;
  static constexpr int rows = 24;
  using Cells = std::vector<std::optional<Rgb>>;

  ProgramAsSource()
      : program_({.arguments = GetParam().commandIn(display_.home()),
                  .environment = display_.environment()}) {
    const std::string& entry = GetParam().desktopEntry;
    if (!entry.empty()) {
      const std::filesystem::path applications = display_.home() / "share/applications";
      std::filesystem::create_directories(applications);
      std::filesystem::create_symlink("/usr/share/applications/" + entry, applications / entry);
    }
    EXPECT_TRUE(eventually([&] {
      const auto managed = connection_.numbers(connection_.root(), "_NET_CLIENT_LIST");
      window_ = managed.empty() ? xcb_window_t{XCB_WINDOW_NONE} : managed.front();
      return isViewable(connection_, window_) || program_.ending();
    }));
    EXPECT_FALSE(program_.ending()) << program_.standardError();
  }

  Rect area() const { return areaOf(connection_, window_).value_or(Rect{}); }
  /// What a person sees of the source, with its frame.
  Rect framedArea() const {
    const Rect inside = area();
    const FrameExtents frame = frameExtentsOf(connection_, window_).value_or(FrameExtents{});
    return {inside.x - frame.left, inside.y - frame.top, inside.width + frame.left + frame.right,
            inside.height + frame.top + frame.bottom};
  }
  /// Where the panel's picture is: all of the source, as large as the panel allows.
  static Rect pictureIn(Rect contents, Rect source) {
    const double scale = std::min(contents.width / static_cast<double>(source.width),
                                  contents.height / static_cast<double>(source.height));
    const int width = static_cast<int>(source.width * scale);
    const int height = static_cast<int>(source.height * scale);
    return {contents.x + (contents.width - width) / 2, contents.y + (contents.height - height) / 2,
            width, height};
  }
  /// The colours of an area's parts; none for those that `cover` hides.
  static Cells cellsOf(const Picture& screen, Rect area, std::optional<Rect> cover) {
    Cells cells;
    for (int row = 0; row < rows; ++row) {
      for (int column = 0; column < columns; ++column) {
        const Point from = area.at(column / double{columns}, row / double{rows});
        const Point to = area.at((column + 1) / double{columns}, (row + 1) / double{rows});
        const Rect cell{from.x, from.y, to.x - from.x, to.y - from.y};
        const bool isSeen = isInside(cell, wholeScreen) && !(cover && overlap(cell, *cover));
        cells.push_back(isSeen ? std::optional(meanOf(screen, cell)) : std::nullopt);
      }
    }
    return cells;
  }
  Cells shownBy(const PanelOnScreen& panel) const {
    const Rect contents = panel.contents();
    // There is something of the panel's own in that corner.
    const Rect grip{contents.x + contents.width - 20, contents.y + contents.height - 20, 20, 20};
    return cellsOf(screen_.readAll(), pictureIn(contents, framedArea_), grip);
  }
  /// Whether both have the same pattern, in what is seen of either.
  static bool areAlike(const Cells& a, const Cells& b) {
    std::vector<std::pair<double, double>> levels;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (a[i] && b[i]) {
        levels.emplace_back(a[i]->red, b[i]->red);
        levels.emplace_back(a[i]->green, b[i]->green);
        levels.emplace_back(a[i]->blue, b[i]->blue);
      }
    }
    constexpr double nearlyWhole = 0.9;
    return correlationOf(levels) > nearlyWhole;
  }
  /// Whether the panel shows what the screen does.
  ::testing::AssertionResult isMirrored(const PanelOnScreen& panel) {
    activate(window_);
    if (eventually([&] {
          framedArea_ = framedArea();
          return areAlike(shownBy(panel), cellsOf(screen_.readAll(), framedArea_, panel.area()));
        })) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "the source is " << framedArea_;
  }
  /// What the panel shows of the source once that has drawn all of its window.
  Cells restingPicture(const PanelOnScreen& panel) {
    EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
    EXPECT_TRUE(isMirrored(panel));
    return shownBy(panel);
  }
  void setFullScreen(bool isOn) {
    connection_.sendToManager(
        window_, "_NET_WM_STATE",
        {isOn ? 1U : 0U, connection_.atom("_NET_WM_STATE_FULLSCREEN"), 0, byPerson});
  }

  ChildProcess program_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  Rect framedArea_;
};

TEST_P(ProgramAsSource, IsMirroredUntilItCloses) {
  const AccessibilityBus screenReader(display_);
  startVistrel();
  const auto picker = [&] {
    return screenReader.program(vistrel_->process().pid()).all("list item");
  };
  ASSERT_TRUE(eventually([&] { return picker().size() == 1; }));
  EXPECT_EQ(picker().front().name(), GetParam().row);
  picker().front().perform("Press");
  const PanelOnScreen panel = vistrel_->panels(1).front();
  EXPECT_TRUE(isMirrored(panel));

  setFullScreen(true);
  EXPECT_TRUE(eventually([&] { return area() == wholeScreen; })) << area();
  EXPECT_TRUE(isMirrored(panel)) << "full-screen";
  EXPECT_TRUE(eventually([&] { return isAbove(connection_, panel.id(), window_); }));
  setFullScreen(false);
  EXPECT_TRUE(eventually([&] { return area() != wholeScreen; }));
  Cells last = restingPicture(panel);
  constexpr std::uint32_t iconicState = 3;
  connection_.sendToManager(window_, "WM_CHANGE_STATE", {iconicState});
  EXPECT_TRUE(eventually([&] { return !isViewable(connection_, window_); }));
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  EXPECT_TRUE(areAlike(shownBy(panel), last)) << "minimised";
  activate(window_);
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::live; })) << "back";
  last = restingPicture(panel);
  connection_.sendToManager(window_, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, byPerson});
  EXPECT_TRUE(program_.waitForEnd().has_value());
  EXPECT_TRUE(eventually([&] { return panel.dot() == Dot::stale; }));
  EXPECT_TRUE(areAlike(shownBy(panel), last)) << "closed";
}

INSTANTIATE_TEST_SUITE_P(Programs, ProgramAsSource, ::testing::ValuesIn(programsTestedHere()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vistrel::testbed
