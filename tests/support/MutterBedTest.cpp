#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/DBus.h"
#include "tests/support/GnomeDialog.h"
#include "tests/support/HandOnX.h"
#include "tests/support/MutterHand.h"
#include "tests/support/MutterSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/Poll.h"
#include "tests/support/TestPortal.h"
#include "tests/support/TestWindow.h"

namespace vistrel::testbed {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* screenCast = "org.freedesktop.portal.ScreenCast";

/// A program that has windows shared with it.
class Sharer {
 public:
  /// How the portal answered Start.
  struct Answer {
    std::uint32_t response = 0;
    std::uint32_t node = 0;
    std::string token;
  };

  explicit Sharer(const WaylandSession& session, const char* parentWindow = "")
      : parentWindow_(parentWindow),
        portal_(connectToBus(session.busAddress()), portalName, "/org/freedesktop/portal/desktop") {
    BusObject(portal_.bus(), "org.freedesktop.DBus", "/org/freedesktop/DBus")
        .call("org.freedesktop.DBus", "AddMatch", "s",
              "type='signal',sender='org.freedesktop.portal.Desktop'");
  }

  /// Asks for one window, by the token unless that is empty.
  void ask(const std::string& token = {}) {
    const std::string number = std::to_string(++requests_);
    session_ = portal_.path() + "/session/" + sender() + "/s" + number;
    finish(portal_
               .call(screenCast, "CreateSession", "a{sv}", 2, "handle_token", "s",
                     ("c" + number).c_str(), "session_handle_token", "s", ("s" + number).c_str())
               .path());
    finish(select("q" + number, token));
    started_ = portal_
                   .call(screenCast, "Start", "osa{sv}", session_.c_str(), parentWindow_, 1,
                         "handle_token", "s", ("t" + number).c_str())
                   .path();
  }
  bool isAnswered() {
    listen();
    return answers_.contains(started_);
  }
  Answer answer() { return finish(started_); }

  bool isClosed() {
    listen();
    return closed_.contains(session_);
  }
  void close() {
    BusObject(portal_.bus(), portalName, session_).call("org.freedesktop.portal.Session", "Close");
  }
  sd_bus* bus() const { return portal_.bus().get(); }
  std::uint32_t sourceTypes() {
    BusMessage value = portal_.call("org.freedesktop.DBus.Properties", "Get", "ss", screenCast,
                                    "AvailableSourceTypes");
    return value.structure(
        "u", [&] { return value.number(); }, SD_BUS_TYPE_VARIANT);
  }

 private:
  std::string sender() const {
    const char* name = nullptr;
    sd_bus_get_unique_name(portal_.bus().get(), &name);
    std::string text = name + 1;
    std::ranges::replace(text, '.', '_');
    return text;
  }

  std::string select(const std::string& request, const std::string& token) {
    constexpr std::uint32_t windows = 2;
    constexpr std::uint32_t metadata = 4;
    constexpr std::uint32_t untilRevoked = 2;
    if (token.empty()) {
      return portal_
          .call(screenCast, "SelectSources", "oa{sv}", session_.c_str(), 4, "handle_token", "s",
                request.c_str(), "types", "u", windows, "cursor_mode", "u", metadata,
                "persist_mode", "u", untilRevoked)
          .path();
    }
    return portal_
        .call(screenCast, "SelectSources", "oa{sv}", session_.c_str(), 5, "handle_token", "s",
              request.c_str(), "types", "u", windows, "cursor_mode", "u", metadata, "persist_mode",
              "u", untilRevoked, "restore_token", "s", token.c_str())
        .path();
  }

  Answer finish(const std::string& request) {
    EXPECT_TRUE(eventually([&] {
      listen();
      return answers_.contains(request);
    })) << request;
    return answers_[request];
  }

  void listen() {
    sd_bus_message* raw = nullptr;
    while (sd_bus_process(portal_.bus().get(), &raw) > 0) {
      if (raw == nullptr) continue;
      BusMessage message(raw);
      if (sd_bus_message_is_signal(raw, "org.freedesktop.portal.Request", "Response") > 0) {
        answers_[sd_bus_message_get_path(raw)] = read(message);
      } else if (sd_bus_message_is_signal(raw, "org.freedesktop.portal.Session", "Closed") > 0) {
        closed_.insert(sd_bus_message_get_path(raw));
      }
    }
  }

