#include "platform/linux/x11/instance/InstanceClaim.h"

#include <utility>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/instance/RunningInstance.h"
#include "platform/linux/x11/instance/StartupNotification.h"
#include "platform/linux/x11/server/ServedConnection.h"
#include "platform/linux/x11/server/ServerGrab.h"
#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How many that do not answer are waited for, one after another.
constexpr int mostSilentOwners = 3;

bool isRoot(const Connection& connection, xcb_window_t window) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.xcb()));
  for (; screens.rem > 0; xcb_screen_next(&screens)) {
    if (screens.data->root == window) return true;
  }
  return false;
}

}  // namespace

InstanceClaim::OrShown InstanceClaim::take(std::string_view startupID) {
  auto connection = Connection::open();
  if (!connection) return {};
  std::shared_ptr<InstanceClaim> claim(new InstanceClaim(std::move(connection)));
  const auto time = timeOfStart(startupID).value_or(claim->timeNow());
  xcb_window_t silent = XCB_WINDOW_NONE;
  for (int i = 0; i < mostSilentOwners; ++i) {
    const auto owner = claim->takeFrom(silent);
    if (owner == claim->window_.id()) {
      trace(TraceTopic::start, [] { return "this is the display's one instance"; });
      break;
    }
    if (showRunningInstance(*claim->connection_, owner, time)) {
      trace(TraceTopic::start, [&] { return "shown by the instance of " + windowText(owner); });
      if (!startupID.empty()) {
        tellStartIsOver(*claim->connection_, claim->window_.id(), startupID);
      }
      return {nullptr, true};
    }
    trace(TraceTopic::start, [&] { return "no answer from the one of " + windowText(owner); });
    silent = owner;
  }
  return {claim};
}

InstanceClaim::InstanceClaim(std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)),
      window_(makeUnseenWindow(*connection_, XCB_EVENT_MASK_PROPERTY_CHANGE)) {}

/// As ICCCM 2.1 has clients find it out: by a change that changes nothing.
xcb_timestamp_t InstanceClaim::timeNow() {
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_APPEND, window_.id(), XCB_ATOM_WM_NAME,
                      XCB_ATOM_STRING, 8, 0, nullptr);
  connection_->sync();
  xcb_timestamp_t time = XCB_CURRENT_TIME;
  while (const auto event = connection_->pollEvent()) {
    if (typeOf(*event) == XCB_PROPERTY_NOTIFY) {
      time = eventAs<xcb_property_notify_event_t>(*event).time;
    }
  }
  return time;
}

/// Who owns the selection afterwards: this claim, if nobody else has or only `silent`.
xcb_window_t InstanceClaim::takeFrom(xcb_window_t silent) {
  auto* const xcb = connection_->xcb();
  const auto selection = connection_->atom(instanceSelection);
  // So that of several starts at the same moment one alone finds the claim free. Nobody comes in
  // between, hence the current time will do.
  const ServerGrab grab(*connection_);
  const auto reply =
      replyTo<xcb_get_selection_owner_reply>(xcb, xcb_get_selection_owner(xcb, selection));
  const xcb_window_t owner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
  if (owner != XCB_WINDOW_NONE && owner != silent) return owner;
  xcb_set_selection_owner(xcb, window_.id(), selection, XCB_CURRENT_TIME);
  return window_.id();
}

void InstanceClaim::serveOn(SerialQueue& queue) {
  linux_desktop::serveOn(queue, *connection_, [self = shared_from_this()] {
    self->connection_->serve([&](const xcb_generic_event_t& event) { self->handle(event); },
                             [&] { self->showForThoseWhoAsk(); });
  });
}

void InstanceClaim::giveUp() {
  trace(TraceTopic::start, [] { return "others may start from here on"; });
  // From its end those who wait for an answer learn that they have to ask elsewhere.
  window_ = {};
  asking_.clear();
  connection_->sync();
}

void InstanceClaim::handle(const xcb_generic_event_t& event) {
  if (typeOf(event) == XCB_SELECTION_REQUEST) {
    receive(eventAs<xcb_selection_request_event_t>(event));
  } else if (typeOf(event) == XCB_SELECTION_CLEAR) {
    trace(TraceTopic::start, [] { return "another client has taken the claim"; });
    giveUp();
  }
}

void InstanceClaim::receive(const xcb_selection_request_event_t& request) {
  if (!window_) return;
  const bool canBeAnswered =
      request.property != XCB_ATOM_NONE && !isRoot(*connection_, request.requestor);
  if (request.target == connection_->atom(showTarget) && canBeAnswered) {
    asking_.push_back(request);
  } else {
    answer(request, /*isDone=*/false);
  }
}

void InstanceClaim::showForThoseWhoAsk() {
  if (isShowing_) return;
  auto asking = stillThere(std::exchange(asking_, {}));
  if (asking.empty()) return;
  trace(TraceTopic::start, [] { return "started again, so this one shows itself"; });
  const auto time = asking.back().time;
  auto shown = [self = shared_from_this(), asking = std::move(asking)] {
    for (const auto& each : asking) self->answer(each, /*isDone=*/true);
    self->isShowing_ = false;
    self->showForThoseWhoAsk();
    self->connection_->flush();
  };
  if (!show_) return shown();
  isShowing_ = true;
  show_(time, std::move(shown));
}

/// Whoever had to wait for too long has helped itself.
InstanceClaim::Requests InstanceClaim::stillThere(const Requests& requests) {
  std::vector<Pending<xcb_get_geometry_reply, xcb_get_geometry_cookie_t>> answers;
  for (const auto& each : requests) {
    answers.emplace_back(connection_->xcb(), xcb_get_geometry(connection_->xcb(), each.requestor));
  }
  Requests there;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    if (answers[i].fetch()) there.push_back(requests[i]);
  }
  return there;
}

void InstanceClaim::answer(const xcb_selection_request_event_t& request, bool isDone) {
  if (!window_) return;
  auto* const xcb = connection_->xcb();
  if (isDone) {
    forgive(xcb, xcb_change_property_checked(xcb, XCB_PROP_MODE_REPLACE, request.requestor,
                                             request.property, connection_->atom("NULL"), 32, 0,
                                             nullptr));
  }
  xcb_selection_notify_event_t notice{};
  notice.response_type = XCB_SELECTION_NOTIFY;
  notice.time = request.time;
  notice.requestor = request.requestor;
  notice.selection = request.selection;
  notice.target = request.target;
  notice.property = isDone ? request.property : xcb_atom_t{XCB_ATOM_NONE};
  forgive(xcb, xcb_send_event_checked(xcb, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                                      reinterpret_cast<const char*>(&notice)));
}

}  // namespace vistrel::platform::linux_desktop
