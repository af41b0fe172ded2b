// A portal that shares windows of mutter's without a dialog; a test tells it what comes of those
// that it would open: see TestPortal.h.
// Arguments: the descriptors to read commands from and to write answers to.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <optional>
#include <poll.h>
#include <set>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <utility>

#include "tests/support/CommandPipe.h"
#include "tests/support/DBus.h"
#include "tests/support/FileDescriptor.h"

namespace vistrel::testbed {
namespace {

// Names and numbers are those of the portal's documentation (org.freedesktop.portal.ScreenCast,
// .Session and .Request) and of mutter's own interface.
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* screenCastInterface = "org.freedesktop.portal.ScreenCast";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* mutterName = "org.gnome.Mutter.ScreenCast";
constexpr const char* mutterSessionInterface = "org.gnome.Mutter.ScreenCast.Session";
constexpr const char* mutterStreamInterface = "org.gnome.Mutter.ScreenCast.Stream";

constexpr std::uint32_t done = 0;
constexpr std::uint32_t cancelled = 1;
constexpr std::uint32_t failed = 2;

constexpr std::uint32_t windowType = 2;
constexpr std::uint32_t monitorsOnly = 1;
constexpr std::uint32_t allTypes = 7;
constexpr std::uint32_t allCursorModes = 7;

int checked(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(-result, std::generic_category(), what);
  }
  return result;
}

/// What somebody asks for beside a call's arguments, by name.
struct CallOptions {
  std::map<std::string, std::string> texts;
  std::map<std::string, std::uint32_t> numbers;
};

/// Reads a dictionary of variants, one value by each call of `readValue` with its name and type.
template <class ReadValue>
void readDictionary(BusMessage& message, const ReadValue& readValue) {
  const auto readEntry = [&] {
    const std::string name = message.text();
    const char* type = nullptr;
    checked(sd_bus_message_peek_type(message.get(), nullptr, &type), "a message");
    readValue(name, std::string(type));
    return true;
  };
  message.array("{sv}", [&] { message.structure("sv", readEntry, SD_BUS_TYPE_DICT_ENTRY); });
}

CallOptions readOptions(BusMessage& message) {
  CallOptions options;
  readDictionary(message, [&](const std::string& name, const std::string& type) {
    if (type == "s") {
      options.texts[name] = message.structure(
          "s", [&] { return message.text(); }, SD_BUS_TYPE_VARIANT);
    } else if (type == "u") {
      options.numbers[name] = message.structure(
          "u", [&] { return message.number(); }, SD_BUS_TYPE_VARIANT);
    } else {
      message.skip("v");
    }
  });
  return options;
}

/// What somebody wants a stream of, and has of it.
struct Session {
  std::string owner;
  CallOptions selection;
  std::string request;  // the one that is open
  bool hasDialog = false;
  bool isToBeSharedAgain = false;
  std::optional<BusObject> cast;
  std::optional<BusObject> stream;
};

class Portal {
 public:
  Portal() {
    checked(sd_bus_add_fallback(bus_.get(), nullptr, portalPath, receive, this), "the portal");
    match(
        "type='signal',sender='org.gnome.Mutter.ScreenCast',interface='org.gnome.Mutter.ScreenCast."
        "Session'");
    match(
        "type='signal',sender='org.gnome.Mutter.ScreenCast',interface='org.gnome.Mutter.ScreenCast."
        "Stream'");
    match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged'");
    checked(sd_bus_request_name(bus_.get(), "org.freedesktop.portal.Desktop", 0),
            "the portal's name");
  }
  Portal(const Portal&) = delete;
  Portal& operator=(const Portal&) = delete;

  bool isHung() const { return isHung_; }
  sd_bus* bus() const { return bus_.get(); }

