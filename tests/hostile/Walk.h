#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "catalogue/WindowMirrorManager.h"
#include "platform/Backend.h"
#include "tests/hostile/Footprint.h"
#include "tests/support/InputDriver.h"
#include "tests/support/Monitors.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XConnection.h"

namespace vistrel::hostile {

/// The whole program but its picker, in this process on a private display with a window manager,
/// under random commands of a person, among windows that come and go; and beside it a plain model
/// of what is to be seen. Main thread.
class Walk {
 public:
  /// `display` has a server that can grow, and outlives this. The process's environment is the
  /// display's already.
  Walk(testbed::PrivateDisplay& display, std::uint64_t seed);
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  ~Walk();

  /// Does each command once, so that what comes with the first of them is there from then on, and
  /// rests; as `rest`.
  std::string goOnceRound();
  /// Goes on so many steps. What differs from the model, empty for nothing, after which it is over.
  std::string go(int steps);
  /// Closes every mirror: what is left of them then, empty for nothing.
  std::string rest();
  /// To be asked for at rest.
  Footprint footprint() const { return hostile::footprint(connection_); }

 private:
  struct Source {
    std::unique_ptr<testbed::TestWindow> window;
    platform::WindowRecord record;
    testbed::Rect home;
  };
  struct Mirror {
    bool isRolledUp = false;
    bool isKeptAwake = false;
  };
  struct Size {
    int width;
    int height;
  };
  struct Command {
    const char* name;
    int weight;
    void (Walk::*perform)();
  };

  static const std::vector<Command>& commands();
  const Command& drawCommand();
  /// What goes wrong with it, or differs from the model afterwards where that is to be looked at.
  std::string perform(const Command& command, bool isToLook);
  int draw(int count) { return static_cast<int>(random_() % static_cast<std::uint64_t>(count)); }
  /// Null when there is none.
  WindowMirrorHUDController* drawMirror();
  Source* drawSource();

  // What a person does.
  void mirror();
  void close();
  void closeAll();
  void roll();
  void scale();
  void drag();
  void keepAwake();
  void recapture();
  void bringSourceToFront();
  void hideAndShow();
  void switchDesktop();
  void plugOrUnplugMonitor();
  void replaceManager();
  void openSource();
  void closeSource();
  void resizeSource();
  void paintSource();
  void turn();

  void close(WindowMirrorHUDController& mirror);
  void openSource(Size size);
  platform::WindowRecord listed(platform::WindowID window);
  void goToDesktop(std::uint32_t desktop);
  bool turnUntil(const std::function<bool()>& condition);
  bool letGo();
  bool isKeptAwake(platform::WindowID window) const;
  std::size_t panelsOnScreen() const;
  /// What differs at this moment; empty for nothing.
  std::string difference() const;

  testbed::PrivateDisplay& display_;
  const testbed::XConnection connection_;
  testbed::InputDriver input_{connection_};
  const testbed::Monitors monitors_{connection_};
  const std::unique_ptr<platform::Backend> backend_;
  const platform::BackendInstallation installation_;
  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
  std::mt19937_64 random_;

  std::map<platform::WindowID, Source> sources_;
  std::deque<std::unique_ptr<testbed::TestWindow>> gone_;
  std::map<platform::WindowID, Mirror> mirrors_;
  std::vector<std::weak_ptr<WindowMirrorHUDController>> closed_;
  int steps_ = 0;
  bool hasSecondMonitor_ = false;
  int monitorsMade_ = 0;
};

}  // namespace vistrel::hostile
