#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusServer>
#include <QDBusVariant>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/linux/qt/tray/BusMenu.h"
#include "platform/linux/qt/tray/BusTypes.h"
#include "platform/linux/qt/tray/StatusNotifierItem.h"
#include "platform/simulated/SimulatedBackend.h"
#include "tests/linux/qt/OffscreenQt.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {

/// As in EventGroup: `(isvu)`.
struct SentEvent {
  int number = 0;
  QString name;
  QDBusVariant data;
  unsigned timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const SentEvent& event) {
  argument.beginStructure();
  argument << event.number << event.name << event.data << event.timestamp;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, SentEvent& /*event*/) {
  return argument;
}

}  // namespace vistrel::platform::linux_desktop

Q_DECLARE_METATYPE(vistrel::platform::linux_desktop::SentEvent)

namespace vistrel::platform::linux_desktop {
namespace {

const QString menuPath = QStringLiteral("/Menu");
const QString iconPath = QStringLiteral("/Icon");
const QString programsEnd = QStringLiteral("fuzzed program's end");

/// A method as its protocol has it.
struct Method {
  QString interface;
  QString name;
  std::vector<QString> types;
};

const std::vector<Method>& methods() {
  static const QString menu = QStringLiteral("com.canonical.dbusmenu");
  static const QString icon = QStringLiteral("org.kde.StatusNotifierItem");
  static const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
  static const std::vector<Method> all{{menu, "GetLayout", {"i", "i", "as"}},
                                       {menu, "GetGroupProperties", {"ai", "as"}},
                                       {menu, "GetProperty", {"i", "s"}},
                                       {menu, "AboutToShow", {"i"}},
                                       {menu, "AboutToShowGroup", {"ai"}},
                                       {menu, "Event", {"i", "s", "v", "u"}},
                                       {menu, "EventGroup", {"a(isvu)"}},
                                       {icon, "Activate", {"i", "i"}},
                                       {icon, "SecondaryActivate", {"i", "i"}},
                                       {icon, "ContextMenu", {"i", "i"}},
                                       {icon, "Scroll", {"i", "s"}},
                                       {properties, "Get", {"s", "s"}},
                                       {properties, "GetAll", {"s"}},
                                       {properties, "Set", {"s", "s", "v"}}};
  return all;
}

/// Trays gone mad: messages to the icon and its menu, of which most are as the protocols have them
/// but for their values. Random but for the seed.
class TrayFuzz : public ::testing::Test {
 protected:
  TrayFuzz() {
    OffscreenQt::start();
    registerBusTypes();
    qDBusRegisterMetaType<SentEvent>();
    qDBusRegisterMetaType<QList<SentEvent>>();
    QObject::connect(&server_, &QDBusServer::newConnection, &server_,
                     [this](const QDBusConnection& end) { tray_ = end; });
    const auto program = QDBusConnection::connectToPeer(server_.address(), programsEnd);
    EXPECT_TRUE(becomes([&] { return tray_ && tray_->isConnected(); }));
    menu_.emplace(program, menuPath, [this] { return makeMenu(2); });
    icon_.emplace(program, iconPath, menuPath,
                  StatusNotifierItem::Callbacks{.activated = [this] { ++activations_; },
                                                .menuWanted = [this](QPoint) { ++menusWanted_; }});
  }
  ~TrayFuzz() override { QDBusConnection::disconnectFromPeer(programsEnd); }

  template <class Condition>
  static bool becomes(const Condition& condition) {
    return testbed::eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }

  int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
  bool oneIn(int count) { return below(count) == 0; }

  std::shared_ptr<Menu> makeMenu(int depth) {
    auto menu = std::make_shared<Menu>("");
    for (int line = below(12); line > 0; --line) {
      auto item = std::make_shared<MenuItem>(text().toStdString(), Action(), "");
      if (depth > 0 && oneIn(3)) item->setSubmenu(makeMenu(depth - 1));
      menu->addItem(item);
    }
    return menu;
  }

