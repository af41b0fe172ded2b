#include "platform/simulated/TaskList.h"

#include <algorithm>
#include <limits>

namespace vistrel::platform::simulated {

void TaskList::push(double seconds, Block block) {
  const auto due = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                      std::chrono::duration<double>(std::max(seconds, 0.0)));
  const std::scoped_lock lock(mutex_);
  tasks_.emplace(std::pair{due, pushed_++}, std::move(block));
  changed_.notify_all();
}

std::optional<Block> TaskList::takeReadyLocked() {
  if (tasks_.empty() || tasks_.begin()->first.first > Clock::now()) return std::nullopt;
  const auto first = tasks_.begin();
  Block block = std::move(first->second);
  tasks_.erase(first);
  return block;
}

std::optional<Block> TaskList::takeReady() {
  const std::scoped_lock lock(mutex_);
  return takeReadyLocked();
}

std::optional<Block> TaskList::takeNext() {
  std::unique_lock lock(mutex_);
  while (true) {
    if (auto block = takeReadyLocked()) return block;
    if (closed_) return std::nullopt;
    if (tasks_.empty()) {
      changed_.wait(lock);
    } else {
      changed_.wait_until(lock, Clock::time_point(tasks_.begin()->first.first));
    }
  }
}

void TaskList::waitForWork(Clock::time_point deadline) {
  std::unique_lock lock(mutex_);
  while (!woken_ && Clock::now() < deadline) {
    const auto due = tasks_.empty() ? deadline : tasks_.begin()->first.first;
    if (due <= Clock::now()) break;
    changed_.wait_until(lock, std::min(due, deadline));
  }
  woken_ = false;
}

void TaskList::wake() {
  const std::scoped_lock lock(mutex_);
  woken_ = true;
  changed_.notify_all();
}

void TaskList::close() {
  const std::scoped_lock lock(mutex_);
  closed_ = true;
  changed_.notify_all();
}

void TaskList::markEnded() {
  const std::scoped_lock lock(mutex_);
  ended_ = true;
}

bool TaskList::hasEnded() {
  const std::scoped_lock lock(mutex_);
  return ended_;
}

void TaskList::hurry() {
  const std::scoped_lock lock(mutex_);
  Tasks hurried;
  for (auto& [key, block] : tasks_) {
    hurried.emplace(std::pair{std::min(key.first, Clock::now()), key.second}, std::move(block));
  }
  tasks_ = std::move(hurried);
  changed_.notify_all();
}

std::vector<Block> TaskList::takeLater() {
  const std::scoped_lock lock(mutex_);
  std::vector<Block> later;
  const auto first = tasks_.upper_bound({Clock::now(), std::numeric_limits<std::uint64_t>::max()});
  for (auto task = first; task != tasks_.end(); ++task) later.push_back(std::move(task->second));
  tasks_.erase(first, tasks_.end());
  return later;
}

}  // namespace vistrel::platform::simulated
