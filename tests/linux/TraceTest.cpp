#include <array>
#include <climits>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

using enum TraceTopic;
using Topics = std::set<TraceTopic>;
using Names = std::vector<std::string>;

constexpr std::string_view nothing;

TEST(TraceRequest, NamesTopicsBetweenCommasOrBlanks) {
  EXPECT_EQ(parseTraceRequest("capture,tray").topics, (Topics{capture, tray}));
  EXPECT_EQ(parseTraceRequest(" ,manager, start,,").topics, (Topics{manager, start}));
  EXPECT_EQ(parseTraceRequest("").topics, Topics{});
}

TEST(TraceRequest, AllAreAllTopics) {
  EXPECT_EQ(parseTraceRequest("all").topics,
            (Topics{capture, errors, manager, monitors, start, tray}));
  EXPECT_EQ(parseTraceRequest("all").unknown, Names{});
}

TEST(TraceRequest, KeepsUnknownNamesApart) {
  const auto request = parseTraceRequest("trays,monitors,All,1");
  EXPECT_EQ(request.topics, Topics{monitors});
  EXPECT_EQ(request.unknown, (Names{"trays", "All", "1"}));
}

/// What goes to standard error.
class Trace : public ::testing::Test {
 protected:
  ~Trace() override { beginTrace(nothing); }

  template <class Work>
  static std::string written(const Work& work) {
    ::testing::internal::CaptureStderr();
    work();
    return ::testing::internal::GetCapturedStderr();
  }
};

TEST_F(Trace, ComputesNothingWhileTheTopicIsOff) {
  int timesMade = 0;
  const auto text = [&] {
    ++timesMade;
    return "text";
  };
  EXPECT_EQ(written([&] { trace(manager, text); }), "");
  EXPECT_EQ(written([&] {
              beginTrace("capture,tray");
              trace(manager, text);
            }),
            "");
  EXPECT_EQ(timesMade, 0);
  EXPECT_EQ(written([&] {
              beginTrace("manager");
              trace(manager, text);
            }),
            "vistrel: manager: text\n");
  EXPECT_EQ(timesMade, 1);
}

TEST_F(Trace, TellsOnceOfUnknownNames) {
  EXPECT_EQ(written([] { beginTrace("window,start,\x1b[2J"); }),
            "vistrel: VISTREL_TRACE does not know \"window\", \"?[2J\"; it knows: capture, errors, "
            "manager, monitors, start, tray, all\n");
}

TEST_F(Trace, IsALineWhateverTheTextHolds) {
  EXPECT_EQ(written([] {
              beginTrace("all");
              trace(tray, [] { return "a\nb\tc\x7f \xc3\xa9"; });
            }),
            "vistrel: tray: a?b?c? \xc3\xa9\n");
}

TEST_F(Trace, LinesOfSeveralThreadsDoNotMix) {
  const std::string text(5000, 'x');
  const auto all = written([&] {
    beginTrace("capture");
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        for (int line = 0; line < 50; ++line) trace(capture, [&] { return text; });
      });
    }
  });
  const auto line = written([&] { trace(capture, [&] { return text; }); });
  EXPECT_EQ(line.size(), std::size_t{PIPE_BUF});
  std::string expected;
  for (int i = 0; i < 4 * 50; ++i) expected += line;
  EXPECT_EQ(all, expected);
}

TEST_F(Trace, WaitsForNobodyWhoReadsNothing) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
  while (write(ends[1], "x", 1) == 1) continue;
  ASSERT_EQ(fcntl(ends[1], F_SETFL, 0), 0);
  const int standardError = dup(STDERR_FILENO);
  dup2(ends[1], STDERR_FILENO);
  beginTrace("start");
  trace(start, [] { return "text"; });
  dup2(standardError, STDERR_FILENO);
  for (const int each : {ends[0], ends[1], standardError}) close(each);
}

TEST_F(Trace, WritesWindowsAndAreasAsToolsOfXDo) {
  EXPECT_EQ(windowText(0x1400007), "window 0x1400007");
  EXPECT_EQ(areaText({10, -20, 800, 600}), "800x600+10-20");
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
