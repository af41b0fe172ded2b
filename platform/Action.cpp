#include "platform/Action.h"

#include "platform/Application.h"

namespace vistrel::platform {

Action Action::upResponderChain(std::string selector) {
  Action action;
  action.selector_ = std::move(selector);
  action.handler_ = [name = action.selector_](const MenuItem* /*sender*/) {
    Application::shared().sendAction(name);
  };
  return action;
}

}  // namespace vistrel::platform
