#include "platform/linux/SerialQueue.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>
#include <ctime>
#include <deque>
#include <future>
#include <map>
#include <mutex>
#include <optional>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {
namespace {

class WakeUp {
 public:
  WakeUp() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  WakeUp(const WakeUp&) = delete;
  WakeUp& operator=(const WakeUp&) = delete;
  ~WakeUp() { close(descriptor_); }

  int descriptor() const { return descriptor_; }
  void raise() { eventfd_write(descriptor_, 1); }
  void clear() {
    eventfd_t ignored = 0;
    eventfd_read(descriptor_, &ignored);
  }

 private:
  int descriptor_;
};

/// What a queue's handles and its thread share; it lives as long as either.
class QueueLoop final : public SerialQueue {
 public:
  QueueLoop(std::string label, QualityOfService quality)
      : label_(std::move(label)), quality_(quality) {}

  bool isRunning() const override { return !finished_; }
  const std::string& label() const override { return label_; }
  QualityOfService qualityOfService() const override { return quality_; }
  bool isCurrent() const override { return current_ == this; }

  void async(Block block) override;
  void asyncAt(double seconds, Block block) override;
  /// Ends the thread after the blocks already handed in.
  void finish() { end(Ending::afterBlocks); }
  /// Ends the thread after the block that is running.
  void stop() { end(Ending::now); }

  void run();
  /// There is no thread for it.
  void neverRun();

  void watch(int descriptor, std::function<void()> readable) override {
    assert(isCurrent());
    watches_[descriptor] = std::make_shared<std::function<void()>>(std::move(readable));
  }
  void unwatch(int descriptor) override {
    assert(isCurrent());
    watches_.erase(descriptor);
  }
  std::shared_ptr<void>& attachment() override {
    assert(isCurrent());
    return attachment_;
  }

 private:
  enum class Ending { none, afterBlocks, now };

  void end(Ending ending);
  std::optional<Block> takeBlock();
  void runBlocks();
  bool isEnding();
  void serveWatches();
  void wait();
  /// Seconds until the first timed block is due; none when there is nothing to wait for.
  std::optional<double> timeToNextBlock();
  void dropEverything();

  static thread_local const QueueLoop* current_;

  const std::string label_;
  const QualityOfService quality_;
  WakeUp wakeUp_;
  std::atomic<bool> finished_ = false;

  std::mutex mutex_;
  std::deque<Block> blocks_;                  // guarded by mutex_
  std::multimap<double, Block> timedBlocks_;  // guarded by mutex_
  Ending ending_ = Ending::none;              // guarded by mutex_

  std::map<int, std::shared_ptr<std::function<void()>>> watches_;  // queue's thread
  std::shared_ptr<void> attachment_;                               // queue's thread
};

thread_local const QueueLoop* QueueLoop::current_ = nullptr;

void QueueLoop::async(Block block) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_ == Ending::none) blocks_.push_back(std::move(block));
  }
  wakeUp_.raise();
}

void QueueLoop::asyncAt(double seconds, Block block) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_ == Ending::none) timedBlocks_.emplace(seconds, std::move(block));
  }
  if (!isCurrent()) wakeUp_.raise();
}

void QueueLoop::end(Ending ending) {
  {
    const std::lock_guard lock(mutex_);
    ending_ = std::max(ending_, ending);
  }
  wakeUp_.raise();
}

std::optional<Block> QueueLoop::takeBlock() {
  const std::lock_guard lock(mutex_);
  if (ending_ == Ending::now) return std::nullopt;
  if (!timedBlocks_.empty() && timedBlocks_.begin()->first <= monotonicNow()) {
    Block block = std::move(timedBlocks_.begin()->second);
    timedBlocks_.erase(timedBlocks_.begin());
    return block;
  }
  if (blocks_.empty()) return std::nullopt;
  Block block = std::move(blocks_.front());
  blocks_.pop_front();
  return block;
}

void QueueLoop::runBlocks() {
  while (const auto block = takeBlock()) (*block)();
}

bool QueueLoop::isEnding() {
  const std::lock_guard lock(mutex_);
  return ending_ == Ending::now || (ending_ == Ending::afterBlocks && blocks_.empty());
}

void QueueLoop::serveWatches() {
  // A copy: what is called may watch and unwatch.
  const auto watches = watches_;
  for (const auto& [descriptor, readable] : watches) (*readable)();
}

std::optional<double> QueueLoop::timeToNextBlock() {
  const std::lock_guard lock(mutex_);
  if (!blocks_.empty() || ending_ != Ending::none) return 0;
  if (timedBlocks_.empty()) return std::nullopt;
  return std::max(0.0, timedBlocks_.begin()->first - monotonicNow());
}

