#include "tests/support/GlobalMenu.h"

#include <stdexcept>
#include <string_view>
#include <system_error>

namespace vistrel::testbed {
namespace {

constexpr const char* registrar = "com.canonical.AppMenu.Registrar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

void check(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(-result, std::generic_category(), what);
  }
}

/// As a desktop shows it: "__" is one "_", and another "_" marks the character after it as an
/// access key, which nobody sees of a word joiner.
std::string shownLabel(std::string label) {
  constexpr std::string_view marksNothingSeen = "_\u2060";
  for (std::size_t at = 0; (at = label.find('_', at)) != std::string::npos;) {
    if (label.compare(at, 2, "__") == 0) {
      label.erase(at++, 1);
    } else if (label.compare(at, marksNothingSeen.size(), marksNothingSeen) == 0) {
      label.erase(at, marksNothingSeen.size());
    } else {
      label.replace(at, 1, "[access key]");
    }
  }
  return label;
}

void readProperty(BusMessage& message, GlobalMenu::Line& line) {
  const std::string name = message.text();
  if (name == "label") {
    line.label = message.structure(
        "s", [&] { return shownLabel(message.text()); }, SD_BUS_TYPE_VARIANT);
  } else if (name == "enabled") {
    line.isEnabled = message.structure(
        "b", [&] { return message.truth(); }, SD_BUS_TYPE_VARIANT);
  } else if (name == "type") {  // there is but one
    message.skip("v");
    line.label = "---";
  } else {
    message.skip("v");
  }
}

/// A line is (ia{sv}av): its number, its properties, and those below it.
GlobalMenu::Line readLine(BusMessage& message) {
  GlobalMenu::Line line;
  line.id = message.signedNumber();
  message.array("{sv}", [&] {
    message.structure(
        "sv", [&] { return readProperty(message, line), 0; }, SD_BUS_TYPE_DICT_ENTRY);
  });
  message.array("v", [&] {
    line.lines.push_back(message.structure(
        "(ia{sv}av)",
        [&] { return message.structure("ia{sv}av", [&] { return readLine(message); }); },
        SD_BUS_TYPE_VARIANT));
  });
  return line;
}

const GlobalMenu::Line* find(const GlobalMenu::Line& line, const std::string& label) {
  if (line.label == label) {
    return &line;
  }
  for (const GlobalMenu::Line& each : line.lines) {
    if (const auto* found = find(each, label)) {
      return found;
    }
  }
  return nullptr;
}

void write(std::string& outline, const GlobalMenu::Line& line, std::size_t depth) {
  outline.append(2 * depth, ' ');
  outline += line.isEnabled ? line.label : "(" + line.label + ")";
  outline += '\n';
  for (const GlobalMenu::Line& each : line.lines) {
    write(outline, each, depth + 1);
  }
}

}  // namespace

GlobalMenu::GlobalMenu(const PrivateDisplay& display)
    : asking_(connectToBus(display.busAddress())), serving_(connectToBus(display.busAddress())) {
  static const sd_bus_vtable methods[] = {
      SD_BUS_VTABLE_START(0),
      SD_BUS_METHOD("RegisterWindow", "uo", "", &GlobalMenu::registerWindow,
                    SD_BUS_VTABLE_UNPRIVILEGED),
      SD_BUS_METHOD("UnregisterWindow", "u", "", &GlobalMenu::unregisterWindow,
                    SD_BUS_VTABLE_UNPRIVILEGED),
      SD_BUS_VTABLE_END};
  sd_bus_slot* slot = nullptr;
  check(sd_bus_add_object_vtable(serving_.get(), &slot, "/com/canonical/AppMenu/Registrar",
                                 registrar, methods, this),
        registrar);
  slot_.reset(slot);
  check(sd_bus_request_name(serving_.get(), registrar, 0), registrar);
  server_ = std::jthread([this](const std::stop_token& stop) { serve(stop); });
}

void GlobalMenu::serve(const std::stop_token& stop) const {
  constexpr std::uint64_t microseconds = 20'000;
  while (!stop.stop_requested()) {
    if (sd_bus_process(serving_.get(), nullptr) == 0) {
      sd_bus_wait(serving_.get(), microseconds);
    }
  }
}

int GlobalMenu::registerWindow(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
  std::uint32_t window = 0;
  const char* path = nullptr;
  const int result = sd_bus_message_read(call, "uo", &window, &path);
  if (result < 0) {
    return result;
  }
  auto& menu = *static_cast<GlobalMenu*>(self);
  const std::lock_guard lock(menu.mutex_);
  menu.menus_[window] = {sd_bus_message_get_sender(call), path};
  return sd_bus_reply_method_return(call, "");
}

int GlobalMenu::unregisterWindow(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
  std::uint32_t window = 0;
  const int result = sd_bus_message_read(call, "u", &window);
  if (result < 0) {
    return result;
  }
  auto& menu = *static_cast<GlobalMenu*>(self);
  const std::lock_guard lock(menu.mutex_);
  menu.menus_.erase(window);
  return sd_bus_reply_method_return(call, "");
}

std::optional<GlobalMenu::Registered> GlobalMenu::registered(xcb_window_t window) const {
  const std::lock_guard lock(mutex_);
  const auto found = menus_.find(window);
  return found == menus_.end() ? std::nullopt : std::optional(found->second);
}

BusObject GlobalMenu::menuOf(xcb_window_t window) const {
  const auto menu = registered(window);
  if (!menu) {
    throw std::runtime_error("the window has no menu");
  }
  return {asking_, menu->first, menu->second};
}

GlobalMenu::Line GlobalMenu::layout(xcb_window_t window) const {
  constexpr int root = 0;
  constexpr int allTheWayDown = -1;
  constexpr unsigned noProperties = 0;  // which means all
  BusMessage reply =
      menuOf(window).call(menuInterface, "GetLayout", "iias", root, allTheWayDown, noProperties);
  reply.number();  // the revision
  return reply.structure("ia{sv}av", [&] { return readLine(reply); });
}

GlobalMenu::Line GlobalMenu::line(xcb_window_t window, const std::string& label) const {
  const Line all = layout(window);
  const Line* found = find(all, label);
  if (found == nullptr) {
    throw std::runtime_error("no line \"" + label + "\" among:\n" + outline(all));
  }
  return *found;
}

std::string GlobalMenu::outline(xcb_window_t window) const { return outline(layout(window)); }

std::string GlobalMenu::outline(const Line& line) {
  std::string text;
  for (const Line& each : line.lines) {
    write(text, each, 0);
  }
  return text;
}

void GlobalMenu::open(xcb_window_t window, const std::string& label) const {
  menuOf(window).call(menuInterface, "AboutToShow", "i", line(window, label).id);
}

void GlobalMenu::choose(xcb_window_t window, const std::string& label) const {
  menuOf(window).call(menuInterface, "Event", "isvu", line(window, label).id, "clicked", "i", 0,
                      0u);
}

}  // namespace vistrel::testbed
