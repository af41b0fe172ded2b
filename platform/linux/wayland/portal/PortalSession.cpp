#include "platform/linux/wayland/portal/PortalSession.h"

#include <fcntl.h>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr const char* sessionInterface = "org.freedesktop.portal.Session";

std::string nextToken() {
  static int tokens = 0;  // on the one queue that talks to the portal
  return "vistrel" + std::to_string(++tokens);
}

void appendOption(sd_bus_message& message, const char* name, const std::string& value) {
  sd_bus_message_append(&message, "{sv}", name, "s", value.c_str());
}

void appendOption(sd_bus_message& message, const char* name, std::uint32_t value) {
  sd_bus_message_append(&message, "{sv}", name, "u", value);
}

std::optional<std::uint32_t> readFirstNode(sd_bus_message& message) {
  std::uint32_t node = 0;
  if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_VARIANT, "a(ua{sv})") <= 0) return {};
  sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "(ua{sv})");
  const bool isThere = sd_bus_message_enter_container(&message, SD_BUS_TYPE_STRUCT, "ua{sv}") > 0 &&
                       sd_bus_message_read_basic(&message, SD_BUS_TYPE_UINT32, &node) > 0;
  return isThere ? std::optional(node) : std::nullopt;
}

/// Of the answer to Start.
std::optional<PortalSession::Started> startedFrom(sd_bus_message& results) {
  PortalSession::Started started;
  forEachEntry(results, [&](std::string_view name) {
    const char* token = nullptr;
    if (name != "restore_token") return false;
    if (sd_bus_message_read(&results, "v", "s", &token) > 0) started.restoreToken = token;
    return true;
  });
  // The answer once more, since a stream's properties are not read to their end.
  sd_bus_message_rewind(&results, 1);
  sd_bus_message_skip(&results, "u");
  std::optional<std::uint32_t> node;
  forEachEntry(results, [&](std::string_view name) {
    if (name != "streams") return false;
    node = readFirstNode(results);
    return true;
  });
  if (!node) return std::nullopt;
  started.node = *node;
  return started;
}

}  // namespace

PortalSession::PortalSession(std::shared_ptr<PortalBus> bus, const PortalOffer& offer,
                             Closed closed)
    : bus_(std::move(bus)), offer_(offer), closed_(std::move(closed)) {}

PortalSession::~PortalSession() { close(); }

void PortalSession::start(Wish wish, Completion completion) {
  wish_ = std::move(wish);
  completion_ = std::move(completion);
  create();
}

void PortalSession::request(const char* method, const PortalBus::Write& write,
                            const PortalBus::Write& writeOptions, const Responded& responded) {
  const auto token = nextToken();
  struct Pending {
    PortalBus::Subscription response;
    PortalBus::Subscription portalsLife;
    bool isOver = false;
  };
  // Whoever waits keeps the session, and so a dialog that is open is never withdrawn.
  const auto pending = std::make_shared<Pending>();
  const auto fail = [self = shared_from_this(), pending] {
    if (std::exchange(pending->isOver, true)) return;
    *pending = {.isOver = true};
    self->finish(Failure::gone);
  };
  pending->response =
      bus_->listen(bus_->pathOf("request", token), "org.freedesktop.portal.Request", "Response",
                   [self = shared_from_this(), pending, method, responded](sd_bus_message& signal) {
                     if (std::exchange(pending->isOver, true)) return;
                     std::uint32_t response = 0;
                     sd_bus_message_read_basic(&signal, SD_BUS_TYPE_UINT32, &response);
                     trace(TraceTopic::capture, [&] {
                       return std::string("the portal's ") + method + " has answered " +
                              std::to_string(response);
                     });
                     responded(response, signal);
                     *pending = {.isOver = true};
                   });
  pending->portalsLife = bus_->listenToPortalsLife([fail](PortalBus::PortalsLife change) {
    if (change == PortalBus::PortalsLife::ended) fail();
  });
  bus_->call(
      desktopPath, screenCast, method,
      [&](sd_bus_message& message) {
        write(message);
        sd_bus_message_open_container(&message, SD_BUS_TYPE_ARRAY, "{sv}");
        appendOption(message, "handle_token", token);
        writeOptions(message);
        sd_bus_message_close_container(&message);
      },
      [fail, method](const PortalBus::Reply& reply) {
        if (reply.message != nullptr) return;
        trace(TraceTopic::capture,
              [&] { return std::string("the portal's ") + method + " failed: " + reply.error; });
        fail();
      });
}