void QueueLoop::wait() {
  std::vector<pollfd> descriptors{{wakeUp_.descriptor(), POLLIN, 0}};
  for (const auto& [descriptor, readable] : watches_) {
    descriptors.push_back({descriptor, POLLIN, 0});
  }
  const auto seconds = timeToNextBlock();
  timespec timeout{};
  if (seconds) {
    timeout.tv_sec = static_cast<time_t>(*seconds);
    timeout.tv_nsec = static_cast<long>((*seconds - std::floor(*seconds)) * 1e9);
  }
  ppoll(descriptors.data(), descriptors.size(), seconds ? &timeout : nullptr, nullptr);
  if (descriptors.front().revents != 0) wakeUp_.clear();
}

void QueueLoop::run() {
  current_ = this;
  while (true) {
    runBlocks();
    if (isEnding()) break;
    serveWatches();
    wait();
  }
  dropEverything();
  finished_ = true;
}

void QueueLoop::neverRun() {
  dropEverything();
  finished_ = true;
}

void QueueLoop::dropEverything() {
  watches_.clear();
  attachment_.reset();
  // Dropped outside the lock: what a block holds may call back into this queue.
  std::deque<Block> blocks;
  std::multimap<double, Block> timedBlocks;
  const std::lock_guard lock(mutex_);
  ending_ = Ending::now;
  blocks_.swap(blocks);
  timedBlocks_.swap(timedBlocks);
}

/// The threads of all queues. A finished one is joined when the next is started, or at exit.
class Threads {
 public:
  static Threads& shared() {
    // Never destroyed: queues may be released by other objects with static lifetime.
    static auto* threads = new Threads;
    return *threads;
  }

  void start(std::shared_ptr<QueueLoop> loop);
  void stopAll();

 private:
  struct Running {
    std::shared_ptr<QueueLoop> loop;
    std::thread thread;
  };

  void joinFinished();

  std::mutex mutex_;
  std::vector<Running> running_;  // guarded by mutex_
};

/// The kernel keeps 15 characters of a thread's name; the end of a label says most.
void nameCurrentThread(const std::string& label) {
  constexpr std::size_t longest = 15;
  const auto start = label.size() > longest ? label.size() - longest : 0;
  pthread_setname_np(pthread_self(), label.substr(start).c_str());
}

void Threads::start(std::shared_ptr<QueueLoop> loop) {
  const std::lock_guard lock(mutex_);
  joinFinished();
  try {
    std::thread thread([loop] {
      nameCurrentThread(loop->label());
      loop->run();
    });
    running_.push_back({std::move(loop), std::move(thread)});
  } catch (const std::system_error&) {
    loop->neverRun();
  }
}

void Threads::joinFinished() {
  std::erase_if(running_, [](Running& running) {
    // A queue that starts another in its last moments must not wait for itself.
    if (running.loop->isRunning() || running.loop->isCurrent()) return false;
    running.thread.join();
    return true;
  });
}

void Threads::stopAll() {
  std::vector<Running> running;
  {
    const std::lock_guard lock(mutex_);
    running.swap(running_);
  }
  for (auto& each : running) each.loop->stop();
  for (auto& each : running) each.thread.join();
}

}  // namespace

std::shared_ptr<SerialQueue> SerialQueue::make(std::string label, QualityOfService quality) {
  // Kept as a part of something else, so that `weak_from_this` means the handles.
  struct Kept {
    QueueLoop loop;
  };
  const std::shared_ptr<Kept> kept(new Kept{{std::move(label), quality}});
  std::shared_ptr<QueueLoop> loop(kept, &kept->loop);
  Threads::shared().start(loop);
  // Let go of there and then: the queue's own weak handle to itself keeps what is deleted with.
  return {loop.get(), [loop](SerialQueue* /*queue*/) mutable {
            const auto released = std::exchange(loop, nullptr);
            released->finish();
          }};
}

void asyncAndWait(SerialQueue& queue, Block block) {
  // Dropped with the block, the promise ends the waiting too.
  auto done = std::make_shared<std::promise<void>>();
  const auto finished = done->get_future();
  queue.async([block = std::move(block), done = std::move(done)] {
    block();
    done->set_value();
  });
  finished.wait();
}

double monotonicNow() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void shutDownSerialQueues() {
  assert(isMainThread());
  Threads::shared().stopAll();
}

}  // namespace vistrel::platform::linux_desktop
