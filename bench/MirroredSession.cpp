#include "bench/MirroredSession.h"

#include <algorithm>
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
  if (!sources_.empty()) hand.clickAt(firstRow().centre());
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

}  // namespace vistrel::bench
