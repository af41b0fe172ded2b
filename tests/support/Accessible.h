#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/DBus.h"
#include "tests/support/Rect.h"

namespace vistrel::testbed {

/// States of an object, by their numbers in AT-SPI 2 (AtspiStateType).
enum class AccessibleState : unsigned {
  active = 1,
  checked = 4,
  enabled = 8,
  focusable = 11,
  focused = 12,
  selectable = 22,
  selected = 23,
  sensitive = 24,
  showing = 25,
  visible = 30,
  checkable = 41,
};

/// An object of a program as a screen reader has it: what to ask. Asking one that is gone throws
/// BusError.
class Accessible {
 public:
  explicit Accessible(BusObject object) : object_(std::move(object)) {}

  const BusObject& object() const { return object_; }

  std::string role() const;
  std::string name() const { return property("Name"); }
  std::string description() const { return property("Description"); }
  bool is(AccessibleState state) const;
  /// On the screen.
  Rect area() const { return areaIn(screenCoordinates); }
  /// Of the window that it is in, where programs do not know their place on the screen.
  Rect areaInWindow() const { return areaIn(windowCoordinates); }
  Accessible parent() const;
  std::vector<Accessible> children() const;
  /// The innermost object that lies there; one whose path ends in "null" is none.
  Accessible at(Point onScreen) const;

  /// What a person can do to the object; empty when there is nothing.
  std::vector<std::string> actions() const;
  /// Does one of `actions()`. Throws std::runtime_error when it is none of them.
  void perform(const std::string& action) const;

  /// Whether the program no longer knows the object.
  bool isDefunct() const;

  /// The objects with that role, this one and those below it, parents first.
  std::vector<Accessible> all(const std::string& role) const;
  /// The one with that role and name. Throws std::runtime_error unless there is just one.
  Accessible only(const std::string& role, const std::string& name) const;
  /// This object and those that show below it, a line for each, indented by their depth:
  /// role "name" (description) [actions].
  std::string outline() const;

  friend bool operator==(const Accessible& a, const Accessible& b) {
    return a.object_ == b.object_;
  }

 private:
  // AtspiCoordType.
  static constexpr std::uint32_t screenCoordinates = 0;
  static constexpr std::uint32_t windowCoordinates = 1;

  Rect areaIn(std::uint32_t coordinates) const;
  std::string property(const char* name) const;
  bool implements(const char* interface) const;
  Accessible readObject(BusMessage& message) const;
  std::string line() const;

  /// Calls `visit` with each object from here down, parents first, and its depth below this one;
  /// goes no deeper where it answers false. Leaves out what goes while it is looked at.
  using Visit = std::function<bool(const Accessible& object, std::size_t depth)>;
  void walk(const Visit& visit, std::size_t depth = 0) const;

  BusObject object_;
};

}  // namespace vistrel::testbed
