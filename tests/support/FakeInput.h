#pragma once

#include <cstdint>
#include <memory>

#include "tests/support/Rect.h"
#include "tests/support/WaylandClient.h"

struct org_kde_kwin_fake_input;

namespace vistrel::testbed {

/// A person's pointer and keyboard in a session of KWin, which cannot tell them from real ones.
/// Every call returns once the compositor has passed the input on; programs get it a little later.
class FakeInput {
 public:
  /// The kernel's numbers for the buttons (linux/input-event-codes.h).
  enum class Button : std::uint16_t { left = 0x110, right = 0x111, middle = 0x112 };

  /// `client` outlives this object. Throws std::runtime_error where this is not granted.
  explicit FakeInput(const WaylandClient& client);
  FakeInput(const FakeInput&) = delete;
  FakeInput& operator=(const FakeInput&) = delete;
  ~FakeInput();

  /// In the compositor's logical pixels.
  void moveTo(Point point);
  void press(Button button = Button::left);
  void release(Button button = Button::left);
  void click(int count = 1, Button button = Button::left);
  void clickAt(Point point, int count = 1, Button button = Button::left);
  /// Types the key with that number of the kernel's (linux/input-event-codes.h).
  void type(std::uint32_t key);

 private:
  const WaylandClient* client_;
  org_kde_kwin_fake_input* input_;
};

}  // namespace vistrel::testbed
