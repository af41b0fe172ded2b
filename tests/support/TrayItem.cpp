#include "tests/support/TrayItem.h"

#include <stdexcept>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

constexpr const char* menuInterface = "com.canonical.dbusmenu";

/// A property that has been given; those that matter to no test are passed over.
void readProperty(BusMessage& message, TrayMenuLine& line) {
  const auto value = [&](const char* type, const auto& read) {
    return message.structure(type, read, SD_BUS_TYPE_VARIANT);
  };
  const auto text = [&] { return value("s", [&] { return message.text(); }); };
  const std::string name = message.text();
  if (name == "label") {
    line.label = text();
  } else if (name == "type") {
    line.isSeparator = text() == "separator";
  } else if (name == "children-display") {
    line.opensSubmenu = text() == "submenu";
  } else if (name == "toggle-type") {
    line.isCheckable = text() == "checkmark";
  } else if (name == "toggle-state") {
    line.isOn = value("i", [&] { return message.signedNumber(); }) == 1;
  } else if (name == "enabled") {
    line.isEnabled = value("b", [&] { return message.truth(); });
  } else {
    throw std::runtime_error("a property of no line: " + name);
  }
}

TrayMenuLine readLine(BusMessage& message) {
  return message.structure("ia{sv}av", [&] {
    TrayMenuLine line{.number = message.signedNumber()};
    message.array("{sv}", [&] {
      message.structure(
          "sv",
          [&] {
            readProperty(message, line);
            return true;
          },
          SD_BUS_TYPE_DICT_ENTRY);
    });
    message.array("v", [&] {
      line.children.push_back(message.structure(
          "(ia{sv}av)", [&] { return readLine(message); }, SD_BUS_TYPE_VARIANT));
    });
    return line;
  });
}

void write(const std::vector<TrayMenuLine>& lines, const std::string& indent, std::string& text) {
  for (const TrayMenuLine& line : lines) {
    const std::string title = line.isSeparator ? "---" : line.title();
    const bool isDull = !line.isEnabled && !line.isSeparator;
    text +=
        indent + (line.isCheckable && line.isOn ? "✓ " : "") + (isDull ? "(" + title + ")" : title);
    text += line.opensSubmenu ? " ▸\n" : "\n";
    write(line.children, indent + "    ", text);
  }
}

const TrayMenuLine* find(const std::vector<TrayMenuLine>& menu, const std::string& title) {
  for (const TrayMenuLine& line : menu) {
    if (line.title() == title) return &line;
    if (const auto* below = find(line.children, title)) return below;
  }
  return nullptr;
}

}  // namespace

// The protocol: "two consecutive underscore characters "__" are displayed as a single underscore,
// any remaining underscore characters are not displayed at all".
std::string TrayMenuLine::title() const {
  std::string shown;
  for (std::size_t i = 0; i < label.size(); ++i) {
    if (label[i] == '_' && ++i == label.size()) break;
    shown += label[i];
  }
  return shown;
}

std::string textOf(const std::vector<TrayMenuLine>& lines) {
  std::string text;
  write(lines, "", text);
  return text;
}

TrayItem::TrayItem(BusObject item)
    : item_(std::move(item)),
      menu_(item_.bus(), item_.program(),
            property("Menu", "o", [](BusMessage& value) { return value.path(); })) {
  const BusObject bus(item_.bus(), "org.freedesktop.DBus", "/org/freedesktop/DBus");
  bus.call("org.freedesktop.DBus", "AddMatch", "s",
           "type='signal',interface='com.canonical.dbusmenu',member='LayoutUpdated'");
}

std::string TrayItem::text(const char* name) const {
  return property(name, "s", [](BusMessage& value) { return value.text(); });
}

bool TrayItem::truth(const char* name) const {
  return property(name, "b", [](BusMessage& value) { return value.truth(); });
}

std::vector<TrayItem::Pixmap> TrayItem::pixmaps() const {
  return property("IconPixmap", "a(iiay)", [](BusMessage& value) {
    std::vector<Pixmap> pixmaps;
    value.array("(iiay)", [&] {
      pixmaps.push_back(value.structure("iiay", [&] {
        const int width = value.signedNumber();
        const int height = value.signedNumber();
        return Pixmap{width, height, value.bytes()};
      }));
    });
    return pixmaps;
  });
}

std::string TrayItem::toolTipTitle() const {
  return property("ToolTip", "(sa(iiay)ss)", [](BusMessage& value) {
    return value.structure("sa(iiay)ss", [&] {
      value.text();
      value.array("(iiay)", [] { throw std::runtime_error("a picture in a tooltip"); });
      std::string title = value.text();
      value.text();
      return title;
    });
  });
}

std::vector<TrayMenuLine> TrayItem::openMenu(Opening opening) {
  while (wasToldOfNewLayout()) continue;
  if (opening == Opening::asked) {
    const bool isOutdated = menu_.call(menuInterface, "AboutToShow", "i", wholeMenu).truth();
    if (isOutdated) lastRead_ = readMenu();
    tell(wholeMenu, "opened");
    while (wasToldOfNewLayout()) continue;
    return lastRead_;
  }
  if (opening == Opening::askedInVain) {
    menu_.call(menuInterface, "AboutToShowGroup", "ai", 1, wholeMenu);
    waitUntilToldOfNewLayout();
  } else if (opening == Opening::told) {
    tell(wholeMenu, "opened");
    waitUntilToldOfNewLayout();
  }
  return lastRead_ = readMenu();
}

void TrayItem::choose(const std::vector<TrayMenuLine>& menu, const std::string& title) const {
  const TrayMenuLine* const line = find(menu, title);
  if (line == nullptr) {
    throw std::runtime_error("no line \"" + title + "\" among:\n" + textOf(menu));
  }
  tell(line->number, "clicked");
  try {
    closeMenu();
  } catch (const BusError&) {  // the line may have been the one that ends the program
  }
}

std::vector<TrayMenuLine> TrayItem::readMenu() const {
  constexpr int all = -1;
  // No names of properties: all of them.
  BusMessage reply = menu_.call(menuInterface, "GetLayout", "iias", wholeMenu, all, 0);
  reply.number();
  return readLine(reply).children;
}

void TrayItem::tell(int number, const char* event) const {
  menu_.call(menuInterface, "Event", "isvu", number, event, "s", "", 0);
}

void TrayItem::waitUntilToldOfNewLayout() {
  if (!eventually([&] { return wasToldOfNewLayout(); })) {
    throw std::runtime_error("the menu stays what it was");
  }
}

bool TrayItem::wasToldOfNewLayout() {
  sd_bus_message* raw = nullptr;
  while (sd_bus_process(menu_.bus().get(), &raw) > 0) {
    if (raw == nullptr) continue;
    const BusMessage message(raw);
    if (sd_bus_message_is_signal(raw, menuInterface, "LayoutUpdated") > 0) return true;
  }
  return false;
}

}  // namespace vistrel::testbed
