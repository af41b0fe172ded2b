#include "tests/hostile/Walk.h"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <utility>

#include "mirror/PanelLayout.h"
#include "platform/Application.h"
#include "platform/Factory.h"
#include "platform/linux/qt/space/QtConnection.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::hostile {
namespace {

constexpr std::size_t sourcesAtRest = 4;
constexpr std::size_t mostSources = 6;
constexpr int stepsBetweenLooks = 25;
/// Of windows that have gone: a server gives their numbers out again as soon as their clients go,
/// and what was asked for about one of them a moment before happens to the next.
constexpr std::size_t keptFromReuse = 8;

std::unique_ptr<platform::Backend> start() {
  static char program[] = "walk";
  static char* arguments[] = {program, nullptr};
  auto [backend, failure] = platform::makeBackend(1, arguments, platform::Instances::any);
  if (!backend) throw std::runtime_error(failure);
  return std::move(backend);
}

testbed::Point inTitleBar(const platform::Rect& frame, double screenHeight) {
  return {static_cast<int>(frame.midX()), static_cast<int>(screenHeight - frame.maxY()) + 13};
}

}  // namespace

Walk::Walk(testbed::PrivateDisplay& display, std::uint64_t seed)
    : display_(display),
      connection_(display.name()),
      backend_(start()),
      installation_(*backend_),
      random_(seed) {
  while (sources_.size() < sourcesAtRest) openSource();
}

Walk::~Walk() {
  manager_->closeAll();
  manager_.reset();
  // The program's own way out: what is still queued runs, threads end.
  backend_->application().terminate();
  backend_->application().run();
}

const std::vector<Walk::Command>& Walk::commands() {
  static const std::vector<Command> all{
      {"mirror", 200, &Walk::mirror},
      {"close", 70, &Walk::close},
      {"close all", 3, &Walk::closeAll},
      {"roll", 100, &Walk::roll},
      {"scale", 60, &Walk::scale},
      {"drag", 3, &Walk::drag},
      {"keep awake", 30, &Walk::keepAwake},
      {"re-capture", 60, &Walk::recapture},
      {"bring source to front", 20, &Walk::bringSourceToFront},
      {"hide and show", 10, &Walk::hideAndShow},
      {"switch desktop", 20, &Walk::switchDesktop},
      {"plug or unplug a monitor", 4, &Walk::plugOrUnplugMonitor},
      {"replace the manager", 1, &Walk::replaceManager},
      {"open a source", 30, &Walk::openSource},
      {"close a source", 25, &Walk::closeSource},
      {"resize a source", 30, &Walk::resizeSource},
      {"paint a source", 150, &Walk::paintSource},
      {"turn", 184, &Walk::turn},
  };
  return all;
}

const Walk::Command& Walk::drawCommand() {
  static const int weights =
      std::accumulate(commands().begin(), commands().end(), 0,
                      [](int sum, const Command& each) { return sum + each.weight; });
  int drawn = draw(weights);
  return *std::ranges::find_if(commands(), [&](const Command& each) {
    drawn -= each.weight;
    return drawn < 0;
  });
}

std::string Walk::goOnceRound() {
  for (const Command& each : commands()) {
    mirror();
    (this->*each.perform)();
  }
  return rest();
}

std::string Walk::go(int steps) {
  for (const int end = steps_ + steps; steps_ < end; ++steps_) {
    const Command& command = drawCommand();
    const bool isToLook = steps_ % stepsBetweenLooks == 0;
    const auto defect = perform(command, isToLook);
    if (defect.empty()) continue;
    return "step " + std::to_string(steps_) + ", \"" + command.name + "\": " + defect;
  }
  return {};
}

