#include "tests/support/WindowManager.h"

#include <ostream>

namespace vistrel::testbed {

std::string_view nameOf(WindowManager manager) {
  switch (manager) {
    case WindowManager::none:
      break;
    case WindowManager::openbox:
      return "Openbox";
    case WindowManager::xfwm4:
      return "Xfwm4";
    case WindowManager::xfwm4Compositing:
      return "Xfwm4Compositing";
    case WindowManager::mutter:
      return "Mutter";
  }
  return "None";
}

void PrintTo(WindowManager manager, std::ostream* out) { *out << nameOf(manager); }

std::vector<std::string> commandOf(WindowManager manager) {
  switch (manager) {
    case WindowManager::none:
      break;
    case WindowManager::openbox:
      return {"openbox"};
    case WindowManager::xfwm4:
      return {"xfwm4", "--compositor=off"};
    case WindowManager::xfwm4Compositing:
      return {"xfwm4", "--compositor=on"};
    case WindowManager::mutter:
      return {"mutter", "--x11", "--sm-disable"};
  }
  return {};
}

}  // namespace vistrel::testbed
