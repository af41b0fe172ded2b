#include <csignal>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>

#include "tests/desktop/DesktopTest.h"
#include "tests/support/DBus.h"
#include "tests/support/FileDescriptor.h"
#include "tests/support/GlobalMenu.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {
namespace {

/// Toolkits give up after 25 s at the earliest.
constexpr std::chrono::seconds soonerThanToolkits{15};

/// Something that listens like a bus and answers nobody.
class DeafBus {
 public:
  explicit DeafBus(int backlog = 16) {
    std::strncpy(address_.sun_path, path_.c_str(), sizeof address_.sun_path - 1);
    if (bind(socket_.get(), socketAddress(), sizeof address_) != 0 ||
        listen(socket_.get(), backlog) != 0) {
      throw std::runtime_error("no socket can listen at " + path_);
    }
  }

  std::string address() const { return "unix:path=" + path_; }
  /// Whether somebody more may wait to be accepted.
  bool takes(const FileDescriptor& client) const {
    return connect(client.get(), socketAddress(), sizeof address_) == 0;
  }
  static FileDescriptor makeSocket() {
    return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  }

 private:
  const sockaddr* socketAddress() const { return reinterpret_cast<const sockaddr*>(&address_); }

  TemporaryDirectory directory_;
  std::string path_ = directory_.path() / "bus";
  sockaddr_un address_{.sun_family = AF_UNIX, .sun_path = {}};
  FileDescriptor socket_ = makeSocket();
};

/// A service of the session's bus that never answers.
class DeafService {
 public:
  DeafService(const PrivateDisplay& display, const char* name)
      : bus_(connectToBus(display.busAddress())) {
    if (sd_bus_request_name(bus_.get(), name, 0) < 0) {
      throw std::runtime_error(std::string("the name is not to be had: ") + name);
    }
  }

 private:
  BusConnection bus_;
};

class HungServices : public DesktopTest {
 protected:
  void startOnBus(const std::string& address) {
    vistrel_ = std::make_unique<RunningVistrel>(
        connection_, RunningVistrel::command({}, environmentOnBus(display_, address)), scale_);
  }
  ::testing::AssertionResult pickerComes() {
    const auto isOnScreen = [&] {
      const auto windows = windowsOfProcess(connection_, vistrel_->process().pid());
      return std::ranges::any_of(
          windows, [&](xcb_window_t window) { return isViewable(connection_, window); });
    };
    return eventually(isOnScreen, soonerThanToolkits)
               ? ::testing::AssertionSuccess()
               : ::testing::AssertionFailure() << "no window is on screen";
  }
  ::testing::AssertionResult endsWhenAsked() {
    vistrel_->process().sendSignal(SIGTERM);
    return ends();
  }
  ::testing::AssertionResult ends() {
    const auto ending = vistrel_->process().waitForEnd(soonerThanToolkits);
    vistrel_.reset();
    if (!ending) return ::testing::AssertionFailure() << "it goes on";
    return ending->exitStatus == 0 ? ::testing::AssertionSuccess()
                                   : ::testing::AssertionFailure() << "it ends in another way";
  }
};

TEST_F(HungServices, ThePickerComesWhereTheSessionBusAnswersNobody) {
  const DeafBus bus;
  startOnBus(bus.address());
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheSessionBusAcceptsNobody) {
  const DeafBus bus(0);
  std::vector<FileDescriptor> clients(1);
  while (bus.takes(clients.back() = DeafBus::makeSocket())) clients.emplace_back();
  startOnBus(bus.address());
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheAccessibilityServiceAnswersNobody) {
  const DeafService service(display_, "org.a11y.Bus");
  startVistrel();
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, ThePickerComesWhereTheGlobalMenuAnswersNobody) {
  const DeafService service(display_, "com.canonical.AppMenu.Registrar");
  startVistrel();
  EXPECT_TRUE(pickerComes());
  EXPECT_TRUE(endsWhenAsked());
}

TEST_F(HungServices, TheProgramQuitsThoughTheSessionBusHasStoppedAnswering) {
  const GlobalMenu menu(display_);
  startVistrel();
  const xcb_window_t picker = vistrel_->picker().id();
  ASSERT_TRUE(eventually([&] { return menu.hasMenuOf(picker); }));
  activate(picker);
  kill(display_.busPid(), SIGSTOP);
  input_.typeHolding(keyControl, 'q');
  EXPECT_TRUE(ends());
  kill(display_.busPid(), SIGCONT);
}

TEST_F(HungServices, TheProgramEndsWhenAskedWhileItsMainThreadWaitsForTheDisplay) {
  startVistrel();
  ASSERT_TRUE(pickerComes());
  kill(display_.serverPid(), SIGSTOP);
  EXPECT_TRUE(endsWhenAsked());
  kill(display_.serverPid(), SIGCONT);
}

}  // namespace
}  // namespace vistrel::testbed
