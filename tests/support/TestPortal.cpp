#include "tests/support/TestPortal.h"

#include <sstream>
#include <stdexcept>

#include "tests/support/DBus.h"
#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";

const char* wordFor(TestPortal::Answer answer) {
  switch (answer) {
    case TestPortal::Answer::pick:
      return "pick";
    case TestPortal::Answer::cancel:
      return "cancel";
    case TestPortal::Answer::refuse:
      return "refuse";
    case TestPortal::Answer::none:
      break;
  }
  return "none";
}

std::string textOf(bool isSo) { return isSo ? "1" : "0"; }

}  // namespace

TestPortal::TestPortal(const WaylandSession& session) : session_(&session) { comeBack(); }

void TestPortal::answer(Answer answer) { tell(std::string("answer ") + wordFor(answer)); }

void TestPortal::offerWindows(bool isOffered) { tell("offer " + textOf(isOffered)); }

void TestPortal::forgetTokens() { tell("forget"); }

void TestPortal::closeSessions() { tell("close"); }

void TestPortal::hang(bool isHung) { tell("hang " + textOf(isHung)); }

void TestPortal::leave() {
  program_.reset();
  const BusConnection bus = connectToBus(session_->busAddress());
  if (!eventually([&] { return !isOnBus(bus, portalName); })) {
    throw std::runtime_error("the test portal is still there");
  }
}

void TestPortal::comeBack() {
  program_ = std::make_unique<CommandedProgram>(
      "the test portal", VISTREL_TEST_PORTAL, std::vector<std::string>{}, session_->environment());
  static_cast<void>(timesAsked());
}

int TestPortal::timesAsked() { return count("asked"); }

int TestPortal::openDialogs() { return count("dialogs"); }

int TestPortal::withdrawnDialogs() { return count("withdrawn"); }

int TestPortal::openSessions() { return count("sessions"); }

int TestPortal::startedStreams() { return count("streams"); }

TestPortal::Request TestPortal::lastRequest() {
  std::istringstream text(tell("request"));
  Request request;
  text >> request.types >> request.cursorMode >> request.persistMode >> request.hasToken >> std::ws;
  std::getline(text, request.parentWindow);
  return request;
}

std::string TestPortal::tell(const std::string& command) {
  if (!program_) {
    throw std::runtime_error("the test portal has left");
  }
  return program_->tell(command);
}

int TestPortal::count(const std::string& what) { return std::stoi(tell("count " + what)); }

}  // namespace vistrel::testbed
