#include "platform/linux/wayland/portal/PortalBus.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";

struct ReleaseSlot {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using Slot = std::unique_ptr<sd_bus_slot, ReleaseSlot>;

}  // namespace

/// One that waits for its answer.
struct PortalBus::Call {
  PortalBus* bus;
  Answered answered;
  Slot slot;

  static int received(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    auto* const call = static_cast<Call*>(data);
    const auto* const failure = sd_bus_message_get_error(message);
    const auto bus = call->bus->shared_from_this();
    const auto answered = std::move(call->answered);
    bus->calls_.erase(call);
    if (failure == nullptr) {
      answered({message, {}});
    } else {
      answered({nullptr, failure->name});
    }
    return 0;
  }
};

struct PortalBus::Listener {
  Heard heard;
  Slot slot;

  static int received(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    // What is heard may end the subscription.
    const auto heard = static_cast<Listener*>(data)->heard;
    heard(*message);
    return 0;
  }
};

std::shared_ptr<PortalBus> PortalBus::connect(const std::shared_ptr<SerialQueue>& queue) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return nullptr;
  std::shared_ptr<PortalBus> result(new PortalBus(queue, bus));
  // What watches may be called once more after it has been given up.
  queue->watch(result->descriptor(), [weak = std::weak_ptr(result)] {
    if (const auto strong = weak.lock()) strong->serve();
  });
  result->portalsOwner_ = result->match(
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg0='" +
          std::string(portal) + "'",
      [bus = result.get()](sd_bus_message& signal) { bus->ownerHasChanged(signal); });
  return result;
}

PortalBus::PortalBus(const std::shared_ptr<SerialQueue>& queue, sd_bus* bus)
    : queue_(queue), bus_(bus) {}

PortalBus::~PortalBus() {
  const auto queue = queue_.lock();
  if (queue && !isLost_) queue->unwatch(descriptor());
}

void PortalBus::serve() {
  const auto self = shared_from_this();
  int processed = 0;
  do {
    processed = sd_bus_process(bus_.get(), nullptr);
  } while (processed > 0);
  if (processed >= 0 || isLost_) return;
  isLost_ = true;
  trace(TraceTopic::start, [] { return "the session bus is lost"; });
  if (const auto queue = queue_.lock()) queue->unwatch(descriptor());
  portalHasEnded();
}

void PortalBus::ownerHasChanged(sd_bus_message& signal) {
  const char* name = nullptr;
  const char* former = nullptr;
  const char* current = nullptr;
  if (sd_bus_message_read(&signal, "sss", &name, &former, &current) <= 0) return;
  if (*former != '\0') portalHasEnded();
  if (*current != '\0') tell(PortalsLife::started);
}

void PortalBus::portalHasEnded() {
  const auto calls = std::exchange(calls_, {});
  for (const auto& [key, call] : calls) call->answered({nullptr, SD_BUS_ERROR_NAME_HAS_NO_OWNER});
  tell(PortalsLife::ended);
}

void PortalBus::tell(PortalsLife change) {
  const auto listeners = lifeListeners_;
  for (const auto& [number, heard] : listeners) heard(change);
}

void PortalBus::call(const std::string& path, const char* interface, const char* method,
                     const Write& write, Answered answered) {
  auto call = std::make_unique<Call>(Call{this, std::move(answered), nullptr});
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &message, portal, path.c_str(), interface, method);
  if (message != nullptr) write(*message);
  sd_bus_slot* slot = nullptr;
  // A person is waited for as long as they like.
  const int sent = message == nullptr ? -1
                                      : sd_bus_call_async(bus_.get(), &slot, message,
                                                          Call::received, call.get(), UINT64_MAX);
  sd_bus_message_unref(message);
  call->slot.reset(slot);
  const auto* const key = call.get();
  calls_.emplace(key, std::move(call));
  if (sent >= 0) return;
  // Answers come later.
  if (const auto queue = queue_.lock()) {
    queue->async([key, weak = weak_from_this()] {
      const auto bus = weak.lock();
      auto failed = bus ? bus->calls_.extract(key) : decltype(calls_)::node_type();
      if (failed) failed.mapped()->answered({nullptr, SD_BUS_ERROR_DISCONNECTED});
    });
  }
}

PortalBus::Subscription PortalBus::match(const std::string& rule, Heard heard) {
  auto listener = std::make_shared<Listener>(Listener{std::move(heard), nullptr});
  sd_bus_slot* slot = nullptr;
  sd_bus_add_match_async(bus_.get(), &slot, rule.c_str(), Listener::received, nullptr,
                         listener.get());
  listener->slot.reset(slot);
  return listener;
}

PortalBus::Subscription PortalBus::listen(const std::string& path, const char* interface,
                                          const char* signal, Heard heard) {
  return match("type='signal',sender='" + std::string(portal) + "',path='" + path +
                   "',interface='" + interface + "',member='" + signal + "'",
               std::move(heard));
}

PortalBus::Subscription PortalBus::listenToPortalsLife(LifeHeard heard) {
  const int number = ++lastLifeListener_;
  lifeListeners_.emplace(number, std::move(heard));
  return {this, [number, weak = weak_from_this()](void* /*bus*/) {
            if (const auto bus = weak.lock()) bus->lifeListeners_.erase(number);
          }};
}

std::string PortalBus::pathOf(const char* kind, const std::string& token) const {
  const char* name = nullptr;
  sd_bus_get_unique_name(bus_.get(), &name);
  std::string sender = name == nullptr ? "" : name + 1;  // without its colon
  std::replace(sender.begin(), sender.end(), '.', '_');
  return std::string(desktopPath) + "/" + kind + "/" + sender + "/" + token;
}

}  // namespace vistrel::platform::linux_desktop
