#include "platform/simulated/ThreadedDispatch.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>

#include "platform/simulated/TaskList.h"

namespace vistrel::platform::simulated {

/// What the threads share; outlives the dispatch where a thread still winds up.
struct ThreadedWork {
  TaskList main;
  std::atomic<int> unfinished = 0;  // blocks handed in on any queue and not yet run

  void push(TaskList& tasks, double seconds, Block block) {
    ++unfinished;
    tasks.push(seconds, std::move(block));
  }

  void finished(int count = 1) {
    if ((unfinished -= count) == 0) main.wake();
  }

  void run(std::optional<Block>& block) {
    (*block)();
    block.reset();
    finished();
  }
};

namespace {

/// A wait long enough to mean "until something happens", short enough to add to any clock.
constexpr double farAhead = 3600;

TaskList::Clock::time_point fromNow(double seconds) {
  return TaskList::Clock::now() + std::chrono::duration_cast<TaskList::Clock::duration>(
                                      std::chrono::duration<double>(std::max(seconds, 0.0)));
}

class MainQueue : public DispatchQueue {
 public:
  explicit MainQueue(std::shared_ptr<ThreadedWork> work) : work_(std::move(work)) {}

  const std::string& label() const override { return label_; }
  QualityOfService qualityOfService() const override { return QualityOfService::userInteractive; }
  void async(Block block) override { work_->push(work_->main, 0, std::move(block)); }
  bool isCurrent() const override { return std::this_thread::get_id() == thread_; }

 private:
  const std::string label_ = "main";
  const std::thread::id thread_ = std::this_thread::get_id();
  const std::shared_ptr<ThreadedWork> work_;
};

thread_local const TaskList* currentTasks = nullptr;

void runWorker(TaskList& tasks, ThreadedWork& work) {
  currentTasks = &tasks;
  while (auto block = tasks.takeNext()) work.run(block);
  tasks.markEnded();
}

/// The handle of a worker thread, which ends after the blocks handed in while the handle lived.
class WorkerQueue : public SimulatedQueue {
 public:
  WorkerQueue(std::string label, QualityOfService quality, std::shared_ptr<ThreadedWork> work,
              std::shared_ptr<TaskList> tasks)
      : label_(std::move(label)),
        quality_(quality),
        work_(std::move(work)),
        tasks_(std::move(tasks)) {}
  ~WorkerQueue() override { tasks_->close(); }

  const std::string& label() const override { return label_; }
  QualityOfService qualityOfService() const override { return quality_; }
  void async(Block block) override { asyncAfter(0, std::move(block)); }
  void asyncAfter(double seconds, Block block) override {
    work_->push(*tasks_, seconds, std::move(block));
  }
  bool isCurrent() const override { return currentTasks == tasks_.get(); }

 private:
  const std::string label_;
  const QualityOfService quality_;
  const std::shared_ptr<ThreadedWork> work_;
  const std::shared_ptr<TaskList> tasks_;
};

class ThreadedSemaphore : public Semaphore {
 public:
  explicit ThreadedSemaphore(int value) : value_(value) {}

  void signal() override {
    const std::scoped_lock lock(mutex_);
    ++value_;
    signalled_.notify_one();
  }

  bool wait(double timeoutSeconds) override {
    std::unique_lock lock(mutex_);
    if (!signalled_.wait_until(lock, fromNow(timeoutSeconds), [this] { return value_ > 0; })) {
      return false;
    }
    --value_;
    return true;
  }

 private:
  std::mutex mutex_;  // guards value_
  std::condition_variable signalled_;
  int value_;
};

}  // namespace

ThreadedDispatch::ThreadedDispatch()
    : work_(std::make_shared<ThreadedWork>()),
      main_(std::make_unique<MainQueue>(work_)),
      service_(startQueue("simulated capture service", QualityOfService::standard)) {}

ThreadedDispatch::~ThreadedDispatch() {
  service_.reset();
  for (Worker& worker : workers_) worker.tasks->close();
  for (Worker& worker : workers_) worker.thread.join();
}

Date ThreadedDispatch::now() {
  constexpr double referenceSinceUnixEpoch = 978'307'200;
  static const auto start = TaskList::Clock::now();
  static const double startDate =
      std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count() -
      referenceSinceUnixEpoch;
  const std::chrono::duration<double> elapsed = TaskList::Clock::now() - start;
  return Date{startDate + elapsed.count()};
}

DispatchQueue& ThreadedDispatch::mainQueue() { return *main_; }

SimulatedQueue& ThreadedDispatch::serviceQueue() { return *service_; }

void ThreadedDispatch::mainAsyncAfter(double seconds, Block block) {
  work_->push(work_->main, seconds, std::move(block));
}

std::shared_ptr<Semaphore> ThreadedDispatch::makeSemaphore(int value) {
  return std::make_shared<ThreadedSemaphore>(value);
}

std::shared_ptr<DispatchQueue> ThreadedDispatch::makeSerialQueue(std::string label,
                                                                 QualityOfService quality) {
  return startQueue(std::move(label), quality);
}

std::shared_ptr<SimulatedQueue> ThreadedDispatch::startQueue(std::string label,
                                                             QualityOfService quality) {
  joinEndedWorkers();
  auto tasks = std::make_shared<TaskList>();
  std::thread thread([tasks, work = work_] { runWorker(*tasks, *work); });
  {
    const std::scoped_lock lock(workersMutex_);
    workers_.push_back({tasks, std::move(thread)});
  }
  return std::make_shared<WorkerQueue>(std::move(label), quality, work_, std::move(tasks));
}

void ThreadedDispatch::joinEndedWorkers() {
  std::vector<Worker> ended;
  {
    const std::scoped_lock lock(workersMutex_);
    const auto firstEnded = std::partition(workers_.begin(), workers_.end(),
                                           [](const Worker& w) { return !w.tasks->hasEnded(); });
    std::move(firstEnded, workers_.end(), std::back_inserter(ended));
    workers_.erase(firstEnded, workers_.end());
  }
  for (Worker& worker : ended) worker.thread.join();
}

void ThreadedDispatch::turnMainQueue() {
  while (auto block = work_->main.takeReady()) work_->run(block);
}

bool ThreadedDispatch::turnMainUntil(const std::function<bool()>& condition, double seconds) {
  const auto deadline = fromNow(seconds);
  turnMainQueue();
  while (!condition()) {
    if (TaskList::Clock::now() >= deadline) return false;
    // Conditions may also depend on what other threads do without a word to main.
    work_->main.waitForWork(std::min(deadline, fromNow(0.01)));
    turnMainQueue();
  }
  return true;
}

void ThreadedDispatch::dropLaterMainBlocks() {
  std::vector<Block> later = work_->main.takeLater();
  const auto count = static_cast<int>(later.size());
  later.clear();
  work_->finished(count);
}

void ThreadedDispatch::drain() {
  while (true) {
    {
      const std::scoped_lock lock(workersMutex_);
      for (const Worker& worker : workers_) worker.tasks->hurry();
    }
    turnMainQueue();
    dropLaterMainBlocks();
    if (work_->unfinished == 0) break;
    work_->main.waitForWork(fromNow(farAhead));
  }
  joinEndedWorkers();
}

}  // namespace vistrel::platform::simulated
