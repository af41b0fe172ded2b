#include "platform/linux/Trace.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::array<std::pair<std::string_view, TraceTopic>, 6> topicsByName = {{
    {"capture", TraceTopic::capture},
    {"errors", TraceTopic::errors},
    {"manager", TraceTopic::manager},
    {"monitors", TraceTopic::monitors},
    {"start", TraceTopic::start},
    {"tray", TraceTopic::tray},
}};

constexpr unsigned bitOf(TraceTopic topic) { return 1U << static_cast<unsigned>(topic); }

#ifdef NDEBUG
constexpr unsigned alwaysTraced = 0;
#else
constexpr unsigned alwaysTraced = bitOf(TraceTopic::errors);
#endif

std::atomic<unsigned> traced = alwaysTraced;

std::string_view nameOf(TraceTopic topic) {
  return std::find_if(topicsByName.begin(), topicsByName.end(),
                      [&](const auto& each) { return each.second == topic; })
      ->first;
}

void ask(std::string_view name, TraceRequest& request) {
  bool isKnown = false;
  for (const auto& [known, topic] : topicsByName) {
    if (name != known && name != "all") continue;
    request.topics.insert(topic);
    isKnown = true;
  }
  if (!isKnown) request.unknown.emplace_back(name);
}

void writeLine(std::string_view text) {
  std::string line = "vistrel: " + std::string(text);
  line.resize(std::min<std::size_t>(line.size(), PIPE_BUF - 1));
  std::replace_if(
      line.begin(), line.end(),
      [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, '?');
  line += '\n';
  // The reader may be a terminal that waits for the display server, which may be ours alone just
  // now. A line that it does not take is left out.
  constexpr int patienceInMilliseconds = 100;
  pollfd reader{STDERR_FILENO, POLLOUT, 0};
  if (poll(&reader, 1, patienceInMilliseconds) <= 0) return;
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  for (const auto& each : names) list += (list.empty() ? "\"" : ", \"") + each + "\"";
  return list;
}

std::string knownNames() {
  std::string list;
  for (const auto& [name, topic] : topicsByName) list += std::string(name) + ", ";
  return list + "all";
}

}  // namespace

TraceRequest parseTraceRequest(std::string_view text) {
  constexpr std::string_view between = ", ";
  TraceRequest request;
  for (auto first = text.find_first_not_of(between); first != std::string_view::npos;
       first = text.find_first_not_of(between, first)) {
    const auto end = std::min(text.find_first_of(between, first), text.size());
    ask(text.substr(first, end - first), request);
    first = end;
  }
  return request;
}

void beginTrace(std::string_view text) {
  const auto request = parseTraceRequest(text);
  unsigned topics = alwaysTraced;
  for (const auto each : request.topics) topics |= bitOf(each);
  // Whoever reads standard error may go, which must not end the program.
  if (!request.topics.empty()) std::signal(SIGPIPE, SIG_IGN);
  traced = topics;
  if (request.unknown.empty()) return;
  writeLine("VISTREL_TRACE does not know " + listOf(request.unknown) +
            "; it knows: " + knownNames());
}

bool isTraced(TraceTopic topic) { return (traced & bitOf(topic)) != 0; }

void writeTrace(TraceTopic topic, std::string_view text) {
  writeLine(std::string(nameOf(topic)) + ": " + std::string(text));
}

std::string windowText(std::uint32_t window) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "window 0x%x", window);
  return text.data();
}

std::string areaText(const PixelRect& area) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%dx%d%+d%+d", area.width, area.height, area.x, area.y);
  return text.data();
}

}  // namespace vistrel::platform::linux_desktop