  bool hasWindowsToShareAgain() const {
    return std::ranges::any_of(sessions_,
                               [](const auto& each) { return each.second.isToBeSharedAgain; });
  }
  void shareAgain() {
    for (auto& [path, session] : sessions_) {
      if (std::exchange(session.isToBeSharedAgain, false)) {
        stop(session);
        share(session);
      }
    }
  }

  std::string obey(const std::string& line) {
    std::istringstream text(line);
    std::string command;
    std::string argument;
    text >> command >> argument;
    if (command == "count") {
      return std::to_string(count(argument));
    }
    if (command == "request") {
      return lastRequest_;
    }
    carryOut(command, argument);
    checked(sd_bus_flush(bus_.get()), "the bus");
    return "done";
  }

 private:
  void match(const char* rule) {
    checked(sd_bus_add_match(bus_.get(), nullptr, rule, hear, this), rule);
  }

  void carryOut(const std::string& command, const std::string& argument) {
    if (command == "answer") {
      answer_ = argument;
      for (auto& [path, session] : sessions_) {
        if (session.hasDialog) {
          concludeDialog(session);
        }
      }
    } else if (command == "offer") {
      types_ = argument == "1" ? allTypes : monitorsOnly;
    } else if (command == "forget") {
      tokens_.clear();
    } else if (command == "close") {
      closeSessions();
    } else if (command == "hang") {
      isHung_ = argument == "1";
    } else {
      throw std::runtime_error("no such command: " + command);
    }
  }

  int count(const std::string& what) const {
    const std::map<std::string, int> counts{
        {"asked", asked_},
        {"dialogs", static_cast<int>(std::ranges::count_if(
                        sessions_, [](const auto& each) { return each.second.hasDialog; }))},
        {"withdrawn", withdrawn_},
        {"sessions", static_cast<int>(sessions_.size())},
        {"streams", streams_}};
    return counts.at(what);
  }

  static int receive(sd_bus_message* message, void* portal, sd_bus_error* /*error*/) {
    BusMessage call(sd_bus_message_ref(message));
    try {
      return static_cast<Portal*>(portal)->serve(call);
    } catch (const std::exception& failure) {
      return sd_bus_reply_method_errorf(message, SD_BUS_ERROR_INVALID_ARGS, "%s", failure.what());
    }
  }

  /// 0 for calls of others: those that sd-bus answers itself, and those that nobody does.
  int serve(BusMessage& call) {
    const auto is = [&](const char* interface, const char* method) {
      return sd_bus_message_is_method_call(call.get(), interface, method) > 0;
    };
    if (is(properties, "Get")) return getProperty(call);
    if (is(properties, "GetAll")) return getProperties(call);
    if (is(screenCastInterface, "CreateSession")) return createSession(call);
    if (is(screenCastInterface, "SelectSources")) return selectSources(call);
    if (is(screenCastInterface, "Start")) return start(call);
    if (is(screenCastInterface, "OpenPipeWireRemote")) return openPipeWireRemote(call);
    if (is(sessionInterface, "Close")) return closeSession(call);
    if (is(requestInterface, "Close")) return closeRequest(call);
    return 0;
  }

  std::map<std::string, std::uint32_t> propertyValues() const {
    return {
        {"version", 4}, {"AvailableSourceTypes", types_}, {"AvailableCursorModes", allCursorModes}};
  }

  int getProperty(BusMessage& call) {
    call.text();
    return sd_bus_reply_method_return(call.get(), "v", "u", propertyValues().at(call.text()));
  }

  int getProperties(BusMessage& call) {
    const auto values = propertyValues();
    return sd_bus_reply_method_return(call.get(), "a{sv}", 3, "version", "u", values.at("version"),
                                      "AvailableSourceTypes", "u",
                                      values.at("AvailableSourceTypes"), "AvailableCursorModes",
                                      "u", values.at("AvailableCursorModes"));
  }

