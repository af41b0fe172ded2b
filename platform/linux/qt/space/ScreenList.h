#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

#include "platform/Screen.h"
#include "platform/linux/qt/space/MonitorScales.h"
#include "platform/linux/session/DockAreas.h"
#include "platform/linux/session/Monitors.h"
#include "platform/linux/session/SharedScreenLayout.h"

class QScreen;

namespace vistrel::platform::linux_desktop {

/// The screens that a person sees. Sets the session's layout when it is made and whenever it has
/// become another one; offers the screens as values in screen space. Main thread.
class ScreenList {
 public:
  struct Callbacks {
    /// Monitors have come, gone, moved or changed their size or scale; once for all that happens in
    /// one turn of the event loop, when the layout has been set.
    std::function<void()> changed;
    /// Docks keep other room free, or the screen that all monitors are on has another size.
    std::function<void()> roomChanged;
  };
  /// The first three outlive this object.
  ScreenList(Monitors& monitors, DockAreas& docks, SharedScreenLayout& layout, Callbacks callbacks);

  /// The primary one first.
  const std::vector<Screen>& all() const { return all_; }
  /// The key window's screen, else the primary one.
  const std::optional<Screen>& main() const { return main_; }

 private:
  void watchScreens();
  void watch(QScreen* screen);
  void watchKeyWindow();
  /// The toolkit's screens may have changed.
  void layOut();
  /// Reads them; whether they have.
  bool readScreens();
  /// The screens' values may have changed.
  void publish();

  Monitors& monitors_;
  DockAreas& docks_;
  SharedScreenLayout& layout_;
  QObject context_;                   // ends what is connected to it
  QTimer changed_;                    // runs out at the next turn of the event loop
  std::vector<NamedScreen> screens_;  // as laid out
  std::vector<Screen> all_;
  std::optional<Screen> main_;
};

}  // namespace vistrel::platform::linux_desktop
