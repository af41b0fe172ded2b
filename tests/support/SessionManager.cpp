#include "tests/support/SessionManager.h"

#include <X11/SM/SMlib.h>
#include <array>
#include <cstdlib>
#include <poll.h>
#include <set>
#include <stdexcept>
#include <vector>

// Has no prototype in every version of the library's headers.
extern "C" {
#include <X11/ICE/ICEutil.h>
}

namespace vistrel::testbed {
namespace {

// The library knows one manager in a process. All but the first on the manager's thread.
IceListenObj* listeners = nullptr;
int listenerCount = 0;
std::set<SmsConn> present;
std::set<IceConn> connections;

void save(SmsConn client, bool isEnd) {
  SmsSaveYourself(client, SmSaveBoth, isEnd ? True : False, SmInteractStyleNone, False);
}

Status registerClient(SmsConn client, SmPointer /*manager*/, char* previousId) {
  std::free(previousId);
  SmsRegisterClientReply(client, SmsGenerateClientID(client));
  present.insert(client);
  return 1;
}

void closeConnection(SmsConn client, SmPointer /*manager*/, int count, char** reasons) {
  SmFreeReasons(count, reasons);
  present.erase(client);
}

void setProperties(SmsConn /*client*/, SmPointer /*manager*/, int count, SmProp** properties) {
  for (int i = 0; i < count; ++i) {
    SmFreeProperty(properties[i]);
  }
  std::free(properties);
}

Status receiveClient(SmsConn /*client*/, SmPointer /*manager*/, unsigned long* mask,
                     SmsCallbacks* callbacks, char** /*failure*/) {
  *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
          SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
          SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
          SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
  callbacks->register_client = {registerClient, nullptr};
  callbacks->interact_request = {[](SmsConn client, SmPointer, int) { SmsInteract(client); },
                                 nullptr};
  callbacks->interact_done = {[](SmsConn, SmPointer, Bool) {}, nullptr};
  callbacks->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {},
                                      nullptr};
  callbacks->save_yourself_phase2_request = {
      [](SmsConn client, SmPointer) { SmsSaveYourselfPhase2(client); }, nullptr};
  callbacks->save_yourself_done = {[](SmsConn, SmPointer, Bool) {}, nullptr};
  callbacks->close_connection = {closeConnection, nullptr};
  callbacks->set_properties = {setProperties, nullptr};
  callbacks->delete_properties = {[](SmsConn, SmPointer, int, char**) {}, nullptr};
  callbacks->get_properties = {
      [](SmsConn client, SmPointer) { SmsReturnProperties(client, 0, nullptr); }, nullptr};
  return 1;
}

void accept(IceListenObj listener) {
  IceAcceptStatus status = IceAcceptFailure;
  const IceConn connection = IceAcceptConnection(listener, &status);
  if (connection == nullptr) {
    return;
  }
  IceConnectStatus progress = IceConnectPending;
  while ((progress = IceConnectionStatus(connection)) == IceConnectPending) {
    IceProcessMessages(connection, nullptr, nullptr);
  }
  if (progress == IceConnectAccepted) {
    connections.insert(connection);
  }
}

void receive(IceConn connection) {
  if (IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesSuccess) {
    std::erase_if(present, [&](SmsConn each) { return SmsGetIceConnection(each) == connection; });
    connections.erase(connection);
  }
}

}  // namespace

SessionManager::SessionManager() {
  std::array<char, 256> failure{};
  IceSetIOErrorHandler([](IceConn) {});
  const IceHostBasedAuthProc everybody = [](char*) { return True; };
  if (!SmsInitialize("test", "1", receiveClient, nullptr, everybody, failure.size(),
                     failure.data()) ||
      !IceListenForConnections(&listenerCount, &listeners, failure.size(), failure.data())) {
    throw std::runtime_error(std::string("no session manager: ") + failure.data());
  }
  for (int i = 0; i < listenerCount; ++i) {
    IceSetHostBasedAuthProc(listeners[i], everybody);
  }
  char* const address = IceComposeNetworkIdList(listenerCount, listeners);
  address_ = address;
  std::free(address);
  thread_ = std::jthread([this](const std::stop_token& stop) { serveUntil(stop); });
}

SessionManager::~SessionManager() {
  thread_ = {};
  IceFreeListenObjs(listenerCount, listeners);
}

void SessionManager::serveUntil(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    std::vector<pollfd> waiting;
    for (int i = 0; i < listenerCount; ++i) {
      waiting.push_back({IceGetListenConnectionNumber(listeners[i]), POLLIN, 0});
    }
    const std::vector<IceConn> served(connections.begin(), connections.end());
    for (const IceConn each : served) {
      waiting.push_back({IceConnectionNumber(each), POLLIN, 0});
    }
    constexpr int milliseconds = 10;
    ::poll(waiting.data(), waiting.size(), milliseconds);
    for (std::size_t i = 0; i < waiting.size(); ++i) {
      if (waiting[i].revents == 0) {
        continue;
      }
      const auto listening = static_cast<std::size_t>(listenerCount);
      if (i < listening) {
        accept(listeners[i]);
      } else {
        receive(served[i - listening]);
      }
    }
    const bool isBegun = isEndBegun_.exchange(false);
    const bool isCancelled = isEndCancelled_.exchange(false);
    for (const SmsConn each : present) {
      if (isBegun) {
        save(each, true);
      }
      if (isCancelled) {
        SmsShutdownCancelled(each);
      }
    }
    clients_ = static_cast<int>(present.size());
  }
}

}  // namespace vistrel::testbed
