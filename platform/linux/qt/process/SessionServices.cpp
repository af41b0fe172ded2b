#include "platform/linux/qt/process/SessionServices.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDBusConnection>
#include <X11/ICE/ICElib.h>
#include <array>
#include <chrono>
#include <cstdlib>
#include <dbus/dbus.h>
#include <filesystem>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "platform/linux/Environment.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr const char* sessionManagerVariable = "SESSION_MANAGER";
constexpr const char* sessionBusVariable = "DBUS_SESSION_BUS_ADDRESS";
/// Qt 6.4.2 asks nobody for the accessibility bus where this names it.
constexpr const char* accessibilityBusVariable = "AT_SPI_BUS_ADDRESS";
/// No transport of this name: connecting fails at once.
constexpr const char* nowhere = "disabled:";

struct CloseConnection {
  void operator()(DBusConnection* connection) const {
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
  }
};
struct ReleaseMessage {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, ReleaseMessage>;

Message methodCall(const char* service, const char* path, const char* interface,
                   const char* method) {
  Message call(dbus_message_new_method_call(service, path, interface, method));
  dbus_message_set_auto_start(call.get(), FALSE);
  return call;
}

Message busCall(const char* method) {
  return methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, method);
}

/// Whether the answer to `call`, an error also, comes within so many seconds of now.
bool isAnswered(DBusConnection& bus, const Message& call, double seconds) {
  DBusPendingCall* pending = nullptr;
  const auto milliseconds = static_cast<int>(seconds * 1000);
  if (dbus_connection_send_with_reply(&bus, call.get(), &pending, milliseconds) == FALSE ||
      pending == nullptr) {
    return false;
  }
  dbus_pending_call_block(pending);
  const Message answer(dbus_pending_call_steal_reply(pending));
  dbus_pending_call_unref(pending);
  // The library itself says this when the time is up.
  return answer && dbus_message_is_error(answer.get(), DBUS_ERROR_NO_REPLY) == FALSE;
}

/// Asks over a connection of its own. A bus that takes none holds nobody up.
bool isAnswered(const std::string& busAddress, const Message& question, double seconds) {
  const std::unique_ptr<DBusConnection, CloseConnection> bus(
      dbus_connection_open_private(busAddress.c_str(), nullptr));
  if (!bus) return true;
  dbus_connection_set_exit_on_disconnect(bus.get(), FALSE);
  return isAnswered(*bus, busCall("Hello"), seconds) && isAnswered(*bus, question, seconds);
}

/// What the toolkit reads first.
Message accessibilityQuestion() {
  Message question = methodCall("org.a11y.Bus", "/org/a11y/bus", DBUS_INTERFACE_PROPERTIES, "Get");
  const char* const interface = "org.a11y.Status";
  const char* const property = "IsEnabled";
  dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING,
                           &property, DBUS_TYPE_INVALID);
  return question;
}

/// The menu of a window that has none; the answer is an error.
Message globalMenuQuestion() {
  constexpr const char* registrar = "com.canonical.AppMenu.Registrar";
  Message question =
      methodCall(registrar, "/com/canonical/AppMenu/Registrar", registrar, "GetMenuForWindow");
  const dbus_uint32_t none = 0;
  dbus_message_append_args(question.get(), DBUS_TYPE_UINT32, &none, DBUS_TYPE_INVALID);
  return question;
}

/// Whether the manager takes a connection or refuses it. Waits as long as that takes.
bool takesConnection(std::string managers) {
  std::array<char, 256> failure{};
  const IceConn connection = IceOpenConnection(managers.data(), nullptr, False, 0,
                                               static_cast<int>(failure.size()), failure.data());
  if (connection != nullptr) {
    // Nobody is waited for.
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
  }
  return true;
}

/// Asks on a thread that is left behind where there is no answer: connecting has no end where
/// nobody accepts.
template <class Asking>
std::future<bool> ask(Asking asking) {
  std::packaged_task<bool()> task(std::move(asking));
  std::future<bool> answered = task.get_future();
  std::thread(std::move(task)).detach();
  return answered;
}

std::future<bool> askOnBus(const std::string& address, Message question, double seconds) {
  return ask([address, seconds, asked = std::move(question)] {
    return isAnswered(address, asked, seconds);
  });
}

/// Where the session's bus listens (the default of libdbus); empty where nobody says.
std::string sessionBusAddress() {
  std::string given = environmentVariable(sessionBusVariable);
  if (!given.empty()) return given;
  const std::filesystem::path socket =
      std::filesystem::path(environmentVariable("XDG_RUNTIME_DIR")) / "bus";
  std::error_code ignored;
  return std::filesystem::exists(socket, ignored) ? "unix:path=" + socket.string() : "";
}

}  // namespace

SessionServices askSessionServices(double seconds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  const auto isTrue = [&](std::future<bool> answered) {
    return !answered.valid() ||
           (answered.wait_until(deadline) == std::future_status::ready && answered.get());
  };
  std::future<bool> manager;
  std::future<bool> session;
  std::future<bool> accessibility;
  std::future<bool> globalMenu;
  const std::string managers = environmentVariable(sessionManagerVariable);
  if (!managers.empty()) manager = ask([managers] { return takesConnection(managers); });
  const std::string bus = sessionBusAddress();
  if (!bus.empty()) {
    session = askOnBus(bus, busCall("GetId"), seconds);
    accessibility = askOnBus(bus, accessibilityQuestion(), seconds);
    globalMenu = askOnBus(bus, globalMenuQuestion(), seconds);
  }
  return {.manager = isTrue(std::move(manager)),
          .bus = isTrue(std::move(session)),
          .accessibility = isTrue(std::move(accessibility)),
          .globalMenu = isTrue(std::move(globalMenu))};
}

QtWithout::QtWithout(const SessionServices& services) {
  const auto say = [](const char* which) {
    trace(TraceTopic::start, [&] { return std::string(which) + " does not answer: left out"; });
  };
  if (!services.manager) {
    say("the session manager");
    sessionManager_.set(sessionManagerVariable, nullptr);
  }
  if (!services.bus) {
    say("the session bus");
    sessionBus_.set(sessionBusVariable, nowhere);
    return;
  }
  if (!services.accessibility) {
    say("org.a11y.Bus");
    accessibilityBus_.set(accessibilityBusVariable, nowhere);
  }
  if (!services.globalMenu) {
    say("com.canonical.AppMenu.Registrar");
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
  }
}

QtWithout::~QtWithout() {
  QDBusConnection::sessionBus();
  QAccessible::isActive();
}

void QtWithout::Variable::set(const char* name, const char* value) {
  name_ = name;
  if (const char* const former = std::getenv(name)) former_ = former;
  if (value != nullptr) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
}

QtWithout::Variable::~Variable() {
  if (name_ == nullptr) return;
  if (former_) {
    setenv(name_, former_->c_str(), 1);
  } else {
    unsetenv(name_);
  }
}

}  // namespace vistrel::platform::linux_desktop
