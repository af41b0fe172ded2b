#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Backend.h"
#include "platform/View.h"
#include "platform/Window.h"

namespace vistrel::platform::simulated {

class SimulatedDesktop;

/// One thing that a window's peer was told.
struct PeerCall {
  enum class Kind {
    frameDidChange,
    propertiesDidChange,
    contentViewDidChange,
    viewDidChange,
    orderFrontRegardless,
    makeKeyAndOrderFront,
    orderOut,
    miniaturize,
    close,
    adoptAutosavedFrame,
    destroyed,
  };

  Kind kind;
  Rect frame;                            // the window's at that moment
  bool display = false;                  // of frameDidChange
  bool animate = false;                  // of frameDidChange
  const View* view = nullptr;            // of viewDidChange; for comparing only
  std::optional<ViewChange> viewChange;  // of viewDidChange
};

/// What one window's peer was told, in order. Outlives the window.
struct WindowHistory {
  bool isPanel = false;
  std::vector<PeerCall> calls;

  /// The kinds in order, without changes of views and properties.
  std::vector<PeerCall::Kind> steps() const;
  int count(PeerCall::Kind kind) const;
};

/// Shows nothing and remembers everything. The title bar of a titled window is 28 points high.
class SimulatedWindowPeer : public WindowPeer {
 public:
  static constexpr double titleBarHeight = 28;

  SimulatedWindowPeer(SimulatedDesktop& desktop, Window& window, bool isPanel);
  ~SimulatedWindowPeer() override;

  const Window& window() const { return window_; }
  Window& window() { return window_; }
  const std::shared_ptr<WindowHistory>& history() const { return history_; }
  /// The frame is where a person put it; keeps it where it is saved by name.
  void personSetFrame(const Rect& frame);

  Rect frameRectForContentRect(const Rect& contentRect) const override;
  Rect contentRectForFrameRect(const Rect& frame) const override;
  std::optional<Point> center() override;
  void frameDidChange(Redisplay redisplay, FrameChange change) override;
  void propertiesDidChange() override;
  void contentViewDidChange() override;
  void viewDidChange(View& view, ViewChange change) override;
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  void miniaturize() override;
  void close() override;
  std::optional<Rect> adoptAutosavedFrame(const std::string& name) override;
  std::optional<int> selectedRow(const TableView& table) const override;

 private:
  double chromeHeight() const;
  PeerCall& record(PeerCall::Kind kind);
  /// The same, and into the journal, where `words` name it.
  void recordOrdering(PeerCall::Kind kind, const std::string& words);
  /// Tells the window when the frame has brought it to a screen of another scale.
  void adoptScreen();
  void saveFrame();

  SimulatedDesktop& desktop_;
  Window& window_;
  std::shared_ptr<WindowHistory> history_ = std::make_shared<WindowHistory>();
  std::string autosaveName_;
  double toldBackingScale_;
};

}  // namespace vistrel::platform::simulated
