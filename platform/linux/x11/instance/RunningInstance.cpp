#include "platform/linux/x11/instance/RunningInstance.h"

#include <optional>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/server/AwaitedEvents.h"
#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// After which desktops say of a program that it does not respond.
constexpr double patienceInSeconds = 5;

/// One request to the owner, for as long as this object lives: an owner that comes to it later
/// finds no window to answer to.
class ShowRequest {
 public:
  ShowRequest(Connection& connection, xcb_window_t owner, xcb_timestamp_t time)
      : connection_(connection),
        owner_(owner),
        requestor_(makeUnseenWindow(connection, XCB_EVENT_MASK_PROPERTY_CHANGE)),
        property_(connection.atom(showTarget)) {
    // Its end is told too, since nobody answers for a client that goes with a request unanswered.
    const auto listening = connection.selectEvents(owner, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    if (failureOf(connection.xcb(), listening)) answer_ = false;
    xcb_convert_selection(connection.xcb(), requestor_.id(), connection.atom(instanceSelection),
                          connection.atom(showTarget), property_, time);
    connection.flush();
  }
  ShowRequest(const ShowRequest&) = delete;
  ShowRequest& operator=(const ShowRequest&) = delete;
  ~ShowRequest() {
    forgive(connection_.xcb(), connection_.selectEvents(owner_, XCB_EVENT_MASK_NO_EVENT));
  }

  bool isAnsweredBefore(double deadline) {
    awaitEvents(
        connection_, deadline, [this](const xcb_generic_event_t& event) { handle(event); },
        [this] { return answer_.has_value(); });
    return answer_.value_or(false);
  }

 private:
  void handle(const xcb_generic_event_t& event) {
    if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
      const auto& change = eventAs<xcb_property_notify_event_t>(event);
      if (change.window == requestor_.id() && change.atom == property_) answer_ = true;
    } else if (typeOf(event) == XCB_DESTROY_NOTIFY || typeOf(event) == XCB_SELECTION_NOTIFY) {
      // It is the server that answers for a selection without an owner.
      answer_ = answer_.value_or(false);
    }
  }

  Connection& connection_;
  const xcb_window_t owner_;
  const OwnWindow requestor_;
  const xcb_atom_t property_;
  std::optional<bool> answer_;
};

}  // namespace

bool showRunningInstance(Connection& connection, xcb_window_t owner, xcb_timestamp_t time) {
  return ShowRequest(connection, owner, time).isAnsweredBefore(monotonicNow() + patienceInSeconds);
}

}  // namespace vistrel::platform::linux_desktop
