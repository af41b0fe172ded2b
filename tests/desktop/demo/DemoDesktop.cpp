#include "tests/desktop/demo/DemoDesktop.h"

#include <array>
#include <stdexcept>

#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

struct Placed {
  std::string kind;
  Rect area;
};

/// In the picker's order.
const std::array<Placed, 3> programs{Placed{"log", {40, 560, 480, 300}},
                                     Placed{"notes", {1000, 60, 400, 220}},
                                     Placed{"tide", {450, 330, 950, 530}}};

/// Paints the background as programs for wallpapers do: compositing managers look for the pixmap,
/// which lives as long as the connection.
void paintDesktop(const XConnection& connection) {
  constexpr std::uint32_t slate = 0x3a4656;
  constexpr std::uint16_t side = 16;
  xcb_connection_t* const x = connection.get();
  const xcb_window_t root = connection.root();
  const auto pixmap = xcb_generate_id(x);
  xcb_create_pixmap(x, connection.screen().root_depth, pixmap, root, side, side);
  const auto paint = xcb_generate_id(x);
  xcb_create_gc(x, paint, pixmap, XCB_GC_FOREGROUND, &slate);
  constexpr xcb_rectangle_t all{0, 0, side, side};
  xcb_poly_fill_rectangle(x, pixmap, paint, 1, &all);
  xcb_free_gc(x, paint);
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, root, connection.atom("_XROOTPMAP_ID"),
                      XCB_ATOM_PIXMAP, 32, 1, &pixmap);
  xcb_change_window_attributes(x, root, XCB_CW_BACK_PIXMAP, &pixmap);
  xcb_clear_area(x, 0, root, 0, 0, 0, 0);
  connection.sync();
}

std::unique_ptr<ChildProcess> startSource(const PrivateDisplay& display, const Placed& source) {
  const auto [x, y, width, height] = source.area;
  return std::make_unique<ChildProcess>(ChildProcess::Command{
      .arguments = {VISTREL_DEMO_SOURCE, source.kind, std::to_string(x), std::to_string(y),
                    std::to_string(width), std::to_string(height)},
      .environment = display.environment()});
}

xcb_window_t openedWindow(const XConnection& connection, const ChildProcess& process) {
  xcb_window_t found = XCB_WINDOW_NONE;
  const bool came = eventually([&] {
    for (const xcb_window_t window : windowsOfProcess(connection, process.pid())) {
      if (isViewable(connection, window) && frameExtentsOf(connection, window)) {
        found = window;
      }
    }
    return found != XCB_WINDOW_NONE;
  });
  if (!came) {
    throw std::runtime_error("a source window did not open: " + process.standardError());
  }
  return found;
}

}  // namespace

DemoDesktop::DemoDesktop(const PrivateDisplay::Options& options) : display_(options) {
  paintDesktop(connection_);
  for (const Placed& program : programs) {
    auto process = startSource(display_, program);
    const xcb_window_t window = openedWindow(connection_, *process);
    sources_.push_back({std::move(process), window});
  }
}

void DemoDesktop::start(const std::string& program) {
  auto command = RunningVistrel::command({}, display_.environment());
  if (!program.empty()) {
    command.arguments.front() = program;
  }
  vistrel_ = std::make_unique<RunningVistrel>(connection_, command);
}

PanelOnScreen DemoDesktop::mirror(Program program, std::size_t count) {
  constexpr std::uint32_t betweenClicks = 700;
  const auto row = static_cast<std::size_t>(program);
  const Point at = vistrel_->pickerRows(programs.size()).at(row).centre();
  hand_.rest(betweenClicks);
  hand_.clickAt(at, 2);
  return vistrel_->panels(count).back();
}

xcb_window_t DemoDesktop::windowOf(Program program) const {
  return sources_.at(static_cast<std::size_t>(program)).window;
}

void DemoDesktop::activate(xcb_window_t window) {
  // EWMH 1.5, _NET_ACTIVE_WINDOW
  constexpr std::uint32_t byPerson = 2;
  connection_.sendToManager(window, "_NET_ACTIVE_WINDOW", {byPerson});
  const bool isActive = eventually([&] {
    const auto active = connection_.numbers(connection_.root(), "_NET_ACTIVE_WINDOW");
    return !active.empty() && active.front() == window;
  });
  if (!isActive) {
    throw std::runtime_error("a window did not come to the front");
  }
}

Rect DemoDesktop::framedArea(xcb_window_t window) const {
  const Rect area = areaOf(connection_, window).value_or(Rect{});
  const FrameExtents frame = frameExtentsOf(connection_, window).value_or(FrameExtents{});
  return {area.x - frame.left, area.y - frame.top, area.width + frame.left + frame.right,
          area.height + frame.top + frame.bottom};
}

}  // namespace vistrel::testbed
