#include "platform/linux/x11/manager/ProcessIds.h"

#include <array>
#include <string>
#include <unistd.h>

#include "platform/linux/x11/server/TextDecoding.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::string hostName() {
  std::array<char, 256> name{};
  gethostname(name.data(), name.size() - 1);
  return name.data();
}

std::string_view withoutDomain(std::string_view name) { return name.substr(0, name.find('.')); }

xcb_res_query_client_ids_cookie_t askForClientIds(xcb_connection_t* connection,
                                                  xcb_window_t window) {
  const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  return xcb_res_query_client_ids(connection, 1, &spec);
}

/// Processes have smaller numbers (proc(5), /proc/sys/kernel/pid_max).
constexpr std::uint32_t processIdLimit = 1 << 22;

/// Null and numbers that no process can have are nonsense.
std::optional<std::int32_t> plausible(std::optional<std::uint32_t> processId) {
  if (!processId || *processId == 0 || *processId >= processIdLimit) return std::nullopt;
  return static_cast<std::int32_t>(*processId);
}

std::optional<std::int32_t> localProcessId(const xcb_res_query_client_ids_reply_t& reply) {
  for (auto id = xcb_res_query_client_ids_ids_iterator(&reply); id.rem;
       xcb_res_client_id_value_next(&id)) {
    const bool isProcessId = (id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
    if (isProcessId && id.data->length >= 4) {
      return static_cast<std::int32_t>(*xcb_res_client_id_value_value(id.data));
    }
  }
  return std::nullopt;
}

}  // namespace

bool isSameMachine(std::string_view clientMachine, std::string_view hostName) {
  if (clientMachine.empty()) return false;
  if (clientMachine == hostName) return true;
  const bool bothHaveDomains = clientMachine.find('.') != std::string_view::npos &&
                               hostName.find('.') != std::string_view::npos;
  return !bothHaveDomains && withoutDomain(clientMachine) == withoutDomain(hostName);
}

ProcessIdRequest::ProcessIdRequest(Connection& connection, xcb_window_t window)
    : processId_(connection, window, "_NET_WM_PID"),
      clientMachine_(connection, window, "WM_CLIENT_MACHINE") {
  if (connection.extensions().offersClientIds) {
    clientIds_.emplace(connection.xcb(), askForClientIds(connection.xcb(), window));
  }
}

std::optional<std::int32_t> ProcessIdRequest::fetch() {
  const auto own = plausible(processId_.fetch().firstValue());
  const auto machine = clientMachine_.fetch();
  if (own && isSameMachine(upToNull(machine.bytes()), hostName())) return own;
  if (!clientIds_) return std::nullopt;
  const auto ids = clientIds_->fetch();
  return ids ? localProcessId(*ids) : std::nullopt;
}

std::int32_t standInProcessId(const Connection& connection, xcb_window_t window) {
  // Ids have 29 bits, of which the upper ones say whose they are (X11 protocol, "Connection
  // Setup").
  constexpr std::uint32_t standsIn = 1 << 30;
  const std::uint32_t client = window & ~xcb_get_setup(connection.xcb())->resource_id_mask;
  return static_cast<std::int32_t>(standsIn | client);
}

}  // namespace vistrel::platform::linux_desktop
