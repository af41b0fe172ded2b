#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/Resources.h"

namespace vistrel::platform::linux_desktop {

/// This process's claim to be the one instance on its display. Another start of the program asks
/// whoever holds the claim to show itself instead (RunningInstance.h). Anybody may take the claim
/// away; it is not taken back.
class InstanceClaim : public std::enable_shared_from_this<InstanceClaim> {
 public:
  struct OrShown;
  /// Takes the claim, unless another instance has it and has shown itself. `startupID` is the one
  /// that this process was started with, or empty. Waits only for those that have the claim and do
  /// not answer, and gives up on them: it is taken from them, or done without. Any thread.
  static OrShown take(std::string_view startupID);

  /// Shows the program, for something that a person did at that time of the server's, and calls
  /// `shown` afterwards.
  using Show = std::function<void(xcb_timestamp_t time, std::function<void()> shown)>;

  /// From now on answers those who ask, on `queue`, for as long as that runs. On the queue.
  void serveOn(SerialQueue& queue);
  /// What is called on the queue when somebody asks, once for all who ask before it is done. Before
  /// that the program is thought to be about to show itself for the first time. On the queue.
  void setShow(Show show) { show_ = std::move(show); }
  /// Leaves the claim to others, among them those who have not been answered yet. On the queue.
  void giveUp();

 private:
  using Requests = std::vector<xcb_selection_request_event_t>;

  explicit InstanceClaim(std::unique_ptr<Connection> connection);

  xcb_timestamp_t timeNow();
  xcb_window_t takeFrom(xcb_window_t silent);
  void handle(const xcb_generic_event_t& event);
  void receive(const xcb_selection_request_event_t& request);
  void showForThoseWhoAsk();
  Requests stillThere(const Requests& requests);
  void answer(const xcb_selection_request_event_t& request, bool isDone);

  const std::unique_ptr<Connection> connection_;
  OwnWindow window_;  // none once given up or lost
  Show show_;
  Requests asking_;  // those for whom no showing is under way
  bool isShowing_ = false;
};

struct InstanceClaim::OrShown {
  /// Null when the display refuses another connection, or when there is nothing left to claim for.
  std::shared_ptr<InstanceClaim> claim;
  /// Whether this process has nothing left to do.
  bool isShown = false;
};

}  // namespace vistrel::platform::linux_desktop
