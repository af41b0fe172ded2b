#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vistrel::platform {

class MenuItem;

/// What a control or a menu's line does: a selector's name, and the handler of a target that is
/// held weakly and may be given the line. Sending locks the target for the length of the call, so a
/// command may drop its own target.
class Action {
 public:
  Action() = default;

  template <class Target>
  Action(std::string selector, std::weak_ptr<Target> target, void (Target::*handler)())
      : selector_(std::move(selector)),
        target_(target),
        handler_([target, handler](const MenuItem* /*sender*/) {
          if (const auto strong = target.lock()) (strong.get()->*handler)();
        }) {}
  /// For menus' lines: without one the handler is not called.
  template <class Target>
  Action(std::string selector, std::weak_ptr<Target> target,
         void (Target::*handler)(const MenuItem& sender))
      : selector_(std::move(selector)),
        target_(target),
        handler_([target, handler](const MenuItem* sender) {
          const auto strong = target.lock();
          if (strong && sender != nullptr) (strong.get()->*handler)(*sender);
        }) {}

  /// Without a target: whichever object of the responder chain knows the selector performs it (see
  /// `Application::sendAction`).
  static Action upResponderChain(std::string selector);

  /// Empty when there is nothing to do.
  const std::string& selector() const { return selector_; }
  /// Null when there is no target or it is gone.
  std::shared_ptr<const void> target() const { return target_.lock(); }

  /// `sender` is the menu's line that was chosen; null for a control.
  void send(const MenuItem* sender = nullptr) const {
    // A copy: whatever holds this action may go while the handler runs.
    if (const auto handler = handler_) handler(sender);
  }

 private:
  std::string selector_;
  std::weak_ptr<const void> target_;
  std::function<void(const MenuItem* sender)> handler_;
};

}  // namespace vistrel::platform
