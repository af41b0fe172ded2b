#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

/// Starts of the program that end as soon as another instance has shown itself.
std::unique_ptr<ChildProcess> start(const PrivateDisplay& display,
                                    const std::vector<std::string>& variables = {}) {
  auto environment = display.environment();
  environment.insert(environment.end(), variables.begin(), variables.end());
  return std::make_unique<ChildProcess>(RunningVistrel::command({}, std::move(environment)));
}

::testing::AssertionResult leavesItToAnother(ChildProcess& process) {
  const auto ending = process.waitForEnd();
  if (!ending) {
    return ::testing::AssertionFailure() << "still running";
  }
  if (ending->exitStatus != 0) {
    return ::testing::AssertionFailure() << "failed";
  }
  const std::string said = process.standardOutput() + process.standardError();
  return said.empty() ? ::testing::AssertionSuccess()
                      : ::testing::AssertionFailure() << "said: " << said;
}

/// Whether the process stays and has a picker.
bool isInstance(const XConnection& connection, ChildProcess& process) {
  return !process.ending() &&
         std::ranges::any_of(windowsOfProcess(connection, process.pid()),
                             [&](xcb_window_t window) { return isViewable(connection, window); });
}

/// The program started while it runs, under each manager.
class SecondStart : public DesktopTestWithManager {
 protected:
  ::testing::AssertionResult bringsThePickerForward() {
    const auto second = start(display_);
    const auto left = leavesItToAnother(*second);
    if (!left) {
      return left;
    }
    const auto isForward = [&] {
      const xcb_window_t picker = vistrel_->picker().id();  // another window once it was closed
      return activeWindow() == picker && isAbove(connection_, picker, document_->id());
    };
    return eventually(isForward) ? ::testing::AssertionSuccess()
                                 : ::testing::AssertionFailure() << "the picker is not forward";
  }
  /// mutter 43.8 leaves minimised windows mapped.
  ::testing::AssertionResult pickerGoes() {
    const auto isGone = [&] {
      return !isViewable(connection_, picker_) ||
             hasState(connection_, picker_, "_NET_WM_STATE_HIDDEN");
    };
    return eventually(isGone) ? ::testing::AssertionSuccess()
                              : ::testing::AssertionFailure() << "the picker stays";
  }

  std::unique_ptr<TestWindow> document_;
  xcb_window_t picker_ = XCB_WINDOW_NONE;
};

TEST_P(SecondStart, BringsThePickerForwardWhereverItIs) {
  document_ = openSource({.area = {200, 200, 900, 700}});
  startVistrel();
  picker_ = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return activeWindow() == picker_; }));

  activate(document_->id());
  EXPECT_TRUE(bringsThePickerForward()) << "covered";

  constexpr std::uint32_t iconicState = 3;
  connection_.sendToManager(picker_, "WM_CHANGE_STATE", {iconicState});
  ASSERT_TRUE(pickerGoes());
  activate(document_->id());
  EXPECT_TRUE(bringsThePickerForward()) << "minimised";

  input_.typeHolding(keyControl, 'h');
  ASSERT_TRUE(pickerGoes());
  activate(document_->id());
  EXPECT_TRUE(bringsThePickerForward()) << "hidden with the program";

  connection_.sendToManager(picker_, "_NET_CLOSE_WINDOW", {0, byPerson});
  ASSERT_TRUE(pickerGoes());
  activate(document_->id());
  EXPECT_TRUE(bringsThePickerForward()) << "closed";

  goToDesktop(1);
  EXPECT_TRUE(bringsThePickerForward()) << "on another desktop";
}

VISTREL_WITH_EACH_MANAGER(SecondStart);

/// Under a manager that lets nothing come forward while a person does something else.
class LaunchedStart : public DesktopTest {
 protected:
  LaunchedStart() : DesktopTest({.windowManager = WindowManager::mutter}) {}

  /// The server's time, as clients find it out (ICCCM 2.1).
  std::uint32_t timeNow() const {
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const XConnection connection(display_.name());
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    connection.setText(window, "WM_NAME", XCB_ATOM_STRING, "");
    connection.sync();
    const XReply<xcb_generic_event_t> event(xcb_wait_for_event(connection.get()));
    return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
  }
  /// The document's program says that a person has just typed into it (EWMH 1.5,
  /// _NET_WM_USER_TIME), once the picker has heard all about its own loss of the keyboard.
  std::uint32_t typeInto(const TestWindow& document, xcb_window_t picker) {
    activate(document.id());
    EXPECT_TRUE(
        eventually([&] { return !hasState(connection_, picker, "_NET_WM_STATE_FOCUSED"); }));
    const std::uint32_t now = timeNow();
    connection_.setNumbers(document.id(), "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, {now});
    connection_.sync();
    return now;
  }
  /// Starts the program for what a person did in a launcher at that time (Startup Notification
  /// Protocol 0.2).
  ::testing::AssertionResult launch(std::uint32_t time) {
    const auto second =
        start(display_, {"DESKTOP_STARTUP_ID=launcher-1-host_TIME" + std::to_string(time)});
    return leavesItToAnother(*second);
  }
};

TEST_F(LaunchedStart, TakesTheKeyboardFromWhatThePersonDidBefore) {
  const auto document = openSource({.area = {200, 200, 900, 700}});
  startVistrel();
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return activeWindow() == picker; }));
  const std::uint32_t typed = typeInto(*document, picker);
  ASSERT_EQ(activeWindow(), document->id());
  EXPECT_TRUE(launch(typed + 1));
  EXPECT_TRUE(eventually([&] { return activeWindow() == picker; }));
}

