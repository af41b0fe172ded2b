#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/DBus.h"
#include "tests/support/KWinSession.h"
#include "tests/support/XConnection.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

using ::testing::HasSubstr;

/// A desktop's service of notifications, which keeps the last one's text.
class Notifications {
 public:
  explicit Notifications(const std::string& busAddress) : bus_(connectToBus(busAddress)) {
    static constexpr sd_bus_vtable methods[] = {
        SD_BUS_VTABLE_START(0), SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", take, 0),
        SD_BUS_VTABLE_END};
    sd_bus_add_object_vtable(bus_.get(), nullptr, "/org/freedesktop/Notifications", name, methods,
                             this);
    sd_bus_request_name(bus_.get(), name, 0);
  }

  void serve() const {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {
    }
  }
  const std::string& text() const { return text_; }

 private:
  static constexpr const char* name = "org.freedesktop.Notifications";

  static int take(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    const char* summary = nullptr;
    const char* body = nullptr;
    sd_bus_message_skip(message, "sus");
    sd_bus_message_read(message, "ss", &summary, &body);
    static_cast<Notifications*>(self)->text_ = std::string(summary) + ": " + body;
    return sd_bus_reply_method_return(message, "u", 1);
  }

  const BusConnection bus_;
  std::string text_;
};

TEST(KWinStart, SaysInANotificationWhatIsMissingWithoutXWayland) {
  const KWinSession session({.hasXWayland = false});
  const Notifications desktop(session.busAddress());
  ChildProcess vistrel({.arguments = {VISTREL_PROGRAM}, .environment = session.environment()});
  EXPECT_TRUE(eventually([&] {
    desktop.serve();
    return vistrel.ending().has_value();
  }));
  EXPECT_EQ(vistrel.ending()->exitStatus, 1);
  EXPECT_EQ(vistrel.standardError(), "vistrel: no display: DISPLAY is not set\n");
  EXPECT_THAT(desktop.text(), HasSubstr("Vistrel cannot start: "));
  EXPECT_THAT(desktop.text(), HasSubstr("XWayland"));
}

TEST(KWinStart, TracesWhoListsCapturesAndMovesNativeWindows) {
  const KWinSession session({.granted = {VISTREL_PROGRAM}, .variables = {"VISTREL_TRACE=start"}});
  ChildProcess vistrel({.arguments = {VISTREL_PROGRAM}, .environment = session.environment()});
  EXPECT_TRUE(eventually([&] {
    return vistrel.standardError().find(
               "vistrel: start: KWin lists, captures and moves native windows on wayland-0\n") !=
           std::string::npos;
  })) << vistrel.standardError();
}

TEST(KWinStart, EndsWithOneLineWhenTheCompositorDoes) {
  KWinSession session({.granted = {VISTREL_PROGRAM}});
  ChildProcess vistrel({.arguments = {VISTREL_PROGRAM}, .environment = session.environment()});
  session.adoptEnvironment();
  {
    const XConnection connection(session.xName());
    ASSERT_TRUE(eventually([&] { return !windowsOfProcess(connection, vistrel.pid()).empty(); }));
  }
  session.killCompositor();
  const auto ending = vistrel.waitForEnd();
  ASSERT_TRUE(ending.has_value());
  EXPECT_EQ(ending->exitStatus, 1);
  EXPECT_EQ(vistrel.standardError(),
            "vistrel: the connection to display \"" + session.xName() + "\" was lost\n");
}

}  // namespace
}  // namespace vistrel::testbed
