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
    case WindowManager::kwin:
      return "Kwin";
    case WindowManager::kwinCompositing:
      return "KwinCompositing";
    case WindowManager::marco:
      return "Marco";
    case WindowManager::icewm:
      return "Icewm";
    case WindowManager::fluxbox:
      return "Fluxbox";
    case WindowManager::awesome:
      return "Awesome";
    case WindowManager::i3:
      return "I3";
    case WindowManager::jwm:
      return "Jwm";
    case WindowManager::metacity:
      return "Metacity";
    case WindowManager::bspwm:
      return "Bspwm";
    case WindowManager::herbstluftwm:
      return "Herbstluftwm";
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
    case WindowManager::kwin:
    case WindowManager::kwinCompositing:
      return {"kwin_x11"};
    case WindowManager::marco:
      return {"marco", "--sm-disable"};
    case WindowManager::icewm:
      return {"icewm"};
    case WindowManager::fluxbox:
      return {"fluxbox"};
    case WindowManager::awesome:
      return {"awesome"};
    case WindowManager::i3:
      return {"i3"};
    case WindowManager::jwm:
      return {"jwm"};
    case WindowManager::metacity:
      return {"metacity", "--sm-disable"};
    case WindowManager::bspwm:
      return {"bspwm"};
    case WindowManager::herbstluftwm:
      return {"herbstluftwm"};
  }
  return {};
}

bool replacesOthers(WindowManager manager) {
  return manager != WindowManager::fluxbox && manager != WindowManager::jwm &&
         manager != WindowManager::bspwm;
}

}  // namespace vistrel::testbed
