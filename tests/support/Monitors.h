#pragma once

#include <string>

#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// Cuts the one screen of a private display up into monitors (RandR 1.5), as a person's desk has
/// them. Until the first one is set, the whole screen is one. Every call returns once the server
/// has taken it in; programs get to know a little later.
class Monitors {
 public:
  /// `connection` outlives this object. Throws std::runtime_error when the server lacks RandR 1.5.
  explicit Monitors(const XConnection& connection);

  /// Makes the monitor that stands for the screen's output, and is the primary one. Another one
  /// that did so goes; its name is not to be used again at once.
  void setPrimary(const std::string& name, Rect area) const;
  /// Makes another one.
  void set(const std::string& name, Rect area) const;
  void remove(const std::string& name) const;

 private:
  void send(const std::string& name, Rect area, bool isPrimary) const;

  const XConnection* connection_;
};

}  // namespace vistrel::testbed
