#include "tests/hostile/Fuzzer.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <sstream>

#include "platform/linux/x11/server/StrayErrors.h"
#include "tests/hostile/RawSource.h"
#include "tests/support/Poll.h"
#include "tests/support/ServerResources.h"

namespace vistrel::hostile {

namespace x11 = platform::linux_desktop;
using testbed::Rect;

namespace {

constexpr int checkEvery = 250;
constexpr testbed::Point awayFromEverything{1270, 1010};

}  // namespace

Fuzzer::Fuzzer(const testbed::PrivateDisplay& display, std::uint64_t seed)
    : display_(display),
      random_(seed),
      person_(display.name()),
      pointer_(person_),
      lister_(x11::Connection::open()) {
  constexpr std::array<Rect, 3> panels{
      {{900, 20, 300, 240}, {900, 300, 220, 300}, {900, 620, 80, 40}}};
  for (const auto& panel : panels) mirrors_.push_back(std::make_unique<TestMirror>(person_, panel));
  openProgram();
  pointer_.moveTo(awayFromEverything);
  mirrorWellBehavedSource();
  resourcesAtStart_ = resources();
}

Fuzzer::~Fuzzer() = default;

void Fuzzer::openProgram() {
  program_ = std::make_unique<testbed::XConnection>(display_.name());
  windows_.clear();
}

/// What the server says to the program is of no interest, but has to be taken.
void Fuzzer::drainProgram() {
  program_->sync();
  while (const testbed::XReply<xcb_generic_event_t> event{xcb_poll_for_event(program_->get())}) {
  }
}

std::string Fuzzer::defect() {
  const auto errors = x11::strayErrors();
  if (errors.count > 0) return "a request failed: " + errors.first;
  return wrongListing();
}

std::string Fuzzer::run(int rounds) {
  static constexpr std::array<Deed, 23> deeds{
      {{60, &Fuzzer::createWindow},   {60, &Fuzzer::mapWindow},      {40, &Fuzzer::unmapWindow},
       {30, &Fuzzer::destroyWindow},  {30, &Fuzzer::reparentWindow}, {80, &Fuzzer::configureWindow},
       {10, &Fuzzer::shapeWindow},    {150, &Fuzzer::paint},         {250, &Fuzzer::setProperty},
       {30, &Fuzzer::setTitle},       {40, &Fuzzer::deleteProperty}, {10, &Fuzzer::setClientList},
       {5, &Fuzzer::setManager},      {60, &Fuzzer::sendEvent},      {5, &Fuzzer::movePointer},
       {1, &Fuzzer::killProgram},     {15, &Fuzzer::startMirror},    {5, &Fuzzer::stopMirror},
       {5, &Fuzzer::configureMirror}, {5, &Fuzzer::resizePanel},     {4, &Fuzzer::list},
       {4, &Fuzzer::takeSelection},   {3, &Fuzzer::writeDesktopFile}}};
  const int total = std::accumulate(deeds.begin(), deeds.end(), 0,
                                    [](int sum, const Deed& each) { return sum + each.weight; });
  for (int i = 0; i < rounds; ++i) {
    int chosen = below(total);
    const auto* deed = deeds.data();
    for (; chosen >= deed->weight; ++deed) chosen -= deed->weight;
    (this->*deed->perform)();
    if (++rounds_ % checkEvery != 0) continue;
    for (const auto& each : mirrors_) each->turn();
    if (auto what = defect(); !what.empty()) return what;
  }
  return {};
}

void Fuzzer::mirrorWellBehavedSource() {
  RawSource source(person_, {});
  for (const auto& each : mirrors_) {
    each->resizePanel(120, 100);
    each->start(source.id());
  }
  source.paint(testbed::fourColours);
  for (const auto& each : mirrors_) {
    static_cast<void>(
        testbed::eventually([&] { return each->shows(testbed::fourColours, source.area()); }));
    each->stop();
    each->settle();
  }
}

std::string Fuzzer::mirrorsThatAreWrong() {
  RawSource source(person_, {});
  // Not those that are mirrored next, which the panels are not to show before their time.
  constexpr testbed::Quadrants colours{testbed::white, testbed::red, testbed::green, testbed::blue};
  std::string wrong;
  for (const auto& each : mirrors_) {
    each->resizePanel(150, 120);
    each->start(source.id());
  }
  source.paint(colours);
  for (const auto& each : mirrors_) {
    const bool isRight = testbed::eventually([&] { return each->shows(colours, source.area()); });
    if (!isRight) wrong = "a mirror does not show its source; " + each->startFailure();
  }
  return wrong;
}

std::vector<std::string> Fuzzer::resources() const {
  std::vector<std::string> all;
  for (const auto& each : mirrors_) {
    std::ostringstream text;
    text << resourcesOf(person_, each->idBase());
    all.push_back(text.str());
  }
  return all;
}

std::string Fuzzer::finish() {
  killProgram();
  pointer_.moveTo(awayFromEverything);
  if (auto wrong = mirrorsThatAreWrong(); !wrong.empty()) return wrong;
  for (const auto& each : mirrors_) each->stop();
  mirrorWellBehavedSource();
  for (const auto& each : mirrors_) {
    if (!testbed::eventually([&] { return each->answered() == each->asked(); })) {
      return "a stream's request has no answer";
    }
  }
  if (!testbed::eventually([this] { return *answers_ == listsAsked_; })) {
    return "a request for the list has no answer";
  }
  // What a mirror has yet to draw of a panel that comes to light may be half a second away.
  std::vector<std::string> now;
  if (!testbed::eventually([&] { return (now = resources()) == resourcesAtStart_; })) {
    const auto differing = std::ranges::mismatch(now, resourcesAtStart_);
    return "the server holds other things than at first: " + *differing.in1 + "; at first " +
           *differing.in2;
  }
  return defect();
}

int Fuzzer::samples() const {
  return std::accumulate(mirrors_.begin(), mirrors_.end(), 0,
                         [](int sum, const auto& each) { return sum + each->samples(); });
}

}  // namespace vistrel::hostile
