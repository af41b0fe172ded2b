#include "platform/linux/wayland/kwin/WorkAreas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>

namespace vistrel::platform::linux_desktop {

// KWin 5.27 numbers outputs; KWin 6 has a list of them. Of its areas 7 is an output, and 2 what a
// maximised window has of it (ScreenArea, MaximizeArea).
const char* const scriptThatTellsWorkAreas = R"(
var outputs = [];
if (workspace.numScreens === undefined) outputs = workspace.screens;
else for (var number = 0; number < workspace.numScreens; ++number) outputs.push(number);
for (var i = 0; i < outputs.length; ++i) {
  tell([7, 2].map(function (kind) {
    var area = workspace.clientArea(kind, outputs[i], workspace.currentDesktop);
    return [area.x, area.y, area.width, area.height].join(' ');
  }).join(' '));
}
)";

namespace {

/// How many of X's pixels there are to a logical one: both count from the desktop's corner.
double scaleOf(const std::vector<PixelRect>& monitors, const std::vector<WorkArea>& areas) {
  int pixels = 0;
  double logical = 0;
  for (const auto& each : monitors) pixels = std::max(pixels, each.x + each.width);
  for (const auto& each : areas) logical = std::max(logical, each.output.maxX());
  return logical > 0 ? pixels / logical : 1;
}

bool isSame(const PixelRect& monitor, const Rect& output, double scale) {
  const std::array<double, 4> differences{
      monitor.x - output.minX() * scale, monitor.y - output.minY() * scale,
      monitor.width - output.width() * scale, monitor.height - output.height() * scale};
  return std::all_of(differences.begin(), differences.end(),
                     [](double each) { return std::abs(each) <= 1; });
}

PixelRect shrunk(const PixelRect& monitor, const WorkArea& area, double scale) {
  const auto pixels = [&](double logical) {
    return std::max(0, static_cast<int>(std::lround(logical * scale)));
  };
  const int left = pixels(area.free.minX() - area.output.minX());
  const int top = pixels(area.free.minY() - area.output.minY());
  const int right = pixels(area.output.maxX() - area.free.maxX());
  const int bottom = pixels(area.output.maxY() - area.free.maxY());
  const PixelRect rest{monitor.x + left, monitor.y + top, monitor.width - left - right,
                       monitor.height - top - bottom};
  return rest.width > 0 && rest.height > 0 ? rest : monitor;
}

}  // namespace

std::vector<WorkArea> parseWorkAreas(const std::string& told) {
  std::vector<WorkArea> areas;
  std::istringstream lines(told);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream numbers(line);
    WorkArea area;
    for (auto* const each : {&area.output, &area.free}) {
      numbers >> each->origin.x >> each->origin.y >> each->size.width >> each->size.height;
    }
    if (!numbers) return {};
    areas.push_back(area);
  }
  return areas;
}

std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors,
                                 const std::vector<WorkArea>& areas) {
  const double scale = scaleOf(monitors, areas);
  std::vector<PixelRect> free;
  for (const auto& monitor : monitors) {
    const auto area = std::find_if(areas.begin(), areas.end(), [&](const WorkArea& each) {
      return isSame(monitor, each.output, scale);
    });
    free.push_back(area == areas.end() ? monitor : shrunk(monitor, *area, scale));
  }
  return free;
}

}  // namespace vistrel::platform::linux_desktop
