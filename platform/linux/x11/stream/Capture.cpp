#include "platform/linux/x11/stream/Capture.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/Trace.h"
#include "platform/linux/x11/stream/MirrorWorker.h"
#include "platform/linux/x11/stream/WindowFrames.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How often a pointer that rests over the source is looked at, in seconds.
constexpr double restingLook = 0.1;

/// How often room is looked for where the server had no memory, in seconds.
constexpr double lackingLook = 0.5;

/// In seconds; 0 for as many frames as there are changes.
double intervalOf(const StreamConfiguration& configuration) {
  const auto& time = configuration.minimumFrameInterval;
  return time.timescale > 0 ? static_cast<double>(time.value) / time.timescale : 0;
}

}  // namespace

Capture::Capture(MirrorWorker& worker, std::unique_ptr<CaptureSource> source,
                 const StreamConfiguration& configuration, Receiver receiver)
    : worker_(worker),
      source_(std::move(source)),
      configuration_(configuration),
      receiver_(std::move(receiver)),
      pacing_(intervalOf(configuration)) {}

void Capture::setConfiguration(const StreamConfiguration& configuration) {
  assert(thread_.isCurrent());
  configuration_ = configuration;
  cursorMayHaveMoved_ = true;
}

void Capture::handle(const xcb_generic_event_t& event) {
  assert(thread_.isCurrent());
  source_->handle(event);
}

void Capture::proceed() {
  assert(thread_.isCurrent());
  if (ended_) return;
  const double now = monotonicNow();
  if (now < roomLook_ && !source_->isGone()) return worker_.comeBackAt(roomLook_);
  followSight();
  source_->refresh();
  if (source_->isGone()) return fail({"The window has been closed."});
  if (!source_->hasRoom()) return lackRoom(now);
  if (!source_->isViewable()) return;
  if (source_->takeLoss()) lossPause_.lost(now);
  if (now < lossPause_.end()) return worker_.comeBackAt(lossPause_.end());
  noticeChange(now);
  cursorMayHaveMoved_ |= source_->takePointerNews();
  if (!hasNews() && !isTimeToLook(now)) {
    if (source_->isPointerFollowed()) worker_.comeBackAt(nextLook_);
    return;
  }
  const double due = hasNews() ? pacing_.due() : pacing_.earliest();
  if (now < due) return worker_.comeBackAt(due);
  const auto formerMark = cursorMark_;
  if (hasNews()) {
    // The answer comes together with the one that whoever takes the frame waits for.
    if (configuration_.showsCursor) source_->askForPointer();
    deliver(now);
    takeAskedCursor();
  } else if (cursorHasMoved()) {
    deliver(now);
  }
  if (!source_->isPointerFollowed()) return;
  const double rest = isSeen_ ? restingLook : unseenInterval;
  nextLook_ = cursorMark_ == formerMark ? now + rest : pacing_.earliest();
  worker_.comeBackAt(nextLook_);
}

void Capture::followSight() {
  isSeen_ = worker_.isPictureSeen();
  source_->setSeen(isSeen_);
  const double interval = intervalOf(configuration_);
  pacing_.setInterval(isSeen_ ? interval : std::max(interval, unseenInterval));
}

bool Capture::isTimeToLook(double now) const {
  return cursorMayHaveMoved_ || (source_->isPointerFollowed() && now >= nextLook_);
}

void Capture::noticeChange(double now) {
  if (noticedChange_ || !source_->hasChanges()) return;
  noticedChange_ = true;
  pacing_.changeNoticed(now);
  if (now >= pacing_.due() || !pacing_.wantsNextChange()) return;
  owesFrame_ = true;
  askForChanges();
  pacing_.listening();
}

void Capture::askForChanges() {
  source_->askForChanges();
  noticedChange_ = false;
}

bool Capture::cursorHasMoved() {
  cursorMayHaveMoved_ = false;
  auto mark = configuration_.showsCursor ? source_->pointerMark() : CursorMark{};
  if (mark == cursorMark_) return false;
  cursorMark_ = std::move(mark);
  return true;
}

void Capture::takeAskedCursor() {
  if (source_->isPointerAsked()) cursorHasMoved();
}

void Capture::collectChanges() {
  const auto changes = source_->takeChanges();
  uncommitted_.everything |= changes.everything;
  for (const auto& each : changes.rects) uncommitted_.rects.add(each);
}

void Capture::deliver(double now) {
  pacing_.frameTaken(now);
  owesFrame_ = false;
  askForChanges();
  const auto buffer =
      std::make_shared<WindowPixelBuffer>(weak_from_this(), source_->picture()->size());
  receiver_.sample(CompleteSample(buffer));
}

void Capture::fail(const Error& error) {
  if (std::exchange(ended_, true)) return;
  receiver_.stopped(error);
}

bool Capture::isUnchangedSinceCommit() {
  assert(thread_.isCurrent());
  // Asking takes the news away without a frame.
  owesFrame_ |= source_->hasChanges();
  askForChanges();
  collectChanges();
  return uncommitted_.empty();
}

std::shared_ptr<const Image> Capture::commit() {
  assert(thread_.isCurrent());
  source_->takeFrameOver();
  collectChanges();
  takeAskedCursor();
  // What is known to have changed may be that the client has lost parts meanwhile: such changes
  // wait for the pause's end, so that a window that is going keeps a picture of all of it.
  PictureChanges changes;
  if (source_->isAboutToTellOfLoss()) {
    owesFrame_ = true;
  } else {
    changes = std::exchange(uncommitted_, {});
  }
  auto image = worker_.commit(source_->window(), source_->picture(), changes, cursorMark_);
  if (!image) {
    uncommitted_ = std::move(changes);
    owesFrame_ = true;
    lackRoom(monotonicNow());
  }
  return image;
}

void Capture::lackRoom(double now) {
  trace(TraceTopic::capture,
        [&] { return "the server has no memory for " + windowText(source_->window()); });
  roomLook_ = now + lackingLook;
  worker_.comeBackAt(roomLook_);
}

}  // namespace vistrel::platform::linux_desktop
