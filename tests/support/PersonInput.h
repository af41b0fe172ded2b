#pragma once

#include <cstdint>

#include "tests/support/Rect.h"

namespace vistrel::testbed {

/// A person's pointer and keyboard in a Wayland session, whose compositor cannot tell them from
/// real ones. Every call returns once the compositor has taken the input in; programs get it a
/// little later. All throws std::runtime_error when the compositor refuses.
class PersonInput {
 public:
  /// The kernel's numbers for the buttons (linux/input-event-codes.h).
  enum class Button : std::uint16_t { left = 0x110, right = 0x111, middle = 0x112 };

  PersonInput() = default;
  PersonInput(const PersonInput&) = delete;
  PersonInput& operator=(const PersonInput&) = delete;
  virtual ~PersonInput() = default;

  /// In the compositor's logical pixels.
  virtual void moveTo(Point point) = 0;
  void press(Button button = Button::left) { turn(button, true); }
  void release(Button button = Button::left) { turn(button, false); }
  void click(int count = 1, Button button = Button::left);
  void clickAt(Point point, int count = 1, Button button = Button::left);
  /// Presses at `from`, moves to `to` in straight steps, and releases there.
  void drag(Point from, Point to);
  /// Types the key with that number of the kernel's (linux/input-event-codes.h).
  void type(std::uint32_t key);
  void typeHolding(std::uint32_t modifier, std::uint32_t key);

 private:
  virtual void turn(Button button, bool isDown) = 0;
  virtual void turnKey(std::uint32_t key, bool isDown) = 0;
};

}  // namespace vistrel::testbed
