#include "tests/architecture/IncludeRules.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>

namespace vistrel::architecture {
namespace {

constexpr std::array<std::string_view, 6> roomsFromTheTop = {"app",    "picker",  "catalogue",
                                                             "mirror", "parking", "platform"};

/// The rooms of a half of the Linux backend, or of the macOS backend, which is one half; each with
/// the rooms that it stands on: those are all that it may include of its half. A room without a
/// name is the half's root.
using Rooms = std::map<std::string_view, std::set<std::string_view>>;

const std::map<std::string_view, Rooms> roomsOfHalves = {
    {"x11",
     {
         {"server", {}},
         {"manager", {"server"}},
         {"picture", {"server"}},
         {"listing", {"manager", "server"}},
         {"source", {"manager", "picture", "server"}},
         {"panel", {"manager", "picture", "server"}},
         {"stream", {"panel", "picture", "server", "source"}},
         {"monitors", {"manager", "server"}},
         {"parking", {"manager", "server"}},
         {"guard", {"monitors", "parking", "server"}},
         {"instance", {"server"}},
     }},
    {"qt",
     {
         {"space", {}},
         {"paint", {"space"}},
         {"menus", {"paint", "space"}},
         {"tray", {"menus", "paint", "space"}},
         {"windows", {"menus"}},
         {"panel", {"menus", "paint", "space", "windows"}},
         {"widgets", {"menus", "paint", "space", "windows"}},
         {"process", {"windows"}},
     }},
    {"wayland",
     {
         {"compositor", {}},
         {"stream", {}},
         {"kwin", {"compositor", "stream"}},
         {"portal", {"compositor", "stream"}},
     }},
    {"macos",
     {
         {"", {}},
         {"accessibility", {""}},
         {"capture", {""}},
         {"displays", {""}},
         {"menus", {""}},
         {"workspace", {""}},
         {"views", {"", "capture", "menus"}},
         {"windows", {"", "menus", "views"}},
         {"application",
          {"", "accessibility", "capture", "displays", "menus", "views", "windows", "workspace"}},
     }},
};

/// C++20, without the names that C gives its headers.
const std::set<std::string_view> standardHeaders = {"algorithm",
                                                    "any",
                                                    "array",
                                                    "atomic",
                                                    "barrier",
                                                    "bit",
                                                    "bitset",
                                                    "cassert",
                                                    "cctype",
                                                    "cerrno",
                                                    "cfenv",
                                                    "cfloat",
                                                    "charconv",
                                                    "chrono",
                                                    "cinttypes",
                                                    "climits",
                                                    "clocale",
                                                    "cmath",
                                                    "codecvt",
                                                    "compare",
                                                    "complex",
                                                    "concepts",
                                                    "condition_variable",
                                                    "coroutine",
                                                    "csetjmp",
                                                    "csignal",
                                                    "cstdarg",
                                                    "cstddef",
                                                    "cstdint",
                                                    "cstdio",
                                                    "cstdlib",
                                                    "cstring",
                                                    "ctime",
                                                    "cuchar",
                                                    "cwchar",
                                                    "cwctype",
                                                    "deque",
                                                    "exception",
                                                    "execution",
                                                    "filesystem",
                                                    "format",
                                                    "forward_list",
                                                    "fstream",
                                                    "functional",
                                                    "future",
                                                    "initializer_list",
                                                    "iomanip",
                                                    "ios",
                                                    "iosfwd",
                                                    "iostream",
                                                    "istream",
                                                    "iterator",
                                                    "latch",
                                                    "limits",
                                                    "list",
                                                    "locale",
                                                    "map",
                                                    "memory",
                                                    "memory_resource",
                                                    "mutex",
                                                    "new",
                                                    "numbers",
                                                    "numeric",
                                                    "optional",
                                                    "ostream",
                                                    "queue",
                                                    "random",
                                                    "ranges",
                                                    "ratio",
                                                    "regex",
                                                    "scoped_allocator",
                                                    "semaphore",
                                                    "set",
                                                    "shared_mutex",
                                                    "source_location",
                                                    "span",
                                                    "sstream",
                                                    "stack",
                                                    "stdexcept",
                                                    "stop_token",
                                                    "streambuf",
                                                    "string",
                                                    "string_view",
                                                    "strstream",
                                                    "syncstream",
                                                    "system_error",
                                                    "thread",
                                                    "tuple",
                                                    "type_traits",
                                                    "typeindex",
                                                    "typeinfo",
                                                    "unordered_map",
                                                    "unordered_set",
                                                    "utility",
                                                    "valarray",
                                                    "variant",
                                                    "vector",
                                                    "version"};

std::vector<std::string> foldersOf(const std::string& path) {
  std::vector<std::string> parts;
  std::istringstream stream(path);
  for (std::string part; std::getline(stream, part, '/');) parts.push_back(part);
  parts.pop_back();
  return parts;
}

/// Where a file lives. Folders that are missing are empty.
struct Place {
  std::optional<std::size_t> room;  // index into roomsFromTheTop
  std::string backend;              // the folder in platform/
  std::string half;                 // the folder in the backend
  std::string roomOfHalf;           // the folder in the half
};

Place placeOf(const std::string& path) {
  const auto folders = foldersOf(path);
  Place place;
  if (folders.empty()) return place;
  const auto found = std::find(roomsFromTheTop.begin(), roomsFromTheTop.end(), folders[0]);
  if (found == roomsFromTheTop.end()) return place;
  place.room = static_cast<std::size_t>(found - roomsFromTheTop.begin());
  if (folders[0] == "platform" && folders.size() > 1) place.backend = folders[1];
  if (place.backend == "macos") {
    place.half = place.backend;
    if (folders.size() > 2) place.roomOfHalf = folders[2];
    return place;
  }
  if (folders[0] == "platform" && folders.size() > 2) place.half = folders[2];
  if (folders[0] == "platform" && folders.size() > 3) place.roomOfHalf = folders[3];
  return place;
}

bool isHalf(const Place& place) {
  return place.backend == "linux" &&
         (place.half == "qt" || place.half == "x11" || place.half == "wayland");
}

/// Whether one half of the Linux backend includes what it may not know of another. The Wayland half
/// brings pictures of windows into X11's panels, and the module that it is takes those rooms from
/// the program.
bool knowsAnotherHalf(const Place& from, const Place& to) {
  static const std::set<std::string_view> roomsForWayland = {"server", "picture", "source"};
  if (!isHalf(from) || !isHalf(to) || from.half == to.half) return false;
  return from.half != "wayland" || to.half != "x11" || !roomsForWayland.contains(to.roomOfHalf);
}

/// The providers of a session: the same whatever display system fills them in.
bool isProvider(const Place& place) { return place.backend == "linux" && place.half == "session"; }

bool isInUnknownRoom(const Place& place) {
  const auto half = roomsOfHalves.find(place.half);
  return half != roomsOfHalves.end() && !place.roomOfHalf.empty() &&
         !half->second.contains(place.roomOfHalf);
}

/// Whether one room of a half includes another that it does not stand on. A root that is no room
/// puts the others together: it includes them all, and none includes it.
bool leavesItsRoomUpward(const Place& from, const Place& to) {
  if (to.half != from.half || to.roomOfHalf == from.roomOfHalf) return false;
  const auto half = roomsOfHalves.find(from.half);
  if (half == roomsOfHalves.end()) return false;
  const auto room = half->second.find(from.roomOfHalf);
  return room != half->second.end() && !room->second.contains(to.roomOfHalf);
}

/// The rule that an include breaks, if any.
std::optional<std::string> brokenRule(const Place& from, const std::string& included,
                                      bool isQuoted) {
  if (isInUnknownRoom(from)) return "a new room says what it stands on";
  const bool isBackend = !from.backend.empty();
  const Place to = placeOf(included);
  if (!to.room) {
    if (isQuoted) return "write includes of our own from the project root";
    if (isProvider(from) && !standardHeaders.contains(included)) {
      return "a provider knows no display system";
    }
    if (!isBackend && !standardHeaders.contains(included)) {
      return "the core includes the C++ standard library alone";
    }
    return std::nullopt;
  }
  if (isBackend && to.backend.empty() && *to.room != *from.room) {
    return "a backend knows nothing of the core";
  }
  if (*to.room < *from.room) return "arrows run down only";
  if (isProvider(from) && isHalf(to)) {
    return "a provider knows no display system";
  }
  if (knowsAnotherHalf(from, to)) return "the halves of a backend do not know each other";
  if (!to.backend.empty() && to.backend != from.backend) {
    return "a backend is known to itself alone";
  }
  if (leavesItsRoomUpward(from, to)) return "a room includes the rooms that it stands on";
  return std::nullopt;
}

}  // namespace

std::vector<Violation> includeViolations(const std::string& file, const std::string& text) {
  static const std::regex includeLine(R"(^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"])");
  const Place from = placeOf(file);
  std::vector<Violation> violations;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::smatch match;
    if (!std::regex_search(line, match, includeLine)) continue;
    if (auto rule = brokenRule(from, match[2], match[1] == "\"")) {
      violations.push_back({file, match[2], *rule});
    }
  }
  return violations;
}

}  // namespace vistrel::architecture
