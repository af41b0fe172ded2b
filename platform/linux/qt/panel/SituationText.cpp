#include "platform/linux/qt/panel/SituationText.h"

namespace vistrel::platform::linux_desktop {

std::string situationText(SourceSituation situation) {
  switch (situation) {
    case SourceSituation::ordinary:
      return {};
    case SourceSituation::onHiddenDesktop:
      return "The source is on another desktop, where nothing draws it.\n"
             "Keep Source Awake, or showing it on all desktops, keeps the picture live.";
    case SourceSituation::parkedOnHiddenDesktop:
      return "The source is kept awake on another desktop, where nothing draws it:\n"
             "the window manager shows it on one desktop alone.";
    case SourceSituation::parkedBelowOthers:
      return "The source could not be moved out of sight. It is kept awake below all other "
             "windows.";
    case SourceSituation::parkedInSight:
      return "The source could not be moved out of sight: the window manager keeps it where it is.";
    case SourceSituation::waitsForManager:
      return "The window manager does not answer. The source is moved once it does.";
  }
  return {};
}

std::string inLines(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + "\n" + second;
}

}  // namespace vistrel::platform::linux_desktop