  static Answer read(BusMessage& message) {
    Answer answer;
    answer.response = message.number();
    const auto value = [&](const char* type, const auto& readValue) {
      return message.structure(type, readValue, SD_BUS_TYPE_VARIANT);
    };
    message.array("{sv}", [&] {
      message.structure(
          "sv",
          [&] {
            const std::string name = message.text();
            if (name == "restore_token") {
              answer.token = value("s", [&] { return message.text(); });
            } else if (name == "streams") {
              answer.node = value("a(ua{sv})", [&] {
                std::uint32_t node = 0;
                message.array("(ua{sv})", [&] {
                  node = message.structure("ua{sv}", [&] {
                    const std::uint32_t number = message.number();
                    message.skip("a{sv}");
                    return number;
                  });
                });
                return node;
              });
            } else {
              message.skip("v");
            }
            return true;
          },
          SD_BUS_TYPE_DICT_ENTRY);
    });
    return answer;
  }

  const char* parentWindow_;
  BusObject portal_;
  std::string session_;
  std::string started_;
  std::set<std::string> closed_;
  std::map<std::string, Answer> answers_;  // by request
  int requests_ = 0;
};

/// The process that serves X's display of that number; 0 where there is none.
pid_t ownerOfXDisplay(const std::string& number) {
  pid_t owner = 0;
  std::ifstream("/tmp/.X" + number + "-lock") >> owner;
  return owner;
}

TEST(MutterSession, LeavesNothingRunning) {
  std::filesystem::path home;
  std::string xNumber;
  pid_t compositor = 0;
  {
    const MutterSession session;
    home = session.home();
    compositor = session.compositorPid();
    EXPECT_NO_THROW(XConnection{session.xName()});
    xNumber = session.xName().substr(1);
    EXPECT_EQ(ownerOfXDisplay(xNumber), compositor);
  }
  // Another session may have taken the number since.
  EXPECT_TRUE(eventually([&] {
    const bool hasSocket = std::filesystem::exists("/tmp/.X11-unix/X" + xNumber);
    const pid_t owner = ownerOfXDisplay(xNumber);
    return owner != compositor && (owner != 0 || !hasSocket);
  }));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child process is left";
  EXPECT_FALSE(std::filesystem::exists(home));
}

TEST(MutterSession, GivesProgramsTheInputOfAPersonWhereTheirWindowsAre) {
  const MutterSession session;
  session.adoptEnvironment();
  MutterHand hand(session);
  constexpr Point middle{640, 512};
  constexpr std::uint32_t keyA = 30;
  {
    NativeWindow window(session.environment(), {.isDecorated = true});
    ASSERT_TRUE(eventually([&] {
      hand.moveTo(middle);
      return window.hasPointer();
    }));
    hand.click();
    EXPECT_TRUE(eventually([&] { return window.pressedButtons() == 1; }));
    hand.type(keyA);
    EXPECT_TRUE(eventually([&] { return window.typedKeys() == 1; }));
  }
  TestWindow window(session.xName(), {});
  const XConnection connection(session.xName());
  HandOnX handOnX(hand, connection);
  handOnX.clickAt(window.area().centre());
  EXPECT_TRUE(eventually([&] { return window.pressedButtons() == 1; }));
}

/// A window in a session of mutter's, and the test's own portal.
class TestPortalTest : public ::testing::Test {
 protected:
  MutterSession session_;
  TestPortal portal_{session_};
  NativeWindow window_{session_.environment(), {}};
  Sharer sharer_{session_, "x11:2a"};
};

TEST_F(TestPortalTest, SharesTheWindowAndAsksAgainOnlyWithoutAToken) {
  sharer_.ask();
  const auto first = sharer_.answer();
  EXPECT_EQ(first.response, 0);
  EXPECT_NE(first.node, 0);
  EXPECT_EQ(portal_.timesAsked(), 1);
  const auto request = portal_.lastRequest();
  EXPECT_EQ(request.parentWindow, "x11:2a");
  EXPECT_EQ(request.types, 2);
  EXPECT_EQ(request.cursorMode, 4);
  EXPECT_EQ(request.persistMode, 2);
  EXPECT_FALSE(request.hasToken);

  sharer_.close();
  EXPECT_EQ(portal_.openSessions(), 0);
  sharer_.ask(first.token);
  const auto second = sharer_.answer();
  EXPECT_EQ(second.response, 0);
  EXPECT_NE(second.token, first.token);
  EXPECT_TRUE(portal_.lastRequest().hasToken);
  EXPECT_EQ(portal_.timesAsked(), 1);
  sharer_.ask(first.token);
  EXPECT_EQ(sharer_.answer().response, 0);
  EXPECT_EQ(portal_.timesAsked(), 2) << "a token is good for one time";
  portal_.forgetTokens();
  sharer_.ask(second.token);
  EXPECT_EQ(sharer_.answer().response, 0);
  EXPECT_EQ(portal_.timesAsked(), 3);
  EXPECT_EQ(portal_.startedStreams(), 4);

  EXPECT_FALSE(sharer_.isClosed());
  window_.close();
  EXPECT_TRUE(eventually([&] { return sharer_.isClosed(); }));
  EXPECT_TRUE(eventually([&] { return portal_.openSessions() == 0; }));
}

TEST_F(TestPortalTest, HasThePersonDoWhatTheTestSays) {
  portal_.answer(TestPortal::Answer::cancel);
  sharer_.ask();
  EXPECT_EQ(sharer_.answer().response, 1);
  portal_.answer(TestPortal::Answer::refuse);
  sharer_.ask();
  EXPECT_EQ(sharer_.answer().response, 2);
  portal_.answer(TestPortal::Answer::none);
  sharer_.ask();
  EXPECT_EQ(portal_.openDialogs(), 1);
  EXPECT_FALSE(sharer_.isAnswered());
  portal_.answer(TestPortal::Answer::pick);
  EXPECT_EQ(sharer_.answer().response, 0);
  portal_.closeSessions();
  EXPECT_TRUE(eventually([&] { return sharer_.isClosed(); }));

  EXPECT_EQ(sharer_.sourceTypes(), 7);
  portal_.offerWindows(false);
  EXPECT_EQ(sharer_.sourceTypes(), 1);
  EXPECT_THROW(sharer_.ask(), BusError);
  portal_.leave();
  EXPECT_THROW(sharer_.sourceTypes(), BusError);
  portal_.comeBack();
  portal_.answer(TestPortal::Answer::none);
  {
    Sharer hasty(session_);
    hasty.ask();
  }
  EXPECT_TRUE(eventually([&] { return portal_.withdrawnDialogs() == 1; }));
  portal_.hang(true);
  constexpr std::uint64_t microseconds = 50'000;
  sd_bus_set_method_call_timeout(sharer_.bus(), microseconds);
  EXPECT_THROW(sharer_.sourceTypes(), BusError);
  portal_.hang(false);
  sd_bus_set_method_call_timeout(sharer_.bus(), 0);  // the library's own
  EXPECT_EQ(sharer_.sourceTypes(), 7);
}

TEST_F(TestPortalTest, SharesAnewOnceItsStreamsHaveEndedWithPipeWire) {
  sharer_.ask();
  EXPECT_EQ(sharer_.answer().response, 0);
  session_.stopPipeWire();
  EXPECT_TRUE(eventually([&] { return sharer_.isClosed(); }));
  session_.startPipeWire();
  sharer_.ask();
  EXPECT_EQ(sharer_.answer().response, 0);
  session_.killCompositor();
  EXPECT_TRUE(eventually([&] { return sharer_.isClosed(); }));
}

TEST(GnomeDialog, SharesWhatThePersonClicksOrNothing) {
  const MutterSession session({.isGnomeShell = true, .hasPortal = true});
  NativeWindow other(session.environment(), {.title = "Other"});
  NativeWindow window(session.environment(), {.title = "Mine"});
  MutterHand hand(session);
  GnomeDialog dialog(session, hand);
  Sharer sharer(session);
  sharer.ask();
  dialog.share("Mine");
  const auto shared = sharer.answer();
  EXPECT_EQ(shared.response, 0);
  EXPECT_NE(shared.node, 0);
  sharer.ask(shared.token);
  EXPECT_EQ(sharer.answer().response, 0);
  EXPECT_FALSE(dialog.isOpen());
  other.close();
  EXPECT_FALSE(sharer.isClosed());
  window.close();
  EXPECT_TRUE(eventually([&] { return sharer.isClosed(); }));

  sharer.ask();
  dialog.cancel();
  EXPECT_EQ(sharer.answer().response, 1);
}

}  // namespace
}  // namespace vistrel::testbed