/// Several instances, or what passes itself off as one.
class Instances : public DesktopTest {
 protected:
  /// Has this test's own connection, which answers nobody, pass for an instance on `connection`.
  static void pretendToBeOne(const XConnection& connection) {
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection.get(), window, connection.atom("_VISTREL_INSTANCE"),
                            XCB_CURRENT_TIME);
    connection.sync();
  }
};

// Startup Notification Protocol 0.2: messages of 20 bytes to the root window, the last one with a
// zero in it.
TEST_F(Instances, ALauncherHearsThatAStartIsOverThatShowsNoWindow) {
  startVistrel();
  vistrel_->picker();
  const XConnection launcher(display_.name());
  constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(launcher.get(), launcher.root(), XCB_CW_EVENT_MASK, &events);
  launcher.sync();
  const auto second = start(display_, {"DESKTOP_STARTUP_ID=a launcher's \"first\"-1_TIME77"});
  EXPECT_TRUE(leavesItToAnother(*second));
  std::string heard;
  const auto hearsAll = [&] {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(launcher.get())}) {
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
      const bool isMessage = (event->response_type & 0x7f) == XCB_CLIENT_MESSAGE;
      if (isMessage && message.type == launcher.atom(heard.empty() ? "_NET_STARTUP_INFO_BEGIN"
                                                                   : "_NET_STARTUP_INFO")) {
        heard.append(reinterpret_cast<const char*>(message.data.data8), 20);
      }
    }
    return heard.find('\0') != std::string::npos;
  };
  EXPECT_TRUE(eventually(hearsAll));
  EXPECT_EQ(heard.substr(0, heard.find('\0')), R"(remove: ID=a\ launcher's\ \"first\"-1_TIME77)");
}

TEST_F(Instances, OfSeveralStartsAtOnceOneStays) {
  std::vector<std::unique_ptr<ChildProcess>> starts;
  for (int i = 0; i < 6; ++i) {
    starts.push_back(start(display_));
  }
  const auto running = [&] {
    return std::ranges::count_if(starts, [](const auto& each) { return !each->ending(); });
  };
  ASSERT_TRUE(eventually([&] { return running() == 1; })) << running();
  std::ranges::partition(starts, [](const auto& each) { return !each->ending(); });
  for (std::size_t i = 1; i < starts.size(); ++i) {
    EXPECT_TRUE(leavesItToAnother(*starts[i]));
  }
  EXPECT_TRUE(eventually([&] { return isInstance(connection_, *starts[0]); }));

  // Nothing of one that was killed is in the way of the next.
  starts[0]->sendSignal(SIGKILL);
  ASSERT_TRUE(starts[0]->waitForEnd());
  const auto next = start(display_);
  EXPECT_TRUE(eventually([&] { return isInstance(connection_, *next); }));
}

TEST_F(Instances, EachDisplayHasOneWhicheverSessionBusesAreUsed) {
  startVistrel();
  vistrel_->picker();
  const PrivateDisplay other;
  ChildProcess second(RunningVistrel::command({}, display_.environmentOnBus(other.busAddress())));
  EXPECT_TRUE(leavesItToAnother(second));
  ChildProcess onOther(RunningVistrel::command({}, other.environmentOnBus(display_.busAddress())));
  const XConnection connection(other.name());
  EXPECT_TRUE(eventually([&] { return isInstance(connection, onOther); }));
}

// The starts below wait for an answer at the same time.
TEST_F(Instances, OneThatDoesNotAnswerKeepsNobodyFromStarting) {
  const PrivateDisplay other;
  const XConnection onOther(other.name());
  pretendToBeOne(onOther);
  const auto besidePretender = start(other);
  startVistrel();
  vistrel_->picker();
  vistrel_->process().sendSignal(SIGSTOP);
  const auto besideStopped = start(display_);
  const auto laterStart = start(display_);

  const auto isOneOfBoth = [&](ChildProcess& one, ChildProcess& another) {
    return isInstance(connection_, one) && another.ending().has_value();
  };
  EXPECT_TRUE(eventually([&] {
    return isOneOfBoth(*besideStopped, *laterStart) || isOneOfBoth(*laterStart, *besideStopped);
  }));
  EXPECT_TRUE(eventually([&] { return isInstance(onOther, *besidePretender); }));
  const auto third = start(other);
  EXPECT_TRUE(leavesItToAnother(*third));
  vistrel_->process().sendSignal(SIGCONT);
}

TEST_F(Instances, OneThatGoesWithoutAnAnswerLeavesItsPlaceToTheStart) {
  std::optional<XConnection> pretender(display_.name());
  pretendToBeOne(*pretender);
  const auto second = start(display_);
  const auto isAsked = [&] {
    const XReply<xcb_generic_event_t> event(xcb_poll_for_event(pretender->get()));
    return event && event->response_type == XCB_SELECTION_REQUEST;
  };
  ASSERT_TRUE(eventually(isAsked));
  pretender.reset();
  EXPECT_TRUE(eventually([&] { return isInstance(connection_, *second); }));
}

}  // namespace
}  // namespace vistrel::testbed
