#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Backend.h"
#include "platform/Factory.h"
#include "platform/VirtualDisplayClasses.h"
#include "platform/linux/session/ContextMenuKeys.h"
#include "platform/linux/session/DockAreas.h"
#include "platform/linux/session/Monitors.h"
#include "platform/linux/session/PanelWindows.h"
#include "platform/linux/session/ParkedSources.h"
#include "platform/linux/session/ProgramInstance.h"
#include "platform/linux/session/SessionFacts.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/session/SourceSituations.h"
#include "platform/linux/session/WindowActivation.h"
#include "platform/linux/session/WindowLister.h"
#include "platform/linux/session/WindowPicking.h"
#include "platform/linux/session/WindowStreams.h"

namespace vistrel::platform::linux_desktop {

/// What the session that the program runs in offers: one provider for each subject, none of them
/// null except where that is said. Whoever uses some of them is handed those and no others. A
/// provider owns what it stands on; made, asked for and released on the main thread.
struct Session {
  /// By which all that follow count in points.
  std::shared_ptr<SharedScreenLayout> layout;

  /// Whether other programs may have windows that are none of the display server's, as in a Wayland
  /// session: it does not tell what is typed and clicked there.
  bool mayHaveForeignWindows = false;

  /// Whether the manager keeps a program's windows within the one area that docks leave of the
  /// whole desktop, unless a person moves them: beside an output with a dock, no edge of another
  /// one could be reached.
  bool confinesWindows = false;

  /// Asked as of now; while the session lasts.
  std::function<SessionFacts()> facts;

  /// To be called when the monitors that a person sees have changed, with the layout set: hidden
  /// displays get out of their way, with what is parked there. While the session lasts.
  std::function<void()> clearMonitors;

  std::unique_ptr<ProgramInstance> instance;
  std::unique_ptr<Monitors> monitors;
  std::unique_ptr<DockAreas> dockAreas;
  std::unique_ptr<PanelWindows> panelWindows;
  std::unique_ptr<ContextMenuKeys> contextMenuKeys;
  std::unique_ptr<WindowActivation> windowActivation;
  std::unique_ptr<SourceSituations> sourceSituations;
  std::unique_ptr<WindowLister> windowLister;
  std::unique_ptr<WindowStreams> windowStreams;
  /// Null where programs are told which windows there are.
  std::unique_ptr<WindowPicking> windowPicking;
  /// Makes displays that nobody sees.
  std::shared_ptr<VirtualDisplayServer> hiddenDisplays;
  /// All that are online, hidden ones among them.
  std::unique_ptr<DisplayBackend> displays;
  /// Moves other programs' windows.
  std::unique_ptr<AccessibilityBackend> otherWindows;
  /// Those that are parked. Last, since windows go back before the displays go that they are on.
  std::shared_ptr<ParkedSources> parkedSources;
};

struct SessionOrFailure {
  std::unique_ptr<Session> session;
  /// Why there is none: one line for a person. Empty when this process was to be the one instance
  /// and another one has been shown instead.
  std::string failure;
};

}  // namespace vistrel::platform::linux_desktop
