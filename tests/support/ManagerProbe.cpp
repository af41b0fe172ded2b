#include "tests/support/ManagerProbe.h"

#include <atomic>
#include <stdexcept>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

// Until then requests about windows go by nobody.
bool isRedirected(const XConnection& connection) {
  const XReply<xcb_get_window_attributes_reply_t> root(xcb_get_window_attributes_reply(
      connection.get(), xcb_get_window_attributes(connection.get(), connection.root()), nullptr));
  return root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
}

// EWMH 1.5, _NET_SUPPORTING_WM_CHECK: the root window names a window that names itself.
bool isManaged(const XConnection& connection) {
  const auto check = connection.numbers(connection.root(), "_NET_SUPPORTING_WM_CHECK");
  return !check.empty() && connection.numbers(check.front(), "_NET_SUPPORTING_WM_CHECK") == check;
}

// One that no other window gets, nor another probe. A server gives a connection's numbers out again
// once that has ended, from the first, and what is asked about this window may be answered later.
xcb_window_t numberOfItsOwn(const XConnection& connection) {
  static std::atomic<std::uint32_t> taken = 0;
  const xcb_setup_t* setup = xcb_get_setup(connection.get());
  return setup->resource_id_base | (setup->resource_id_mask - taken++);
}

}  // namespace

ManagerProbe::ManagerProbe(const XConnection& connection)
    : connection_(connection), window_(numberOfItsOwn(connection)) {
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
}

ManagerProbe::~ManagerProbe() {
  xcb_destroy_window(connection_.get(), window_);
  connection_.sync();
}

bool ManagerProbe::isAnswered() const {
  return isManaged(connection_) && (tellsFrame() || grantsSize());
}

bool ManagerProbe::tellsFrame() const {
  connection_.sendToManager(window_, "_NET_REQUEST_FRAME_EXTENTS", {});
  return !connection_.numbers(window_, "_NET_FRAME_EXTENTS").empty();
}

bool ManagerProbe::grantsSize() const {
  if (!isRedirected(connection_)) {
    return false;
  }
  constexpr std::uint32_t anotherWidth = 2;
  xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_WIDTH, &anotherWidth);
  const XReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
      connection_.get(), xcb_get_geometry(connection_.get(), window_), nullptr));
  return geometry && geometry->width == anotherWidth;
}

bool isManagerDone(const XConnection& connection, std::chrono::milliseconds deadline) {
  const ManagerProbe probe(connection);
  return eventually([&] { return probe.isAnswered() || !isManaged(connection); }, deadline);
}

void awaitManager(const XConnection& connection) {
  if (!isManagerDone(connection, generousDeadline)) {
    throw std::runtime_error("the window manager does not answer");
  }
}

}  // namespace vistrel::testbed
