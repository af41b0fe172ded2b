#include "picker/PickerTexts.h"

namespace vistrel {

std::string pickerStatusWhileLooking(bool accessGranted) {
  return accessGranted ? "Looking for windows…"
                       : "Vistrel needs Screen Recording permission to see and mirror windows.";
}

std::string pickerStatus(std::size_t count, bool accessGranted) {
  if (count > 0) {
    return std::to_string(count) + (count == 1 ? " window" : " windows") +
           " — double-click to mirror.";
  }
  return accessGranted ? "No mirror-worthy windows found. Open an app window and Refresh."
                       : "Click “Allow Screen Recording…”, enable Vistrel, then Refresh.";
}

std::string pickerRowText(const platform::ShareableWindow& window, bool mirrored) {
  return (mirrored ? "● " : "") + window.applicationNameOr("Unknown") + " — " +
         window.title.value_or("Untitled");
}

}  // namespace vistrel
