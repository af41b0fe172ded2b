#include "platform/linux/wayland/kwin/KWinMover.h"

#include <cassert>
#include <sstream>
#include <string>
#include <utility>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/kwin/NativeHomecoming.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How long one command may wait for KWin, in seconds: as long as for a window manager.
constexpr double commandTime = 2;
/// How long the program's end may.
constexpr double timeToLeave = 0.8;

// KWin 5.27 raises nothing but what it activates.
constexpr const char* scriptThatActivates = R"(
var windows = all().filter(function (each) { return each.pid == process; });
windows.sort(function (a, b) { return a.stackingOrder - b.stackingOrder; });
var open = windows.filter(function (each) { return !each.minimized; });
var shown = open.filter(isShown);
var front = (shown.length ? shown : open.length ? open : windows).pop();
shown.forEach(function (each) { if (each !== front) activate(each); });
if (front) { activate(front); tell('front'); }
)";

}  // namespace

KWinMover::KWinMover(std::shared_ptr<ParkedSources> x, std::shared_ptr<NativeWindowIds> ids,
                     std::shared_ptr<KWinGuard> guard)
    : x_(std::move(x)), ids_(std::move(ids)), guard_(std::move(guard)) {
  bringLeftHome(record_, scripts_, monotonicNow() + commandTime);
}

KWinMover::~KWinMover() { KWinMover::leaveHomeFirst(); }

std::vector<WindowID> KWinMover::windowsOf(std::int32_t processID) {
  assert(isMainThread());
  const auto told =
      scripts_.run("all().forEach(function (each) { if (each.pid == " + std::to_string(processID) +
                       ") tell(each.internalId); });",
                   monotonicNow() + commandTime);
  std::vector<WindowID> windows;
  std::istringstream lines(told.value_or(""));
  for (std::string uuid; std::getline(lines, uuid);) {
    if (const auto id = ids_->knownIdOf(uuid)) windows.push_back(*id);
  }
  return windows;
}

std::optional<Point> KWinMover::positionOf(WindowID window) {
  assert(isMainThread());
  const auto told = scripts_.run("var each = find(" + scriptLiteral(ids_->uuidOf(window)) +
                                     ");\n"
                                     "if (each) tell(inside(each).x + ' ' + inside(each).y);",
                                 monotonicNow() + commandTime);
  std::istringstream numbers(told.value_or(""));
  Point position;
  if (!(numbers >> position.x >> position.y)) return std::nullopt;
  return position;
}

bool KWinMover::move(WindowID window, Point position) {
  const auto uuid = ids_->uuidOf(window);
  const auto found = positionOf(window);
  if (!found) return false;
  auto& places = parked_.try_emplace(uuid, ParkedPlaces{*found, position}).first->second;
  // Of a window on its way home the record goes on to say where that was, until it is there.
  if (position != places.home) {
    places.parked = position;
    guard_->ensureRunning();
    record_.write(parked_);
  }
  const auto told = scripts_.run(scriptThatMoves(uuid, position), monotonicNow() + commandTime);
  const bool isThere = told && !told->empty();
  if (isThere && position == places.home) {
    parked_.erase(uuid);
    record_.write(parked_);
  }
  return isThere;
}

bool KWinMover::activateWindows(std::int32_t processID) {
  assert(isMainThread());
  const auto told =
      scripts_.run("var process = " + std::to_string(processID) + ";" + scriptThatActivates,
                   monotonicNow() + commandTime);
  return told && !told->empty();
}

void KWinMover::sendAllHome() {
  x_->sendAllHome();
  moveAll(&ParkedPlaces::home, commandTime);
}

void KWinMover::parkAgain() {
  moveAll(&ParkedPlaces::parked, commandTime);
  x_->parkAgain();
}

void KWinMover::leaveHomeFirst() {
  x_->leaveHomeFirst();
  if (moveAll(&ParkedPlaces::home, timeToLeave)) {
    record_.write({});
  } else {
    guard_->leaveItBehind();
  }
  parked_.clear();
}

bool KWinMover::moveAll(Point ParkedPlaces::*place, double patience) {
  std::string script;
  for (const auto& [uuid, places] : parked_) script += scriptThatMoves(uuid, places.*place);
  return script.empty() || scripts_.run(script, monotonicNow() + patience).has_value();
}

}  // namespace vistrel::platform::linux_desktop
