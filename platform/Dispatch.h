#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vistrel::platform {

using Block = std::function<void()>;

/// A moment in seconds since 1 January 2001 00:00 UTC, the reference date of the desktop that this
/// vocabulary comes from.
struct Date {
  double secondsSinceReference = 0;

  /// Earlier than every moment that a clock gives.
  static Date distantPast() { return {-63'114'076'800.0}; }

  double timeIntervalSince(Date earlier) const {
    return secondsSinceReference - earlier.secondsSinceReference;
  }

  friend bool operator==(const Date&, const Date&) = default;
};

/// The backend's clock. Never runs backwards within one process. Any thread.
Date now();

enum class QualityOfService { userInteractive, standard };

/// Runs blocks one at a time, in the order in which they were handed in. Any thread may hand in.
/// Releasing the last reference lets the blocks already handed in run; it never waits for them, so
/// a block may drop its own queue.
class DispatchQueue {
 public:
  virtual ~DispatchQueue() = default;

  virtual const std::string& label() const = 0;
  virtual QualityOfService qualityOfService() const = 0;
  virtual void async(Block block) = 0;
  /// Whether the calling thread is running a block of this queue (for the main queue: is the main
  /// thread).
  virtual bool isCurrent() const = 0;
};

/// The queue of the main thread: everything a person sees is touched there alone.
DispatchQueue& mainQueue();

/// Runs `block` on the main queue after `seconds`. Any thread.
void mainAsyncAfter(double seconds, Block block);

/// A new queue with a thread of its own (or its stand-in under virtual time).
std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label, QualityOfService quality);

/// A timer on the main run loop. The run loop keeps a valid timer alive; dropping the handle does
/// not stop it. Main thread.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual void invalidate() = 0;
  virtual bool isValid() const = 0;
  virtual double timeInterval() const = 0;
};

/// Schedules `block` every `seconds` (or once, when not repeating). Main thread.
std::shared_ptr<Timer> scheduledTimer(double seconds, bool repeats, Block block);

/// A counting semaphore. Any thread.
class Semaphore {
 public:
  virtual ~Semaphore() = default;
  virtual void signal() = 0;
  /// Blocks until signalled or until `timeoutSeconds` have passed; true when signalled.
  virtual bool wait(double timeoutSeconds) = 0;
};

std::shared_ptr<Semaphore> makeSemaphore(int value);

/// For objects that the main thread owns but that a weak pointer promoted on another thread, or a
/// command that removes its own object, may release last: destruction is handed to the main queue,
/// so it never happens on another thread nor under the object's own feet.
template <class T>
std::shared_ptr<T> ownedByMain(T* object) {
  return std::shared_ptr<T>(object, [](T* last) { mainQueue().async([last] { delete last; }); });
}

template <class T, class... Arguments>
std::shared_ptr<T> makeOwnedByMain(Arguments&&... arguments) {
  return ownedByMain(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace vistrel::platform
