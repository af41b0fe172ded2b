#include "platform/linux/x11/parking/ParkedWindows.h"

#include <cassert>
#include <chrono>
#include <future>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Of the second that a program has to end in when it is asked to, in seconds.
constexpr double timeToLeave = 0.7;

}  // namespace

ParkedWindows::ParkedWindows(std::shared_ptr<Connection> connection,
                             std::shared_ptr<const SharedScreenLayout> layout,
                             std::shared_ptr<CommandDeadline> command)
    : connection_(std::move(connection)),
      layout_(layout),
      command_(std::move(command)),
      outcomes_(std::make_shared<ParkingOutcomes>()),
      worker_(std::make_shared<ParkingWorker>(std::move(layout), outcomes_)) {}

ParkedWindows::~ParkedWindows() {
  ParkedWindows::leaveHomeFirst();
  worker_->abandon();
}

std::optional<Point> ParkedWindows::positionOf(xcb_window_t window) {
  assert(isMainThread());
  command_->begin();
  const auto position = std::make_shared<std::optional<Point>>();
  const bool isKnown = workUntil(command_->get(), [position, window](ParkingWorker& worker) {
    *position = worker.positionOf(window);
  });
  // Where the manager does not answer, it is where it is.
  const auto found = isKnown
                         ? std::nullopt
                         : FramedWindowRequest(*connection_, window, connection_->root()).fetch();
  const auto told = isKnown ? *position
                    : found ? std::optional(layout_->get()->toPoints(found->visible).origin)
                            : std::nullopt;
  if (told) told_ = {window, *told};
  return told;
}

bool ParkedWindows::move(xcb_window_t window, Point position) {
  assert(isMainThread());
  const double deadline = command_->get();
  command_->end();
  const bool isThere =
      FramedWindowRequest(*connection_, window, connection_->root()).fetch().has_value();
  const bool isTold = told_ && told_->first == window;
  const auto toldHome = isTold ? std::optional(told_->second) : std::nullopt;
  if (isThere) outcomes_->set(window, ParkingOutcome::underWay);
  workUntil(deadline, [=](ParkingWorker& worker) { worker.move(window, position, toldHome); });
  return isThere;
}

void ParkedWindows::follow(const PixelRect& from, const PixelRect& to) {
  workUntil(monotonicNow(), [=](ParkingWorker& worker) { worker.follow(from, to); });
}

void ParkedWindows::sendAllHome() {
  workUntil(monotonicNow() + managersTime, [](ParkingWorker& worker) { worker.sendAllHome(); });
}

void ParkedWindows::parkAgain() {
  workUntil(monotonicNow() + managersTime, [](ParkingWorker& worker) { worker.parkAgain(); });
}

void ParkedWindows::leaveHomeFirst() {
  if (!queue_) return;
  const bool areHome =
      workUntil(monotonicNow() + timeToLeave, [](ParkingWorker& worker) { worker.sendAllHome(); });
  if (!areHome) {
    trace(TraceTopic::manager, [] { return "parked windows are left to the guard"; });
  }
  worker_->abandon();
}

bool ParkedWindows::workUntil(double deadline, std::function<void(ParkingWorker&)> work) {
  if (!queue_) queue_ = SerialQueue::make("vistrel.parking", QualityOfService::standard);
  // Dropped with the block, the promise ends the waiting too.
  auto done = std::make_shared<std::promise<void>>();
  const auto finished = done->get_future();
  queue_->async([worker = worker_, work = std::move(work), done = std::move(done)] {
    work(*worker);
    done->set_value();
  });
  const std::chrono::duration<double> left(deadline - monotonicNow());
  return finished.wait_for(left) == std::future_status::ready;
}

}  // namespace vistrel::platform::linux_desktop
