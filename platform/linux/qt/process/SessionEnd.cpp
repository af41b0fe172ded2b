#include "platform/linux/qt/process/SessionEnd.h"

#include <QGuiApplication>
#include <X11/SM/SMlib.h>
#include <array>
#include <cstdlib>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

/// The connection of which a break is no reason to end the program, as the library would.
IceConn forgiven = nullptr;
IceIOErrorHandler former = nullptr;

void receiveBreak(IceConn connection) {
  if (connection != forgiven && former != nullptr) former(connection);
}

void setProperty(SmcConn connection, const char* name, const char* type, std::string value) {
  SmPropValue content{static_cast<int>(value.size()), value.data()};
  std::string itsName = name;
  std::string itsType = type;
  SmProp property{itsName.data(), itsType.data(), 1, &content};
  SmProp* all = &property;
  SmcSetProperties(connection, 1, &all);
}

/// The toolkit's client is the one that the session starts again (XSMP 1.0, "Predefined
/// Properties").
void introduce(SmcConn connection) {
  setProperty(connection, SmProgram, SmARRAY8, "vistrel");
  setProperty(connection, SmUserID, SmARRAY8, std::to_string(getuid()));
  setProperty(connection, SmRestartStyleHint, SmCARD8, std::string(1, char{SmRestartNever}));
}

}  // namespace

struct SessionEnd::Client {
  explicit Client(Callbacks itsCallbacks) : callbacks(std::move(itsCallbacks)) {}
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client() { leave(); }

  void enter();
  void receive();
  void leave();

  static Client& of(SmPointer data) { return *static_cast<Client*>(data); }
  static void saveYourself(SmcConn connection, SmPointer data, int /*type*/, int /*shutdown*/,
                           int /*interactStyle*/, int /*fast*/) {
    introduce(connection);
    of(data).callbacks.saving();
    SmcSaveYourselfDone(connection, True);
  }
  /// The toolkit is told too, and ends the program.
  static void die(SmcConn /*connection*/, SmPointer data) { of(data).isOver = true; }
  static void goOn(SmcConn /*connection*/, SmPointer data) { of(data).callbacks.goesOn(); }

  const Callbacks callbacks;
  SmcConn connection = nullptr;
  std::optional<QSocketNotifier> incoming;
  bool isOver = false;
};

void SessionEnd::Client::enter() {
  // The toolkit has none either, or goes without one that does not answer.
  if (qGuiApp->sessionId().isEmpty()) return;
  SmcCallbacks calls{};
  calls.save_yourself = {saveYourself, this};
  calls.die = {die, this};
  calls.save_complete = {goOn, this};
  calls.shutdown_cancelled = {goOn, this};
  constexpr unsigned long all = SmcSaveYourselfProcMask | SmcDieProcMask | SmcSaveCompleteProcMask |
                                SmcShutdownCancelledProcMask;
  std::array<char, 256> failure{};
  char* name = nullptr;
  connection = SmcOpenConnection(nullptr, this, SmProtoMajor, SmProtoMinor, all, &calls, nullptr,
                                 &name, failure.size(), failure.data());
  std::free(name);
  if (connection == nullptr) return;
  forgiven = SmcGetIceConnection(connection);
  former = IceSetIOErrorHandler(receiveBreak);
  incoming.emplace(IceConnectionNumber(forgiven), QSocketNotifier::Read);
  QObject::connect(&*incoming, &QSocketNotifier::activated, &*incoming, [this] { receive(); });
}

void SessionEnd::Client::receive() {
  const auto status = IceProcessMessages(SmcGetIceConnection(connection), nullptr, nullptr);
  isOver = isOver || status != IceProcessMessagesSuccess;
  // It is the one that called.
  if (isOver) incoming->setEnabled(false);
}

void SessionEnd::Client::leave() {
  if (connection == nullptr) return;
  incoming.reset();
  // Nobody is waited for.
  IceSetShutdownNegotiation(SmcGetIceConnection(connection), False);
  SmcCloseConnection(connection, 0, nullptr);
  IceSetIOErrorHandler(former);
  connection = nullptr;
  forgiven = nullptr;
}

SessionEnd::SessionEnd(Callbacks callbacks)
    : client_(std::make_unique<Client>(std::move(callbacks))) {
  client_->enter();
}

SessionEnd::~SessionEnd() = default;

}  // namespace vistrel::platform::linux_desktop
