#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusServer>
#include <QDBusVariant>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

#include "platform/linux/qt/tray/BusMenu.h"
#include "platform/linux/qt/tray/BusTypes.h"
#include "tests/linux/qt/OffscreenQt.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QString path = QStringLiteral("/Menu");
const QString interface = QStringLiteral("com.canonical.dbusmenu");

const QString programsEnd = QStringLiteral("program's end");

/// A menu of a program, and a tray that is connected to it without a bus between them.
class BusMenuTest : public ::testing::Test {
 protected:
  BusMenuTest() {
    OffscreenQt::start();
    registerBusTypes();
    QObject::connect(&server_, &QDBusServer::newConnection, &server_,
                     [this](const QDBusConnection& end) { tray_ = end; });
    const auto program = QDBusConnection::connectToPeer(server_.address(), programsEnd);
    EXPECT_TRUE(becomes([&] { return tray_ && tray_->isConnected(); }));
    menu_.emplace(program, path, [this] { return make(); });
    told_.setInterval(std::chrono::hours(1));
    tray_->connect({}, path, interface, QStringLiteral("LayoutUpdated"), &told_, SLOT(start()));
  }
  ~BusMenuTest() override { QDBusConnection::disconnectFromPeer(programsEnd); }

  /// Turns the event loop until then.
  template <class Condition>
  static ::testing::AssertionResult becomes(const Condition& condition) {
    const bool isSo = testbed::eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
    return isSo ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "never";
  }

  void call(const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall({}, path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall call = tray_->asyncCall(message);
    EXPECT_TRUE(becomes([&] { return call.isFinished(); }));
    EXPECT_FALSE(call.isError()) << call.error().message().toStdString();
  }
  void read() { call("GetLayout", {0, -1, QStringList()}); }
  /// Whether the tray has been told of another menu since it was last asked.
  bool isTold() {
    QCoreApplication::processEvents();
    const bool isTold = told_.isActive();
    told_.stop();
    return isTold;
  }

  std::shared_ptr<Menu> make() {
    ++timesFilled_;
    return std::make_shared<Menu>("");
  }

  QDBusServer server_;
  std::optional<QDBusConnection> tray_;
  QTimer told_;  // runs once the tray has been told
  int timesFilled_ = 0;
  std::optional<BusMenu> menu_;
};

TEST_F(BusMenuTest, IsFilledForNobodyWhoDoesNotAsk) {
  menu_->mayHaveChanged();
  read();
  EXPECT_EQ(timesFilled_, 1);
  menu_->mayHaveChanged();
  EXPECT_TRUE(becomes([&] { return isTold(); }));
  EXPECT_EQ(timesFilled_, 1) << "nobody has asked for it";
  read();
  EXPECT_EQ(timesFilled_, 2);
}

TEST_F(BusMenuTest, IsFilledAnewForATrayThatReadsItWhileItIsOpen) {
  call("AboutToShow", {0});
  call("Event", {0, "opened", QVariant::fromValue(QDBusVariant("")), 0U});
  read();
  EXPECT_EQ(timesFilled_, 1);
  EXPECT_TRUE(becomes([&] { return isTold(); })) << "it opens";
  menu_->mayHaveChanged();
  EXPECT_TRUE(becomes([&] { return isTold(); })) << "it has changed";
  EXPECT_EQ(timesFilled_, 1);
  read();
  EXPECT_EQ(timesFilled_, 2);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
