#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

#include "tests/support/DBus.h"
#include "tests/support/Rect.h"
#include "tests/support/WaylandSession.h"

namespace vistrel::testbed {

/// JavaScript inside gnome-shell, to look at what it knows of windows and to do with them what a
/// person does. Everything here throws std::runtime_error when gnome-shell does not do it.
class GnomeShell {
 public:
  /// In a session with `isGnomeShell`.
  explicit GnomeShell(const WaylandSession& session);

  /// The value of an expression, as JSON. In scope is `win(title)`, the MetaWindow with that title.
  std::string evaluate(const std::string& javaScript) const;

  /// Where the window with that title is without its shadow, in logical pixels; none where there is
  /// no such window.
  std::optional<Rect> frameOf(const std::string& title) const;
  /// Whether the pointer is there, over that window.
  bool isPointedAt(const std::string& title, Point point) const;
  pid_t processOf(const std::string& title) const;
  void moveTo(const std::string& title, Point origin) const;
  /// Gives it the keyboard too.
  void raise(const std::string& title) const;

 private:
  BusObject shell_;
};

}  // namespace vistrel::testbed
