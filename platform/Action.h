#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vistrel::platform {

/// What a control does: a selector's name, and the handler of a target that is held weakly.
/// Sending locks the target for the length of the call, so a command may drop its own target.
class Action {
 public:
  Action() = default;

  template <class Target>
  Action(std::string selector, std::weak_ptr<Target> target, void (Target::*handler)())
      : selector_(std::move(selector)), target_(target), handler_([target, handler] {
          if (const auto strong = target.lock()) (strong.get()->*handler)();
        }) {}

  /// Empty when the control does nothing.
  const std::string& selector() const { return selector_; }
  /// Null when there is no target or it is gone.
  std::shared_ptr<const void> target() const { return target_.lock(); }

  void send() const {
    // A copy: the control that holds this action may go while the handler runs.
    if (const auto handler = handler_) handler();
  }

 private:
  std::string selector_;
  std::weak_ptr<const void> target_;
  std::function<void()> handler_;
};

}  // namespace vistrel::platform
