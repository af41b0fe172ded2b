#include "platform/linux/wayland/kwin/KWinScripts.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string_view>
#include <systemd/sd-bus.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/linux/Environment.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr const char* kwin = "org.kde.KWin";
constexpr const char* scriptingPath = "/Scripting";
constexpr const char* scripting = "org.kde.kwin.Scripting";
constexpr const char* script = "org.kde.kwin.Script";
constexpr const char* answering = "com.tollbeck.vistrel.Script";

using Message = std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)>;
using Slot = std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)>;

/// KWin 5.27 calls windows clients, desktops are numbers there, and of what belongs to a client it
/// tells the buffer alone, cut to whole pixels and with the shadows that a client draws around
/// itself.
constexpr std::string_view prelude = R"(
var told = '';
function tell(text) { told += text + '\n'; }
function all() { return workspace.windowList ? workspace.windowList() : workspace.clientList(); }
function find(uuid) { return all().filter(function (each) { return String(each.internalId) == uuid; })[0]; }
function inside(each) {
  if (each.clientGeometry) return each.clientGeometry;
  var frame = each.frameGeometry, buffer = each.bufferGeometry;
  var wide = Math.max(0, frame.width - buffer.width), high = Math.max(0, frame.height - buffer.height);
  return {x: frame.x + Math.min(wide, Math.max(0, buffer.x - Math.trunc(frame.x))),
          y: frame.y + Math.min(high, Math.max(0, buffer.y - Math.trunc(frame.y))),
          width: frame.width - wide, height: frame.height - high};
}
function isShown(each) {
  return each.onAllDesktops || each.desktop === workspace.currentDesktop ||
         (each.desktops || []).indexOf(workspace.currentDesktop) >= 0;
}
function activate(each) {
  if (workspace.activeWindow === undefined) workspace.activeClient = each;
  else workspace.activeWindow = each;
}
)";

/// A file for KWin to read a script from, gone with this object.
class ScriptFile {
 public:
  explicit ScriptFile(std::string_view text) {
    auto directory = environmentVariable("XDG_RUNTIME_DIR");
    if (directory.empty()) directory = std::filesystem::temp_directory_path();
    path_ = directory + "/vistrel-XXXXXX.js";
    constexpr int suffix = 3;
    const int file = mkstemps(path_.data(), suffix);
    if (file < 0) return;
    isWhole_ = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
  }
  ScriptFile(const ScriptFile&) = delete;
  ScriptFile& operator=(const ScriptFile&) = delete;
  ~ScriptFile() { unlink(path_.c_str()); }

  bool isWhole() const { return isWhole_; }
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_;
  bool isWhole_ = false;
};

/// Held while a script of this process is at KWin.
std::timed_mutex& running() {
  static std::timed_mutex mutex;
  return mutex;
}

struct Answer {
  std::string path;  // what it is called at, other than that of any other script
  std::optional<std::string> text;
  bool isThere = false;
};

/// Takes what a script of ours calls. Nobody else knows the name that it calls.
int takeAnswer(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
  if (sd_bus_message_is_method_call(message, answering, nullptr) == 0) return 0;
  auto& answer = *static_cast<Answer*>(data);
  // An earlier one may be carried out after nobody waits for it any more.
  if (sd_bus_message_get_path(message) != answer.path) {
    return sd_bus_reply_method_return(message, nullptr);
  }
  const char* text = nullptr;
  if (sd_bus_message_is_method_call(message, answering, "Answer") != 0 &&
      sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text) > 0) {
    answer.text = text;
  }
  answer.isThere = true;
  return sd_bus_reply_method_return(message, nullptr);
}

std::string wholeScript(const std::string& javaScript, const char* asker, const std::string& path) {
  const auto call = [&](const std::string& method, const std::string& arguments) {
    return "callDBus(" + scriptLiteral(asker) + ", '" + path + "', '" + answering + "', '" +
           method + "', " + arguments + ");";
  };
  return std::string(prelude) + "try {\n" + javaScript + "\n" + call("Answer", "told") +
         "\n} catch (failure) { " + call("Failure", "String(failure)") + " }\n";
}

std::uint64_t microsecondsUntil(double deadline) {
  constexpr double second = 1e6;
  // 0 would stand for the library's own patience.
  return static_cast<std::uint64_t>(std::max(1., (deadline - monotonicNow()) * second));
}

/// Null when it fails.
Message call(sd_bus* bus, const char* path, const char* interface, const char* method,
             double deadline, const char* types = "", const char* first = nullptr,
             const char* second = nullptr) {
  sd_bus_message* raw = nullptr;
  sd_bus_message_new_method_call(bus, &raw, kwin, path, interface, method);
  const Message message(raw, sd_bus_message_unref);
  if (!message) return {nullptr, sd_bus_message_unref};
  sd_bus_message_append(raw, types, first, second);
  sd_bus_message* reply = nullptr;
  sd_bus_call(bus, raw, microsecondsUntil(deadline), nullptr, &reply);
  return {reply, sd_bus_message_unref};
}

