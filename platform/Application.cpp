#include "platform/Application.h"

#include "platform/Backend.h"
#include "platform/Window.h"

namespace vistrel::platform {

Application& Application::shared() { return backend().application(); }

bool Application::sendAction(const std::string& selector) {
  Window* const keyWindow = backend().windows().keyWindow();
  return (keyWindow != nullptr && keyWindow->tryToPerform(selector)) || tryToPerform(selector);
}

bool Application::tryToPerform(const std::string& selector) {
  if (selector == "hide:") {
    hide();
  } else if (selector == "terminate:") {
    terminate();
  } else {
    return false;
  }
  return true;
}

}  // namespace vistrel::platform
