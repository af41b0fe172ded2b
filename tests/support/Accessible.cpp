#include "tests/support/Accessible.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace vistrel::testbed {
namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* actionInterface = "org.a11y.atspi.Action";
constexpr const char* componentInterface = "org.a11y.atspi.Component";

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) {
    all += (all.empty() ? "" : ", ") + text;
  }
  return all;
}

}  // namespace

std::string Accessible::role() const {
  return object_.call(accessibleInterface, "GetRoleName").text();
}

bool Accessible::is(AccessibleState state) const {
  BusMessage reply = object_.call(accessibleInterface, "GetState");
  std::vector<std::uint32_t> words;
  reply.array("u", [&] { words.push_back(reply.number()); });
  constexpr unsigned bitsPerWord = 32;
  const auto bit = static_cast<unsigned>(state);
  return (words.at(bit / bitsPerWord) >> bit % bitsPerWord & 1U) != 0;
}

Rect Accessible::areaIn(std::uint32_t coordinates) const {
  BusMessage reply = object_.call(componentInterface, "GetExtents", "u", coordinates);
  return reply.structure("iiii", [&] {
    std::array<std::int32_t, 4> sides{};
    std::ranges::generate(sides, [&] { return reply.signedNumber(); });
    return Rect{sides[0], sides[1], sides[2], sides[3]};
  });
}

Accessible Accessible::parent() const {
  BusMessage reply =
      object_.call("org.freedesktop.DBus.Properties", "Get", "ss", accessibleInterface, "Parent");
  return reply.structure(
      "(so)", [&] { return readObject(reply); }, SD_BUS_TYPE_VARIANT);
}

std::vector<Accessible> Accessible::children() const {
  BusMessage reply = object_.call(accessibleInterface, "GetChildren");
  std::vector<Accessible> children;
  reply.array("(so)", [&] { children.push_back(readObject(reply)); });
  return children;
}

Accessible Accessible::at(Point onScreen) const {
  BusMessage reply = object_.call(componentInterface, "GetAccessibleAtPoint", "iiu", onScreen.x,
                                  onScreen.y, screenCoordinates);
  return readObject(reply);
}

std::vector<std::string> Accessible::actions() const {
  std::vector<std::string> names;
  if (!implements(actionInterface)) {
    return names;
  }
  BusMessage reply = object_.call(actionInterface, "GetActions");
  reply.array("(sss)", [&] {
    names.push_back(reply.structure("sss", [&] {
      std::string name = reply.text();
      reply.text();  // its description
      reply.text();  // its keys
      return name;
    }));
  });
  return names;
}

void Accessible::perform(const std::string& action) const {
  const std::vector<std::string> names = actions();
  const auto found = std::ranges::find(names, action);
  if (found == names.end()) {
    throw std::runtime_error("no action " + action + " among: " + joined(names));
  }
  object_.call(actionInterface, "DoAction", "i", static_cast<std::int32_t>(found - names.begin()));
}

bool Accessible::isDefunct() const {
  try {
    role();
    return false;
  } catch (const BusError&) {
    return true;
  }
}

std::vector<Accessible> Accessible::all(const std::string& role) const {
  std::vector<Accessible> found;
  walk([&](const Accessible& object, std::size_t /*depth*/) {
    if (object.role() == role) {
      found.push_back(object);
    }
    return true;
  });
  return found;
}

Accessible Accessible::only(const std::string& role, const std::string& name) const {
  std::vector<Accessible> found = all(role);
  std::erase_if(found, [&](const Accessible& object) { return object.name() != name; });
  if (found.size() != 1) {
    throw std::runtime_error(std::to_string(found.size()) + " objects are a " + role + " \"" +
                             name + "\":\n" + outline());
  }
  return found.front();
}

std::string Accessible::outline() const {
  std::string text;
  walk([&](const Accessible& object, std::size_t depth) {
    if (depth > 0 && !object.is(AccessibleState::showing)) {
      return false;
    }
    text.append(depth * 2, ' ').append(object.line()).append("\n");
    return true;
  });
  return text;
}

std::string Accessible::line() const {
  std::string text = role() + " \"" + name() + "\"";
  if (const std::string more = description(); !more.empty()) {
    text += " (" + more + ")";
  }
  if (const std::string names = joined(actions()); !names.empty()) {
    text += " [" + names + "]";
  }
  return text;
}

void Accessible::walk(const Visit& visit, std::size_t depth) const {
  try {
    if (!visit(*this, depth)) {
      return;
    }
    for (const Accessible& child : children()) {
      child.walk(visit, depth + 1);
    }
  } catch (const BusError&) {
    return;
  }
}

std::string Accessible::property(const char* name) const {
  BusMessage reply =
      object_.call("org.freedesktop.DBus.Properties", "Get", "ss", accessibleInterface, name);
  return reply.structure(
      "s", [&] { return reply.text(); }, SD_BUS_TYPE_VARIANT);
}

bool Accessible::implements(const char* interface) const {
  BusMessage reply = object_.call(accessibleInterface, "GetInterfaces");
  bool found = false;
  reply.array("s", [&] { found |= reply.text() == interface; });
  return found;
}

Accessible Accessible::readObject(BusMessage& message) const {
  return message.structure("so", [&] {
    std::string program = message.text();
    return Accessible({object_.bus(), std::move(program), message.path()});
  });
}

}  // namespace vistrel::testbed
