#pragma once

#include "tests/support/PersonInput.h"
#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// A hand at work on windows of X in a Wayland session, no faster than a person's: between the
/// compositor and a program stands the X server, which gets to know the pointer's place from one
/// motion to the next. It takes a press for one on the root window when the pointer has left the
/// window again before it looks, and adds the window's place as it knows it to the pointer's place
/// in the window as the compositor knows it, which are of two moments while the window moves.
class HandOnX {
 public:
  using Button = PersonInput::Button;

  /// Both outlive this object.
  HandOnX(PersonInput& input, const XConnection& connection)
      : input_(&input), connection_(&connection) {}

  /// Moves there, in the compositor's logical pixels, and trembles until the server knows it.
  /// Throws std::runtime_error where no window of X gets the pointer.
  void pointAt(Point point);
  void clickAt(Point point, int count = 1, Button button = Button::left);
  void drag(Point from, Point to);

 private:
  bool isHolding() const;

  PersonInput* input_;
  const XConnection* connection_;
};

}  // namespace vistrel::testbed
