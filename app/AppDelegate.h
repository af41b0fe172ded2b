#pragma once

#include "platform/Application.h"

namespace vistrel {

/// What the application object asks and tells. Main thread.
class AppDelegate : public platform::ApplicationDelegate {
 public:
  void applicationDidFinishLaunching() override;
  /// Shows the picker, whether or not windows are visible; always true.
  bool applicationShouldHandleReopen(bool hasVisibleWindows) override;
  /// Brings the picker to the front and reloads its list.
  void showPicker();
};

}  // namespace vistrel
