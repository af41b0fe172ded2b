#pragma once

#include <cstdint>
#include <utility>

#include "tests/support/Rect.h"
#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// A person's pointer and keyboard, through the XTEST extension: the server cannot tell them from
/// real ones. Every call returns once the server has taken the input in; programs get it a little
/// later.
class InputDriver {
 public:
  /// X's numbers for the buttons.
  enum class Button : std::uint8_t { left = 1, middle = 2, right = 3 };

  /// `connection` outlives this object. Throws std::runtime_error when the server lacks XTEST.
  explicit InputDriver(const XConnection& connection);

  void moveTo(Point point);
  void press(Button button = Button::left);
  void release(Button button = Button::left);
  /// Two presses within one millisecond of the server's clock are no double-click to toolkits.
  static constexpr std::uint32_t betweenPresses = 20;

  /// All that `input` does with this hand follows without a pause, even while this process is held
  /// up: programs tell a double-click from two clicks by the server's clock.
  template <class Input>
  void inOneGo(const Input& input) {
    const bool isPartOfAnother = std::exchange(isGathering_, true);
    input();
    isGathering_ = isPartOfAnother;
    deliver();
  }

  /// Clicks where the pointer is, `count` times, fast enough for a double-click also where the
  /// server has much to do for others.
  void click(int count = 1, Button button = Button::left);
  void clickAt(Point point, int count = 1, Button button = Button::left);
  /// Presses where the pointer is and rests a moment, as a hand does before it moves. A manager may
  /// hold a press back until it has dealt with it (a synchronous grab), and the server takes what
  /// moves meanwhile for having moved before.
  void beginDrag();
  /// Presses at `from`, moves to `to` in `steps` straight steps, and releases there.
  void drag(Point from, Point to, int steps = 8);
  /// Moves from `from` to `to` in `steps` straight steps.
  void glide(Point from, Point to, int steps);

  /// Types the key that has `keysym` (X11/keysymdef.h) in the server's keyboard mapping. Throws
  /// std::runtime_error when no key has it.
  void type(std::uint32_t keysym);
  /// Types it `count` times while the key with `heldKeysym` is down.
  void typeHolding(std::uint32_t heldKeysym, std::uint32_t keysym, int count = 1);

  /// Presses the key, which stays down until `letGo`.
  void hold(std::uint32_t keysym) { fake(XCB_KEY_PRESS, keycodeOf(keysym)); }
  void letGo(std::uint32_t keysym) { fake(XCB_KEY_RELEASE, keycodeOf(keysym)); }
  /// Whether pressing the key with these modifiers goes to one program wherever the focus is (a
  /// passive grab).
  bool isTaken(std::uint32_t keysym, std::uint16_t modifiers = 0) const;

  /// The hand rests: the server holds back the input that follows by so many milliseconds, so that
  /// two clicks are two and not one double-click.
  void rest(std::uint32_t milliseconds) { rest_ = milliseconds; }

 private:
  void fake(std::uint8_t event, std::uint8_t detail, Point point = {});
  /// Unless more is to go with it.
  void deliver() const;
  std::uint8_t keycodeOf(std::uint32_t keysym) const;

  const XConnection* connection_;
  std::uint32_t rest_ = 0;
  bool isGathering_ = false;
};

/// Keysyms that tests type (X11/keysymdef.h).
inline constexpr std::uint32_t keyControl = 0xffe3;
inline constexpr std::uint32_t keyShift = 0xffe1;
inline constexpr std::uint32_t keyTab = 0xff09;
inline constexpr std::uint32_t keyAlt = 0xffe9;
inline constexpr std::uint32_t keyReturn = 0xff0d;
inline constexpr std::uint32_t keyRight = 0xff53;
inline constexpr std::uint32_t keyUp = 0xff52;
inline constexpr std::uint32_t keyDown = 0xff54;
inline constexpr std::uint32_t keyMenu = 0xff67;
inline constexpr std::uint32_t keyF10 = 0xffc7;
inline constexpr std::uint32_t keyEscape = 0xff1b;

}  // namespace vistrel::testbed
