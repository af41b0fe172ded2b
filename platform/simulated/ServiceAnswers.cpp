#include "platform/simulated/ServiceAnswers.h"

#include <utility>

namespace vistrel::platform::simulated {

void ServiceAnswers::setDelay(Request request, double seconds) {
  const std::scoped_lock lock(mutex_);
  scripts_[request].delay = seconds;
}

void ServiceAnswers::hold(Request request) {
  const std::scoped_lock lock(mutex_);
  scripts_[request].holds = true;
}

std::size_t ServiceAnswers::heldCount(Request request) const {
  const std::scoped_lock lock(mutex_);
  const auto script = scripts_.find(request);
  return script == scripts_.end() ? 0 : script->second.held.size();
}

void ServiceAnswers::releaseOne(Request request, std::size_t index) {
  const std::scoped_lock lock(mutex_);
  auto& held = scripts_[request].held;
  queue_.async(std::move(held.at(index)));
  held.erase(held.begin() + static_cast<std::ptrdiff_t>(index));
}

void ServiceAnswers::release(Request request) {
  const std::scoped_lock lock(mutex_);
  Script& script = scripts_[request];
  script.holds = false;
  for (Block& block : std::exchange(script.held, {})) queue_.async(std::move(block));
}

void ServiceAnswers::releaseEverything() {
  for (const Request request : {Request::content, Request::start, Request::stop, Request::update}) {
    release(request);
  }
}

void ServiceAnswers::answer(Request request, Block block) {
  const std::scoped_lock lock(mutex_);
  Script& script = scripts_[request];
  if (script.holds) {
    script.held.push_back(std::move(block));
  } else {
    queue_.asyncAfter(script.delay, std::move(block));
  }
}

}  // namespace vistrel::platform::simulated
