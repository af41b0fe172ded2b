#include "tests/desktop/RunningVistrel.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

template <class Condition>
void waitUntil(const std::string& what, const ChildProcess& process, Condition&& condition) {
  if (!eventually(condition)) {
    throw std::runtime_error("no sign of " + what + "; standard error: " + process.standardError());
  }
}

}  // namespace

RunningVistrel::RunningVistrel(const PrivateDisplay& display, const XConnection& connection,
                               const std::vector<std::string>& arguments, double scale)
    : RunningVistrel(connection, command(arguments, display.environment()), scale) {}

RunningVistrel::RunningVistrel(const XConnection& connection, const ChildProcess::Command& command,
                               double scale)
    : RunningVistrel(connection, command, scale, std::make_shared<ScreenReader>(connection)) {}

RunningVistrel::RunningVistrel(const XConnection& connection, const ChildProcess::Command& command,
                               double scale, std::shared_ptr<const ScreenReader> screen)
    : connection_(&connection), scale_(scale), screen_(std::move(screen)), process_(command) {}

ChildProcess::Command RunningVistrel::command(const std::vector<std::string>& arguments,
                                              std::vector<std::string> environment) {
  ChildProcess::Command command{.arguments = {VISTREL_PROGRAM},
                                .environment = std::move(environment)};
  // Requests to the display server that fail unforeseen then show on standard error.
  command.environment.emplace_back("VISTREL_TRACE=errors");
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  return command;
}

ChildProcess::Command RunningVistrel::withStandardError(ChildProcess::Command command,
                                                        const std::string& where) {
  command.arguments.insert(command.arguments.begin(),
                           {"/bin/sh", "-c", "exec \"$0\" \"$@\" 2>&" + where});
  return command;
}

std::vector<xcb_window_t> RunningVistrel::windowsOnScreen() const {
  std::vector<xcb_window_t> windows = windowsOfProcess(*connection_, process_.pid());
  std::erase_if(windows, [&](xcb_window_t window) {
    return !isViewable(*connection_, window) || isEmbedded(*connection_, window);
  });
  return windows;
}

bool RunningVistrel::isPanel(xcb_window_t window) const {
  const auto types = connection_->numbers(window, "_NET_WM_WINDOW_TYPE");
  return std::ranges::count(types, connection_->atom("_NET_WM_WINDOW_TYPE_UTILITY")) > 0;
}

PickerOnScreen RunningVistrel::picker() const {
  xcb_window_t picker = XCB_WINDOW_NONE;
  waitUntil("the picker", process_, [&] {
    for (const xcb_window_t window : windowsOnScreen()) {
      if (titleOf(*connection_, window) == "Vistrel" && !isPanel(window)) {
        picker = window;
      }
    }
    return picker != XCB_WINDOW_NONE;
  });
  return {*connection_, picker, scale_, screen_};
}

std::vector<Rect> RunningVistrel::pickerRows(std::size_t count) const {
  const PickerOnScreen window = picker();
  std::vector<Rect> rows;
  waitUntil(std::to_string(count) + " rows in the picker", process_, [&] {
    rows = window.rows();
    return rows.size() == count;
  });
  return rows;
}

std::vector<PanelOnScreen> RunningVistrel::panels() const {
  std::vector<xcb_window_t> windows = windowsOnScreen();
  std::erase_if(windows, [&](xcb_window_t window) { return !isPanel(window); });
  // A server hands a program its window numbers in ascending order.
  std::ranges::sort(windows);
  std::vector<PanelOnScreen> panels;
  for (const xcb_window_t window : windows) {
    panels.emplace_back(*connection_, window, scale_, screen_);
  }
  return panels;
}

std::vector<PanelOnScreen> RunningVistrel::panels(std::size_t count) const {
  std::vector<PanelOnScreen> found;
  waitUntil(std::to_string(count) + " panels", process_, [&] {
    found = panels();
    return found.size() == count;
  });
  return found;
}

}  // namespace vistrel::testbed