  int number() {
    constexpr std::array odd{-1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(),
                             1 << 16};
    return oneIn(4) ? odd.at(static_cast<std::size_t>(below(odd.size()))) : below(40);
  }
  QString text() {
    static const QStringList known{"opened",
                                   "closed",
                                   "clicked",
                                   "hovered",
                                   "label",
                                   "enabled",
                                   "children-display",
                                   "visible",
                                   "toggle-state",
                                   "Menu",
                                   "Title",
                                   "",
                                   "IconPixmap",
                                   "_&_\t\n",
                                   QString(5000, 'x'),
                                   "com.canonical.dbusmenu",
                                   QString(QChar(0xd83d)),
                                   "org.kde.StatusNotifierItem"};
    return known.at(below(static_cast<int>(known.size())));
  }
  template <class Make>
  auto some(Make make) {
    QList<decltype(make())> list;
    for (int left = oneIn(40) ? 300 : below(5); left > 0; --left) list.append(make());
    return list;
  }
  /// With no more than `depth` values one in another.
  QVariant value(const QString& type, int depth = 2) {
    if (type == "i") return number();
    if (type == "u") return static_cast<unsigned>(number());
    if (type == "s") return text();
    if (type == "ai") return QVariant::fromValue(some([this] { return number(); }));
    if (type == "as") return QStringList(some([this] { return text(); }));
    if (type == "a(isvu)") {
      return QVariant::fromValue(some([this, depth] {
        return SentEvent{number(), text(), QDBusVariant(anything(depth - 1)), 0};
      }));
    }
    return QVariant::fromValue(QDBusVariant(anything(depth - 1)));
  }
  QVariant anything(int depth = 2) {
    static const QStringList types{"i", "u", "s", "ai", "as", "a(isvu)", "v"};
    constexpr int plain = 3;
    if (oneIn(6)) return QVariant::fromValue(QDBusObjectPath("/a/path"));
    if (oneIn(6)) return QByteArray(below(100), 'b');
    if (oneIn(6)) return 0.5;
    return value(types.at(below(depth > 0 ? static_cast<int>(types.size()) : plain)), depth);
  }

  QDBusMessage message() {
    const Method& method = methods().at(static_cast<std::size_t>(below(int(methods().size()))));
    const QString& path = oneIn(8) || method.interface.contains("kde") ? iconPath : menuPath;
    auto sent = QDBusMessage::createMethodCall({}, path, oneIn(20) ? QString() : method.interface,
                                               oneIn(30) ? QStringLiteral("Xyz") : method.name);
    QVariantList arguments;
    for (const QString& type : method.types) {
      if (!oneIn(30)) arguments.append(oneIn(30) ? anything() : value(type));
    }
    if (oneIn(50)) arguments.append(anything());
    sent.setArguments(arguments);
    return sent;
  }

  /// Sends so many messages; whether each has an answer.
  bool sendAndAwait(int messages) {
    std::vector<QDBusPendingCall> calls;
    for (; messages > 0; --messages) {
      calls.push_back(tray_->asyncCall(message()));
      if (oneIn(10)) menu_->mayHaveChanged();
    }
    const auto isFinished = [](const QDBusPendingCall& each) { return each.isFinished(); };
    // The library itself says this when nobody has answered for long.
    const auto isAnswered = [](const QDBusPendingCall& each) {
      return each.error().type() != QDBusError::NoReply;
    };
    const bool areAnswered = becomes([&] { return std::ranges::all_of(calls, isFinished); }) &&
                             std::ranges::all_of(calls, isAnswered);
    desktop_.turnMainQueue();
    return areAnswered;
  }

  simulated::SimulatedBackend desktop_;
  std::mt19937_64 random_;
  QDBusServer server_;
  std::optional<QDBusConnection> tray_;
  std::optional<BusMenu> menu_;
  std::optional<StatusNotifierItem> icon_;
  int activations_ = 0;
  int menusWanted_ = 0;
};

TEST_F(TrayFuzz, EveryMessageIsAnsweredAndNoneDoesHarm) {
  for (std::uint64_t seed = 1; seed <= 8; ++seed) {
    random_.seed(seed);
    for (int batch = 0; batch < 10; ++batch) {
      ASSERT_TRUE(sendAndAwait(50)) << "seed " << seed << ", batch " << batch;
    }
  }
  EXPECT_GT(activations_, 50) << "it cannot have been a quiet time";
  EXPECT_GT(menusWanted_, 50);

  const int before = activations_;
  auto click =
      QDBusMessage::createMethodCall({}, iconPath, "org.kde.StatusNotifierItem", "Activate");
  click.setArguments({0, 0});
  const QDBusPendingCall clicked = tray_->asyncCall(click);
  EXPECT_TRUE(becomes([&] { return clicked.isFinished() && !clicked.isError(); }));
  EXPECT_EQ(activations_, before + 1);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