  /// The path of an object that somebody has a call make, under `kind`.
  static std::string pathFor(const BusMessage& call, const char* kind, const std::string& token) {
    std::string sender = sd_bus_message_get_sender(call.get());
    sender.erase(0, 1);
    std::ranges::replace(sender, '.', '_');
    return std::string(portalPath) + "/" + kind + "/" + sender + "/" + token;
  }

  /// Tells the caller by which request it is going to be answered.
  static std::string acceptRequest(const BusMessage& call, const CallOptions& options) {
    std::string request = pathFor(call, "request", options.texts.at("handle_token"));
    checked(sd_bus_reply_method_return(call.get(), "o", request.c_str()), "a reply");
    return request;
  }

  template <class... Results>
  void respond(const std::string& request, std::uint32_t code, const char* types,
               Results... results) {
    sd_bus_message* raw = nullptr;
    checked(
        sd_bus_message_new_signal(bus_.get(), &raw, request.c_str(), requestInterface, "Response"),
        "a response");
    const BusMessage response(raw);
    checked(sd_bus_message_append(raw, types, code, results...), types);
    checked(sd_bus_send(bus_.get(), raw, nullptr), "a response");
  }
  void respond(const std::string& request, std::uint32_t code) {
    respond(request, code, "ua{sv}", 0);
  }

  int createSession(BusMessage& call) {
    const CallOptions options = readOptions(call);
    const std::string path = pathFor(call, "session", options.texts.at("session_handle_token"));
    const std::string request = acceptRequest(call, options);
    sessions_[path].owner = sd_bus_message_get_sender(call.get());
    respond(request, done, "ua{sv}", 1, "session_handle", "s", path.c_str());
    return 1;
  }

  int selectSources(BusMessage& call) {
    Session& session = sessions_.at(call.path());
    const CallOptions options = readOptions(call);
    const auto types = options.numbers.find("types");
    if (types != options.numbers.end() && (types->second & ~types_) != 0) {
      throw std::runtime_error("Unsupported source types");
    }
    session.selection = options;
    respond(acceptRequest(call, options), done);
    return 1;
  }

  int start(BusMessage& call) {
    Session& session = sessions_.at(call.path());
    const std::string parent = call.text();
    session.request = acceptRequest(call, readOptions(call));
    note(session, parent);
    const auto token = session.selection.texts.find("restore_token");
    if (token != session.selection.texts.end() && tokens_.erase(token->second) > 0) {
      share(session);
    } else {
      ++asked_;
      session.hasDialog = true;
      concludeDialog(session);
    }
    return 1;
  }

  void note(const Session& session, const std::string& parent) {
    const auto number = [&](const char* name) {
      const auto found = session.selection.numbers.find(name);
      return std::to_string(found == session.selection.numbers.end() ? 0 : found->second);
    };
    lastRequest_ = number("types") + ' ' + number("cursor_mode") + ' ' + number("persist_mode") +
                   ' ' + std::to_string(session.selection.texts.count("restore_token")) + ' ' +
                   parent;
  }

  void concludeDialog(Session& session) {
    if (answer_ == "none") {
      return;
    }
    session.hasDialog = false;
    if (answer_ == "pick") {
      share(session);
    } else {
      respond(std::exchange(session.request, {}), answer_ == "cancel" ? cancelled : failed);
    }
  }

  /// Has mutter stream the window that has the keyboard, sooner or later: when a menu closes, none
  /// has it for a moment, or one that is about to go.
  void share(Session& session) {
    const auto asked = session.selection.numbers.find("cursor_mode");
    // Of the portal 1, 2 and 4, of mutter 0, 1 and 2.
    const std::uint32_t cursorMode =
        asked == session.selection.numbers.end() ? 0 : asked->second / 2;
    try {
      const BusObject mutter(bus_, mutterName, "/org/gnome/Mutter/ScreenCast");
      session.cast.emplace(bus_, mutterName,
                           mutter.call(mutterName, "CreateSession", "a{sv}", 0).path());
      session.stream.emplace(bus_, mutterName,
                             session.cast
                                 ->call(mutterSessionInterface, "RecordWindow", "a{sv}", 1,
                                        "cursor-mode", "u", cursorMode)
                                 .path());
      session.cast->call(mutterSessionInterface, "Start");
    } catch (const BusError&) {
      session.isToBeSharedAgain = true;
    }
  }

