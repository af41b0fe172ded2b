#include "bench/MirroredNative.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include "bench/ProcessorTime.h"
#include "tests/support/Poll.h"

namespace vistrel::bench {

MirroredNative::MirroredNative(Panel panel) {
  testbed::KWinScripts(desktop_.busAddress()).moveTo("Source", {sourceArea.x, sourceArea.y});
  vistrel_ = std::make_unique<testbed::RunningVistrel>(
      connection_, testbed::RunningVistrel::command({}, desktop_.environment()), 1, screen_);
  const testbed::Rect row = vistrel_->pickerRows(1).front();
  if (panel == Panel::none) return;

  const testbed::WaylandClient client;
  testbed::FakeInput input(client);
  testbed::HandOnX hand(input, connection_);
  hand.clickAt(row.centre(), 2);
  const testbed::PanelOnScreen opened = vistrel_->panels(1).front();
  if (!testbed::eventually([&] { return opened.dot() == testbed::Dot::stale; })) {
    throw std::runtime_error("a mirror did not come to rest");
  }
  if (panel == Panel::rolledUp) {
    hand.clickAt(opened.titleBar(), 2);
    if (!testbed::eventually(
            [&] { return opened.area().height == testbed::PanelOnScreen::titleBarHeight; })) {
      throw std::runtime_error("a panel did not roll up");
    }
  }
  frames_.emplace(connection_, opened.id());
  awaitRest();
}

/// A panel that has stood still for a second is drawn once more.
void MirroredNative::awaitRest() {
  constexpr std::chrono::milliseconds still{1500};
  for (int before = -1; before != drawnFrames(); std::this_thread::sleep_for(still)) {
    before = drawnFrames();
  }
}

MirroredNative::ProcessorTime MirroredNative::processorTime() const {
  return {processorSeconds(vistrel_->process().pid()), processorSeconds(xwayland_),
          processorSeconds(desktop_.compositorPid())};
}

}  // namespace vistrel::bench
