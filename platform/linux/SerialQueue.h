#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Dispatch.h"

namespace vistrel::platform::linux_desktop {

/// A serial queue: one thread that runs blocks in order and, between blocks, waits on file
/// descriptors and on one deadline. What watches a descriptor lives on this queue alone, so a
/// mirror's connection to the display server needs no lock.
///
/// Releasing the last handle ends the thread after the blocks already handed in; the thread is
/// never joined by itself. A block that cannot run any more is dropped, and what it holds with it.
/// What runs or lives on the thread may refer to the queue until then.
class SerialQueue : public DispatchQueue, public std::enable_shared_from_this<SerialQueue> {
 public:
  /// Where the system has no thread for it, the queue runs nothing.
  static std::shared_ptr<SerialQueue> make(std::string label, QualityOfService quality);

  /// False once its thread has ended, and where it has never had one. Any thread.
  virtual bool isRunning() const = 0;

  /// Calls `readable` whenever `descriptor` has something to read, and before each wait, since a
  /// library may have read it ahead. On this queue only.
  virtual void watch(int descriptor, std::function<void()> readable) = 0;
  virtual void unwatch(int descriptor) = 0;
  /// Runs `block` on this queue once the monotonic clock has reached `monotonicSeconds`; not at all
  /// if the queue ends before. Any thread.
  virtual void asyncAt(double monotonicSeconds, Block block) = 0;
  /// What lives with this queue, for whoever needs one thing per queue; empty at first. Released on
  /// the queue's thread when it ends. On this queue only.
  virtual std::shared_ptr<void>& attachment() = 0;
};

/// Runs `block` on another queue and waits for it; returns as well when the queue ends without
/// having run it.
void asyncAndWait(SerialQueue& queue, Block block);

/// Seconds of CLOCK_MONOTONIC.
double monotonicNow();

/// Ends all queues' threads and waits for them; no block begins after it. Main thread, at exit.
void shutDownSerialQueues();

}  // namespace vistrel::platform::linux_desktop