  int openPipeWireRemote(BusMessage& call) {
    const std::string path = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/pipewire-0";
    const FileDescriptor remote(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    if (::connect(remote.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      throw std::system_error(errno, std::generic_category(), path);
    }
    return sd_bus_reply_method_return(call.get(), "h", remote.get());
  }

  int closeSession(BusMessage& call) {
    end(sessions_.find(sd_bus_message_get_path(call.get())));
    return sd_bus_reply_method_return(call.get(), nullptr);
  }

  int closeRequest(BusMessage& call) {
    const std::string request = sd_bus_message_get_path(call.get());
    for (auto& [path, session] : sessions_) {
      if (session.request == request) {
        session.request.clear();
        session.isToBeSharedAgain = false;
        withdrawn_ += std::exchange(session.hasDialog, false) ? 1 : 0;
      }
    }
    return sd_bus_reply_method_return(call.get(), nullptr);
  }

  using Sessions = std::map<std::string, Session>;

  /// The one after it.
  Sessions::iterator end(Sessions::iterator session) {
    if (session == sessions_.end()) {
      return session;
    }
    withdrawn_ += session->second.hasDialog ? 1 : 0;
    stop(session->second);
    return sessions_.erase(session);
  }

  static void stop(Session& session) {
    try {
      if (session.cast) session.cast->call(mutterSessionInterface, "Stop");
    } catch (const BusError&) {  // it may have ended, and mutter itself
    }
    session.cast.reset();
  }

  /// By another's will than that of its owner, who is told.
  Sessions::iterator close(Sessions::iterator session) {
    checked(sd_bus_emit_signal(bus_.get(), session->first.c_str(), sessionInterface, "Closed",
                               "a{sv}", 0),
            "a signal");
    return end(session);
  }

  void closeSessions() {
    for (auto each = sessions_.begin(); each != sessions_.end();) {
      each = close(each);
    }
  }

  static int hear(sd_bus_message* message, void* portal, sd_bus_error* /*error*/) {
    BusMessage signal(sd_bus_message_ref(message));
    static_cast<Portal*>(portal)->heed(signal);
    return 0;
  }

  void heed(BusMessage& signal) {
    const std::string path = sd_bus_message_get_path(signal.get());
    if (sd_bus_message_is_signal(signal.get(), mutterStreamInterface, "PipeWireStreamAdded") > 0) {
      const auto session = std::ranges::find_if(sessions_, [&](const auto& each) {
        return each.second.stream && each.second.stream->path() == path;
      });
      if (session != sessions_.end()) {
        try {
          tellStream(session->second, signal.number());
        } catch (const BusError&) {  // the stream has gone meanwhile
          session->second.isToBeSharedAgain = true;
        }
      }
    } else if (sd_bus_message_is_signal(signal.get(), mutterSessionInterface, "Closed") > 0) {
      const auto session = std::ranges::find_if(sessions_, [&](const auto& each) {
        return each.second.cast && each.second.cast->path() == path;
      });
      if (session == sessions_.end()) {
        return;
      }
      session->second.cast.reset();
      if (session->second.request.empty()) {
        close(session);
      } else {
        session->second.isToBeSharedAgain = true;
      }
    } else if (sd_bus_message_is_signal(signal.get(), nullptr, "NameOwnerChanged") > 0) {
      heedOwner(signal);
    }
  }

  /// Sessions end with who has asked for them and with who streams.
  void heedOwner(BusMessage& signal) {
    const std::string name = signal.text();
    signal.skip("s");
    if (!signal.text().empty()) {
      return;
    }
    if (name == mutterName) {
      closeSessions();
    }
    for (auto each = sessions_.begin(); each != sessions_.end();) {
      each = each->second.owner == name ? end(each) : std::next(each);
    }
  }

  void tellStream(Session& session, std::uint32_t node) {
    const auto [width, height] = sizeOf(*session.stream);
    ++streams_;
    const std::string request = std::exchange(session.request, {});
    const auto persistMode = session.selection.numbers.find("persist_mode");
    if (persistMode == session.selection.numbers.end() || persistMode->second == 0) {
      respond(request, done, "ua{sv}", 1, "streams", "a(ua{sv})", 1, node, 2, "source_type", "u",
              windowType, "size", "(ii)", width, height);
      return;
    }
    const std::string token = "token-" + std::to_string(++givenTokens_);
    tokens_.insert(token);
    respond(request, done, "ua{sv}", 3, "streams", "a(ua{sv})", 1, node, 2, "source_type", "u",
            windowType, "size", "(ii)", width, height, "restore_token", "s", token.c_str(),
            "persist_mode", "u", persistMode->second);
  }

  /// The monitor's, as mutter has it for windows too.
  static std::pair<int, int> sizeOf(const BusObject& stream) {
    BusMessage answer = stream.call(properties, "Get", "ss", mutterStreamInterface, "Parameters");
    std::pair<int, int> size;
    const auto readSize = [&] {
      return answer.structure("ii", [&] {
        const int width = answer.signedNumber();
        return std::pair(width, static_cast<int>(answer.signedNumber()));
      });
    };
    const auto readAll = [&] {
      readDictionary(answer, [&](const std::string& name, const std::string& /*type*/) {
        if (name == "size") {
          size = answer.structure("(ii)", readSize, SD_BUS_TYPE_VARIANT);
        } else {
          answer.skip("v");
        }
      });
      return true;
    };
    answer.structure("a{sv}", readAll, SD_BUS_TYPE_VARIANT);
    return size;
  }

  const BusConnection bus_ = connectToBus(std::getenv("DBUS_SESSION_BUS_ADDRESS"));
  Sessions sessions_;  // by path
  std::set<std::string> tokens_;
  std::string answer_ = "pick";
  std::string lastRequest_ = "0 0 0 0 ";
  std::uint32_t types_ = allTypes;
  bool isHung_ = false;
  int asked_ = 0;
  int withdrawn_ = 0;
  int streams_ = 0;
  int givenTokens_ = 0;
};

/// Obeys until there are no commands any more, and answers the bus meanwhile.
void serve(Portal& portal, CommandPipe commands) {
  const auto obey = [&](const std::string& line) { return portal.obey(line); };
  for (;;) {
    while (!portal.isHung() && checked(sd_bus_process(portal.bus(), nullptr), "the bus") > 0) {
    }
    std::array<pollfd, 2> waited{pollfd{commands.descriptor(), POLLIN, 0},
                                 pollfd{checked(sd_bus_get_fd(portal.bus()), "the bus"),
                                        static_cast<short>(sd_bus_get_events(portal.bus())), 0}};
    // Of the two, a hung portal waits for the first one alone.
    constexpr int milliseconds = 20;
    if (::poll(waited.data(), portal.isHung() ? 1 : 2,
               portal.hasWindowsToShareAgain() ? milliseconds : -1) < 0) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    if (!portal.isHung()) {
      portal.shareAgain();
    }
    if (waited[0].revents != 0 && !commands.serve(obey)) {
      return;
    }
  }
}

}  // namespace
}  // namespace vistrel::testbed

int main(int argc, char** argv) {
  if (argc != 3) {
    return 2;
  }
  try {
    vistrel::testbed::Portal portal;
    vistrel::testbed::serve(portal, {std::atoi(argv[1]), std::atoi(argv[2])});
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
