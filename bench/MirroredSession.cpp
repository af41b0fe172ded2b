#include "bench/MirroredSession.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>

#include "bench/ProcessorTime.h"
#include "tests/support/Poll.h"

namespace vistrel::bench {
namespace {

/// The most that the picker shows.
constexpr std::size_t rowsWithoutScrolling = 12;

}  // namespace

MirroredSession::MirroredSession(const std::vector<testbed::Rect>& sources) {
  for (const testbed::Rect& area : sources) {
    // Two digits, so that the picker lists them in this order.
    sources_.push_back(std::make_unique<testbed::TestWindow>(
        display_.name(),
        testbed::TestWindow::Options{
            .title = std::to_string(10 + sources_.size()), .area = area, .decorated = false}));
  }
  vistrel_ = std::make_unique<testbed::RunningVistrel>(display_, connection_);
  testbed::InputDriver hand(connection_);
  constexpr std::uint32_t betweenClicks = 700;
  hand.clickAt(firstRow().centre());
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    hand.rest(betweenClicks);
    hand.type(testbed::keyReturn);
    hand.type(testbed::keyDown);
    panels_ = vistrel_->panels(i + 1);
  }
  for (const testbed::PanelOnScreen& panel : panels_) {
    if (!testbed::eventually([&] { return panel.dot() == testbed::Dot::stale; })) {
      throw std::runtime_error("a mirror did not come to rest");
    }
  }
}

testbed::Rect MirroredSession::firstRow() const {
  const testbed::PickerOnScreen picker = vistrel_->picker();
  const auto expected = std::min<std::size_t>(sources_.size(), rowsWithoutScrolling);
  std::vector<testbed::Rect> rows;
  if (!testbed::eventually([&] { return (rows = picker.rows()).size() >= expected; })) {
    throw std::runtime_error("the picker does not list the sources");
  }
  return rows.front();
}

double MirroredSession::clientSeconds() const {
  return processorSeconds(vistrel_->process().pid());
}

double MirroredSession::serverSeconds() const { return processorSeconds(display_.serverPid()); }

long MirroredSession::mainThreadWaits() const {
  const std::string pid = std::to_string(vistrel_->process().pid());
  std::ifstream status("/proc/" + pid + "/task/" + pid + "/status");
  const std::string wanted = "voluntary_ctxt_switches:";
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(wanted)) return std::stol(line.substr(wanted.size()));
  }
  throw std::runtime_error("a measured process is gone");
}

}  // namespace vistrel::bench
