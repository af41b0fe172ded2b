#include "platform/linux/qt/tray/BusMenu.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/Dispatch.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr unsigned protocolVersion = 3;
constexpr int wholeMenu = 0;
/// How long after the last change hosts hear of it: changes come in rows.
constexpr int restMilliseconds = 300;

/// Of an argument with the signature `ai`.
QList<int> numbersIn(const QVariant& argument) { return qdbus_cast<QList<int>>(argument); }

struct MenuEvent {
  int number = 0;
  QString name;
};

/// Of an argument with the signature `a(isvu)`.
QList<MenuEvent> eventsIn(const QVariant& argument) {
  const auto list = argument.value<QDBusArgument>();
  QList<MenuEvent> events;
  list.beginArray();
  while (!list.atEnd()) {
    MenuEvent event;
    QDBusVariant data;
    unsigned timestamp = 0;
    list.beginStructure();
    list >> event.number >> event.name >> data >> timestamp;
    list.endStructure();
    events.append(event);
  }
  list.endArray();
  return events;
}

QVariant toVariant(const QList<int>& numbers) { return QVariant::fromValue(numbers); }

}  // namespace

BusMenu::BusMenu(const QDBusConnection& bus, const QString& path,
                 std::function<std::shared_ptr<Menu>()> make)
    : ExportedObject(bus, path, QStringLiteral("com.canonical.dbusmenu")), make_(std::move(make)) {
  addProperty("Version", "u", protocolVersion);
  addProperty("Status", "s", "normal");
  addProperty("TextDirection", "s", "ltr");
  addProperty("IconThemePath", "as", QStringList());
  addSignal("LayoutUpdated", {"u", "i"});
  addQuestions();
  addSigns();
  changed_.setSingleShot(true);
  changed_.setInterval(restMilliseconds);
  QObject::connect(&changed_, &QTimer::timeout, &changed_, [this] { announceChange(); });
}

void BusMenu::addQuestions() {
  using Arguments = QVariantList;
  using Results = std::optional<QVariantList>;
  addMethod("GetLayout", {"i", "i", "as"}, {"u", "(ia{sv}av)"},
            [this](const Arguments& in) -> Results {
              if (in[0].toInt() == wholeMenu) isAboutToBeRead();
              const auto found = layout(in[0].toInt(), in[1].toInt(), in[2].toStringList());
              if (!found) return std::nullopt;
              return Arguments{revision_, QVariant::fromValue(*found)};
            });
  addMethod(
      "GetGroupProperties", {"ai", "as"}, {"a(ia{sv})"}, [this](const Arguments& in) -> Results {
        return Arguments{QVariant::fromValue(properties(numbersIn(in[0]), in[1].toStringList()))};
      });
  addMethod("GetProperty", {"i", "s"}, {"v"}, [this](const Arguments& in) -> Results {
    const auto found = layout(in[0].toInt(), 0, {in[1].toString()});
    if (!found || found->properties.isEmpty()) return std::nullopt;
    return Arguments{QVariant::fromValue(QDBusVariant(found->properties.first()))};
  });
}

void BusMenu::addSigns() {
  using Arguments = QVariantList;
  using Results = std::optional<QVariantList>;
  addMethod("AboutToShow", {"i"}, {"b"}, [this](const Arguments& in) -> Results {
    return Arguments{isAboutToShow(in[0].toInt())};
  });
  addMethod("AboutToShowGroup", {"ai"}, {"ai", "ai"}, [this](const Arguments& in) -> Results {
    QList<int> outdated = numbersIn(in[0]);
    outdated.removeIf([this](int number) { return !isAboutToShow(number); });
    return Arguments{toVariant(outdated), toVariant({})};
  });
  addMethod("Event", {"i", "s", "v", "u"}, {}, [this](const Arguments& in) -> Results {
    if (!receive(in[0].toInt(), in[1].toString())) return std::nullopt;
    return Arguments{};
  });
  addMethod("EventGroup", {"a(isvu)"}, {"ai"}, [this](const Arguments& in) -> Results {
    QList<int> unknown;
    for (const MenuEvent& event : eventsIn(in[0])) {
      if (!receive(event.number, event.name)) unknown.append(event.number);
    }
    return Arguments{toVariant(unknown)};
  });
}

bool BusMenu::begins(MenuSign sign) {
  return openings_.begins(sign, std::chrono::steady_clock::now());
}

void BusMenu::makeAnew() {
  const auto menu = make_();
  former_ = std::move(current_);
  current_ = menu ? NumberedMenu(*menu, former_) : NumberedMenu();
  ++revision_;
  isOutdated_ = false;
  trace(TraceTopic::tray, [] { return "the menu is made anew"; });
}

void BusMenu::mayHaveChanged() {
  if (isRead_) changed_.start();
}

/// To fill the menu may keep the main thread waiting, so that is left until somebody asks for it.
void BusMenu::announceChange() {
  isRead_ = false;
  isOutdated_ = true;
  emitSignal("LayoutUpdated", {++revision_, wholeMenu});
}

void BusMenu::isAboutToBeRead() {
  isRead_ = true;
  if (begins(MenuSign::layoutRead) || isOutdated_) makeAnew();
}

/// Some hosts that ask whether it is out of date do not listen to the answer, but to this.
void BusMenu::replace() {
  makeAnew();
  emitSignal("LayoutUpdated", {revision_, wholeMenu});
}

std::optional<MenuLayout> BusMenu::layout(int number, int depth, const QStringList& names) const {
  const auto found = current_.layout(number, depth, names);
  return found ? found : former_.layout(number, depth, names);
}

QList<NumberedProperties> BusMenu::properties(const QList<int>& numbers,
                                              const QStringList& names) const {
  QList<NumberedProperties> found;
  for (const int number : numbers) {
    const auto line = layout(number, 0, names);
    if (line) found.append({number, line->properties});
  }
  return found;
}

bool BusMenu::isAboutToShow(int number) {
  if (number != wholeMenu || !begins(MenuSign::aboutToShow)) return false;
  replace();
  return true;
}

bool BusMenu::receive(int number, const QString& event) {
  if (event == QLatin1String("clicked")) return choose(number);
  if (number != wholeMenu) return item(number) != nullptr;
  if (event == QLatin1String("closed")) openings_.menuWasClosed();
  if (event == QLatin1String("opened") && begins(MenuSign::opened)) replace();
  return true;
}

bool BusMenu::choose(int number) {
  const auto chosen = item(number);
  if (!chosen) return false;
  mainQueue().async([chosen] { performAction(chosen); });
  return true;
}

std::shared_ptr<MenuItem> BusMenu::item(int number) const {
  const auto found = current_.item(number);
  return found ? found : former_.item(number);
}

}  // namespace vistrel::platform::linux_desktop