std::string Walk::perform(const Command& command, bool isToLook) {
  try {
    (this->*command.perform)();
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
  if (!isToLook || turnUntil([this] { return difference().empty(); })) return {};
  return difference();
}

std::string Walk::rest() {
  closeAll();
  if (hasSecondMonitor_) plugOrUnplugMonitor();
  sources_.clear();
  gone_.clear();
  while (sources_.size() < sourcesAtRest) openSource({400, 300});
  const bool isAtRest = turnUntil([this] {
    std::erase_if(closed_, [](const auto& mirror) { return mirror.expired(); });
    return closed_.empty() && difference().empty();
  });
  if (isAtRest) return letGo() ? "" : "what it holds does not come to rest";
  return "at rest: " + difference() + std::to_string(closed_.size()) + " closed mirrors live on";
}

/// What threads let go, they do a little later.
bool Walk::letGo() {
  constexpr int enough = 50;
  Footprint seen;
  int times = 0;
  return turnUntil([&] {
    const auto now = footprint();
    times = hasNotGrown(seen, now) && hasNotGrown(now, seen) ? times + 1 : 0;
    seen = now;
    return times == enough;
  });
}

WindowMirrorHUDController* Walk::drawMirror() {
  const auto& open = manager_->mirrors();
  if (open.empty()) return nullptr;
  return std::next(open.begin(), draw(static_cast<int>(open.size())))->second.get();
}

Walk::Source* Walk::drawSource() {
  if (sources_.empty()) return nullptr;
  return &std::next(sources_.begin(), draw(static_cast<int>(sources_.size())))->second;
}

void Walk::mirror() {
  Source* const source = drawSource();
  if (source == nullptr) return;
  const auto id = source->window->id();
  if (!source->record) source->record = listed(id);
  manager_->mirror(source->record);
  mirrors_[id].isRolledUp = false;
}

platform::WindowRecord Walk::listed(platform::WindowID window) {
  platform::WindowRecord record;
  const bool isListed = turnUntil([&] {
    // Windows are listed where a person sees them.
    const auto desktop = connection_.numbers(window, "_NET_WM_DESKTOP");
    if (!desktop.empty()) goToDesktop(desktop.front());
    manager_->refreshWindowsBlocking(1);
    const auto windows = manager_->cachedWindows();
    const auto found =
        std::ranges::find_if(windows, [&](const auto& each) { return each->windowID == window; });
    if (found != windows.end()) record = *found;
    return record != nullptr;
  });
  if (!isListed) throw std::runtime_error("a source is not listed: " + std::to_string(window));
  return record;
}

void Walk::close() {
  if (auto* const mirror = drawMirror()) close(*mirror);
}

void Walk::close(WindowMirrorHUDController& mirror) {
  mirrors_.erase(mirror.windowID());
  closed_.push_back(mirror.weak_from_this());
  mirror.closeClicked();
}

void Walk::closeAll() {
  for (const auto& [id, mirror] : manager_->mirrors()) closed_.push_back(mirror);
  manager_->closeAll();
  mirrors_.clear();
}

void Walk::roll() {
  auto* const mirror = drawMirror();
  if (mirror == nullptr) return;
  mirror->toggleRollUp();
  mirrors_[mirror->windowID()].isRolledUp ^= true;
}

void Walk::scale() {
  auto* const mirror = drawMirror();
  if (mirror == nullptr) return;
  mirror->setScale(std::array{0.25, 0.5, 0.75, 1.0}.at(static_cast<std::size_t>(draw(4))));
  mirrors_[mirror->windowID()].isRolledUp = false;
}

void Walk::drag() {
  auto* const mirror = drawMirror();
  if (mirror == nullptr) return;
  constexpr std::uint32_t noDoubleClick = 500;
  const auto from = inTitleBar(mirror->panel()->frame(), connection_.screen().height_in_pixels);
  input_.rest(noDoubleClick);
  input_.drag(from, {from.x + 40 - draw(80), from.y + 40 - draw(80)});
}

void Walk::keepAwake() {
  auto* const mirror = drawMirror();
  // One whose source has gone has nothing to keep awake.
  if (mirror == nullptr || !sources_.contains(mirror->windowID())) return;
  mirror->toggleKeepAwake();
  mirrors_[mirror->windowID()].isKeptAwake ^= true;
}

void Walk::recapture() {
  if (auto* const mirror = drawMirror()) mirror->recaptureMenu();
}

void Walk::bringSourceToFront() {
  if (auto* const mirror = drawMirror()) mirror->activateSource();
}

void Walk::hideAndShow() {
  // One that is told to hide before its manager has shown it, and then to show, openbox 3.6.1 may
  // leave hidden (ICCCM 4.1.4).
  if (!turnUntil([this] { return panelsOnScreen() == mirrors_.size(); })) {
    throw std::runtime_error("a panel is not shown");
  }
  backend_->application().hide();
  if (!turnUntil([this] { return panelsOnScreen() == 0; })) {
    throw std::runtime_error("a panel is not hidden with the program");
  }
  backend_->application().activateIgnoringOtherApps(true);
}

void Walk::switchDesktop() { goToDesktop(static_cast<std::uint32_t>(draw(4))); }

void Walk::goToDesktop(std::uint32_t desktop) {
  connection_.sendToManager(connection_.root(), "_NET_CURRENT_DESKTOP", {desktop, 0});
}

void Walk::plugOrUnplugMonitor() {
  // Names are not to be used again at once.
  const auto name = [this](const char* side) { return side + std::to_string(monitorsMade_); };
  if (std::exchange(hasSecondMonitor_, !hasSecondMonitor_)) {
    monitors_.remove(name("left"));
    monitors_.remove(name("right"));
  } else {
    ++monitorsMade_;
    monitors_.setPrimary(name("left"), {0, 0, 640, 1024});
    monitors_.set(name("right"), {640, 0, 640, 1024});
  }
}

void Walk::replaceManager() { display_.replaceWindowManager(testbed::WindowManager::openbox); }

void Walk::openSource() {
  if (sources_.size() < mostSources) openSource({150 + draw(300), 100 + draw(300)});
}

void Walk::openSource(Size size) {
  // All of it on the left monitor.
  const testbed::Rect area{20 + draw(80), 40 + draw(400), size.width, size.height};
  auto window = std::make_unique<testbed::TestWindow>(
      display_.name(), testbed::TestWindow::Options{.area = area,
                                                    .decorated = false,
                                                    // Not this process, which the program is.
                                                    .pid = getppid()});
  const auto id = window->id();
  const auto home = window->area();
  // The server gives numbers of windows that have gone out again. Whoever has been mirrored by this
  // one is not to be mistaken for it.
  if (const auto former = manager_->mirrors().find(id); former != manager_->mirrors().end()) {
    close(*former->second);
  }
  sources_[id] = {std::move(window), nullptr, home};
}

void Walk::closeSource() {
  Source* const source = drawSource();
  if (source == nullptr || sources_.size() == 1) return;
  const auto id = source->window->id();
  source->window->destroy();
  gone_.push_back(std::move(source->window));
  if (gone_.size() > keptFromReuse) gone_.pop_front();
  sources_.erase(id);
}

void Walk::resizeSource() {
  Source* const source = drawSource();
  if (source == nullptr || isKeptAwake(source->window->id())) return;
  if (source->window->area() != source->home) return;  // it is on its way
  source->window->resize(150 + draw(300), 100 + draw(300));
  source->home = source->window->area();
}

void Walk::paintSource() {
  Source* const source = drawSource();
  if (source == nullptr) return;
  const auto shade = [this] { return static_cast<std::uint8_t>(40 + draw(200)); };
  source->window->show(testbed::Quadrants::uniform({shade(), shade(), shade()}));
}

void Walk::turn() {
  QCoreApplication::processEvents();
  // Outside of the toolkit's own loop it leaves these for later, and what comes of them until it
  // hears something.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  platform::linux_desktop::syncQt();
}

bool Walk::turnUntil(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + testbed::generousDeadline;
  QTimer wakeUp;  // conditions depend on what happens outside the event loop too
  wakeUp.start(5);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    turn();
  }
  return true;
}