void PortalSession::create() {
  const auto token = nextToken();
  request(
      "CreateSession", [](sd_bus_message& /*call*/) {},
      [&](sd_bus_message& call) { appendOption(call, "session_handle_token", token); },
      [this, token](std::uint32_t response, sd_bus_message& /*results*/) {
        if (response != 0) return finish(Failure::refused);
        path_ = bus_->pathOf("session", token);
        closing_ = bus_->listen(path_, sessionInterface, "Closed",
                                [this](sd_bus_message& /*signal*/) { end(); });
        portalsLife_ = bus_->listenToPortalsLife([this](PortalBus::PortalsLife change) {
          if (change == PortalBus::PortalsLife::ended) end();
        });
        selectSources();
      });
}

void PortalSession::selectSources() {
  constexpr std::uint32_t untilTheProgramEnds = 1;
  constexpr std::uint32_t firstThatRestores = 4;
  request(
      "SelectSources",
      [this](sd_bus_message& call) { sd_bus_message_append(&call, "o", path_.c_str()); },
      [this](sd_bus_message& call) {
        appendOption(call, "types", PortalOffer::windows);
        for (const auto mode : {PortalOffer::cursorMetadata, PortalOffer::cursorEmbedded}) {
          if ((offer_.cursorModes & mode) == 0) continue;
          appendOption(call, "cursor_mode", mode);
          break;
        }
        if (offer_.version < firstThatRestores) return;
        appendOption(call, "persist_mode", untilTheProgramEnds);
        if (!wish_.restoreToken.empty()) {
          appendOption(call, "restore_token", wish_.restoreToken);
        }
      },
      [this](std::uint32_t response, sd_bus_message& /*results*/) {
        response == 0 ? ask() : finish(Failure::refused);
      });
}

void PortalSession::ask() {
  dialogKeeper_ = DialogKeeper::start(bus_->descriptor());
  request(
      "Start",
      [this](sd_bus_message& call) {
        sd_bus_message_append(&call, "os", path_.c_str(), wish_.parentWindow.c_str());
      },
      [](sd_bus_message& /*call*/) {},
      [this](std::uint32_t response, sd_bus_message& results) {
        constexpr std::uint32_t cancelled = 1;
        const auto started = response == 0 ? startedFrom(results) : std::nullopt;
        if (started) return finish(*started);
        finish(response == cancelled ? Failure::cancelled : Failure::refused);
      });
}

void PortalSession::finish(const Result& result) {
  dialogKeeper_.reset();
  if (std::holds_alternative<Failure>(result)) close();
  if (const auto completion = std::exchange(completion_, nullptr)) completion(result);
}

void PortalSession::openRemote(std::function<void(SharedDescriptor remote)> completion) {
  if (path_.empty()) return completion(nullptr);
  bus_->call(
      desktopPath, screenCast, "OpenPipeWireRemote",
      [this](sd_bus_message& call) { sd_bus_message_append(&call, "oa{sv}", path_.c_str(), 0); },
      [completion = std::move(completion)](const PortalBus::Reply& reply) {
        int borrowed = -1;
        if (reply.message != nullptr) sd_bus_message_read(reply.message, "h", &borrowed);
        const int own = borrowed < 0 ? -1 : fcntl(borrowed, F_DUPFD_CLOEXEC, 0);
        if (own < 0) return completion(nullptr);
        completion({new int(own), [](const int* descriptor) {
                      ::close(*descriptor);
                      delete descriptor;
                    }});
      });
}

void PortalSession::close() {
  closing_.reset();
  portalsLife_.reset();
  const auto path = std::exchange(path_, {});
  if (path.empty() || bus_->isLost()) return;
  bus_->call(
      path, sessionInterface, "Close", [](sd_bus_message& /*call*/) {},
      [](const PortalBus::Reply& /*reply*/) {});
}

void PortalSession::end() {
  const bool wasStarted = !completion_;
  closing_.reset();
  portalsLife_.reset();
  path_.clear();
  if (wasStarted) closed_(*this);
}

}  // namespace vistrel::platform::linux_desktop
