#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <xcb/res.h>

#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {

/// Whether `clientMachine` (WM_CLIENT_MACHINE) names the host `hostName`, with or without its
/// domain.
bool isSameMachine(std::string_view clientMachine, std::string_view hostName);

/// The process behind a window, asked for and yet to be read: its own word (`_NET_WM_PID`) where
/// the client runs on this machine, else what the server knows of the client's connection.
class ProcessIdRequest {
 public:
  ProcessIdRequest(Connection& connection, xcb_window_t window);
  /// None when nobody knows.
  std::optional<std::int32_t> fetch();

 private:
  using ClientIds = Pending<xcb_res_query_client_ids_reply, xcb_res_query_client_ids_cookie_t>;

  PropertyRequest processId_;
  PropertyRequest clientMachine_;
  std::optional<ClientIds> clientIds_;
};

/// What stands for the process behind a window where nobody knows that: a number that no process
/// has, the same for all windows of one connection to the server.
std::int32_t standInProcessId(const Connection& connection, xcb_window_t window);

}  // namespace vistrel::platform::linux_desktop