/// A script that KWin has, until this object goes.
class LoadedScript {
 public:
  LoadedScript(sd_bus* bus, const char* path, double deadline)
      : bus_(bus), deadline_(deadline), name_(nextName()) {
    const auto reply =
        call(bus, scriptingPath, scripting, "loadScript", deadline, "ss", path, name_.c_str());
    std::int32_t number = -1;
    if (reply && sd_bus_message_read_basic(reply.get(), SD_BUS_TYPE_INT32, &number) > 0) {
      number_ = number;
    }
  }
  LoadedScript(LoadedScript&& other) noexcept
      : bus_(std::exchange(other.bus_, nullptr)),
        deadline_(other.deadline_),
        name_(std::move(other.name_)),
        number_(other.number_) {}
  LoadedScript& operator=(LoadedScript&&) = delete;
  ~LoadedScript() {
    if (bus_ == nullptr) return;
    call(bus_, scriptingPath, scripting, "unloadScript", deadline_, "s", name_.c_str());
  }

  /// None where KWin takes no scripts.
  std::optional<std::int32_t> number() const { return number_; }

 private:
  static std::string nextName() {
    static std::atomic<int> scripts = 0;
    return "vistrel-" + std::to_string(getpid()) + "-" + std::to_string(++scripts);
  }

  sd_bus* bus_;
  double deadline_;
  std::string name_;
  std::optional<std::int32_t> number_;
};

/// KWin 5.27 has its scripts at the root, KWin 6 below its scripting.
bool start(sd_bus* bus, std::int32_t number, double deadline) {
  const auto name = std::to_string(number);
  const auto atRoot = std::string("/").append(name);
  const auto below = std::string(scriptingPath).append("/Script").append(name);
  return call(bus, below.c_str(), script, "run", deadline) ||
         call(bus, atRoot.c_str(), script, "run", deadline);
}

void awaitAnswer(sd_bus* bus, const Answer& answer, double deadline) {
  while (!answer.isThere && monotonicNow() < deadline) {
    const int processed = sd_bus_process(bus, nullptr);
    if (processed < 0) return;
    if (processed == 0) sd_bus_wait(bus, microsecondsUntil(deadline));
  }
}

}  // namespace

std::string scriptLiteral(const std::string& text) {
  std::string literal = "'";
  for (const char each : text) {
    if (each == '\'' || each == '\\') literal += '\\';
    if (each != '\n') literal += each;
  }
  return literal + "'";
}

void KWinScripts::Close::operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }

bool KWinScripts::connect() {
  if (bus_ && sd_bus_is_open(bus_.get()) > 0) return true;
  sd_bus* bus = nullptr;
  sd_bus_open_user(&bus);
  bus_.reset(bus);
  return bus_ != nullptr;
}

std::optional<std::string> KWinScripts::run(const std::string& javaScript, double deadline) {
  const char* ownName = nullptr;
  if (!connect() || sd_bus_get_unique_name(bus_.get(), &ownName) < 0) return std::nullopt;
  static std::atomic<int> scripts = 0;
  Answer answer{.path = "/Script" + std::to_string(++scripts)};
  const ScriptFile file(wholeScript(javaScript, ownName, answer.path));
  if (!file.isWhole()) return std::nullopt;

  // KWin may mix up scripts that are loaded at the same time, and is asked from several threads.
  const std::chrono::duration<double> left(deadline - monotonicNow());
  const std::unique_lock turn(running(), left);
  sd_bus_slot* raw = nullptr;
  sd_bus_add_filter(bus_.get(), &raw, takeAnswer, &answer);
  const Slot filter(raw, sd_bus_slot_unref);
  // KWin 5.27 numbers a script by how many there are, so that another program's may have that
  // number already: ours cannot be reached then, and the next one gets another number.
  std::vector<LoadedScript> loaded;
  for (double patience = 0.25; !answer.isThere && monotonicNow() < deadline; patience *= 2) {
    loaded.emplace_back(bus_.get(), file.path(), deadline);
    if (!loaded.back().number()) break;
    const double end = std::min(deadline, monotonicNow() + patience);
    if (start(bus_.get(), *loaded.back().number(), end)) awaitAnswer(bus_.get(), answer, end);
  }
  if (!answer.text) trace(TraceTopic::manager, [] { return "KWin does not carry a script out"; });
  return answer.text;
}

}  // namespace vistrel::platform::linux_desktop
