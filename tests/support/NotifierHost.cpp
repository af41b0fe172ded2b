#include "tests/support/NotifierHost.h"

#include <stdexcept>
#include <utility>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
constexpr const char* path = "/StatusNotifierWatcher";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

}  // namespace

NotifierHost::NotifierHost(const PrivateDisplay& display, bool isShown)
    : address_(display.busAddress()),
      bus_(connectToBus(address_)),
      isShown_(isShown),
      announced_(isShown) {
  if (sd_bus_add_object(bus_.get(), nullptr, path, receive, this) < 0 ||
      sd_bus_request_name(bus_.get(), watcher, 0) < 0) {
    throw std::runtime_error("no tray can be made");
  }
  thread_ = std::jthread([this](const std::stop_token& stopped) { serve(stopped); });
}

NotifierHost::~NotifierHost() = default;

void NotifierHost::show(bool isShown) {
  const std::lock_guard lock(mutex_);
  isShown_ = isShown;
}

TrayItem NotifierHost::icon() const {
  if (!eventually([&] { return !registered().empty(); })) {
    throw std::runtime_error("no icon registers");
  }
  return TrayItem(BusObject(connectToBus(address_), registered(), "/StatusNotifierItem"));
}

std::string NotifierHost::registered() const {
  const std::lock_guard lock(mutex_);
  return registered_;
}

void NotifierHost::serve(const std::stop_token& stopped) {
  constexpr std::uint64_t microseconds = 10'000;
  while (!stopped.stop_requested()) {
    announceChange();
    while (sd_bus_process(bus_.get(), nullptr) > 0) continue;
    sd_bus_wait(bus_.get(), microseconds);
  }
}

void NotifierHost::announceChange() {
  const std::lock_guard lock(mutex_);
  if (std::exchange(announced_, isShown_) == isShown_) return;
  const auto* change = isShown_ ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered";
  sd_bus_emit_signal(bus_.get(), path, watcher, change, nullptr);
}

int NotifierHost::receive(sd_bus_message* message, void* host, sd_bus_error* /*error*/) {
  static_cast<NotifierHost*>(host)->answer(BusMessage(sd_bus_message_ref(message)));
  return 1;
}

void NotifierHost::answer(BusMessage call) {
  const std::lock_guard lock(mutex_);
  if (sd_bus_message_is_method_call(call.get(), watcher, "RegisterStatusNotifierItem") > 0) {
    registered_ = call.text();
    sd_bus_reply_method_return(call.get(), nullptr);
  } else if (sd_bus_message_is_method_call(call.get(), properties, "Get") > 0) {
    sd_bus_reply_method_return(call.get(), "v", "b", isShown_ ? 1 : 0);
  } else {
    sd_bus_reply_method_errorf(call.get(), SD_BUS_ERROR_UNKNOWN_METHOD, "unknown");
  }
}

}  // namespace vistrel::testbed