bool Walk::isKeptAwake(platform::WindowID window) const {
  const auto found = mirrors_.find(window);
  return found != mirrors_.end() && found->second.isKeptAwake;
}

std::size_t Walk::panelsOnScreen() const {
  const auto windows = testbed::windowsOfProcess(connection_, getpid());
  return static_cast<std::size_t>(std::ranges::count_if(
      windows, [this](xcb_window_t window) { return testbed::isViewable(connection_, window); }));
}

std::string Walk::difference() const {
  std::ostringstream text;
  if (manager_->mirrors().size() != mirrors_.size()) {
    text << manager_->mirrors().size() << " mirrors instead of " << mirrors_.size() << "; ";
  }
  if (panelsOnScreen() != mirrors_.size()) {
    text << panelsOnScreen() << " panels on screen instead of " << mirrors_.size() << "; ";
  }
  for (const auto& [id, expected] : mirrors_) {
    const auto found = manager_->mirrors().find(id);
    if (found == manager_->mirrors().end()) continue;
    const double height = found->second->panel()->frame().height();
    if ((height == panelTitleBarHeight) != expected.isRolledUp) {
      text << "a panel is " << height << " high; ";
    }
  }
  for (const auto& [id, source] : sources_) {
    const bool isHome = source.window->area() == source.home;
    if (isHome == isKeptAwake(id))
      text << "a source is " << (isHome ? "" : "not ") << "at home, at " << source.window->area()
           << "; ";
  }
  return text.str();
}

}  // namespace vistrel::hostile
