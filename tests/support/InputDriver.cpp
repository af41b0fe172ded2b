#include "tests/support/InputDriver.h"

#include <chrono>
#include <stdexcept>
#include <utility>
#include <xcb/xtest.h>

#include "tests/support/ManagerProbe.h"

namespace vistrel::testbed {

InputDriver::InputDriver(const XConnection& connection) : connection_(&connection) {
  const auto* extension = xcb_get_extension_data(connection.get(), &xcb_test_id);
  if (extension == nullptr || extension->present == 0) {
    throw std::runtime_error("the display server has no XTEST extension");
  }
}

void InputDriver::moveTo(Point point) { fake(XCB_MOTION_NOTIFY, 0, point); }

void InputDriver::press(Button button) {
  fake(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
}

void InputDriver::release(Button button) {
  fake(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

void InputDriver::click(int count, Button button) {
  inOneGo([&] {
    for (int i = 0; i < count; ++i) {
      if (i > 0) rest(betweenPresses);
      press(button);
      release(button);
    }
  });
}

void InputDriver::clickAt(Point point, int count, Button button) {
  moveTo(point);
  click(count, button);
}

void InputDriver::beginDrag() {
  press();
  // Managers hold presses back, and what moves meanwhile counts as before the press. One that hangs
  // is not waited for.
  constexpr std::chrono::seconds managersTime{5};
  static_cast<void>(isManagerDone(*connection_, managersTime));
  constexpr std::uint32_t beforeMoving = 100;
  rest(beforeMoving);
}

void InputDriver::drag(Point from, Point to, int steps) {
  moveTo(from);
  beginDrag();
  glide(from, to, steps);
  release();
}

void InputDriver::glide(Point from, Point to, int steps) {
  for (int step = 1; step <= steps; ++step) {
    moveTo({from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps});
  }
}

void InputDriver::type(std::uint32_t keysym) {
  const std::uint8_t keycode = keycodeOf(keysym);
  // In one piece: the server repeats a key whose release a busy machine sends half a second late.
  const bool wasGathering = std::exchange(isGathering_, true);
  fake(XCB_KEY_PRESS, keycode);
  fake(XCB_KEY_RELEASE, keycode);
  isGathering_ = wasGathering;
  deliver();
}

void InputDriver::typeHolding(std::uint32_t heldKeysym, std::uint32_t keysym, int count) {
  hold(heldKeysym);
  for (int i = 0; i < count; ++i) {
    type(keysym);
    rest(betweenPresses);
  }
  letGo(heldKeysym);
}

bool InputDriver::isTaken(std::uint32_t keysym, std::uint16_t modifiers) const {
  const std::uint8_t key = keycodeOf(keysym);
  xcb_connection_t* const xcb = connection_->get();
  // Nobody is to find it taken by this look at it.
  xcb_grab_server(xcb);
  const auto grab = xcb_grab_key_checked(xcb, 0, connection_->root(), modifiers, key,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const XReply<xcb_generic_error_t> refusal(xcb_request_check(xcb, grab));
  xcb_ungrab_key(xcb, key, connection_->root(), modifiers);
  xcb_ungrab_server(xcb);
  connection_->sync();
  return refusal != nullptr;
}

void InputDriver::fake(std::uint8_t event, std::uint8_t detail, Point point) {
  constexpr std::uint8_t coreDevice = 0;
  xcb_test_fake_input(connection_->get(), event, detail, std::exchange(rest_, 0),
                      connection_->root(), static_cast<std::int16_t>(point.x),
                      static_cast<std::int16_t>(point.y), coreDevice);
  deliver();
}

void InputDriver::beginGathering() {
  isGathering_ = true;
  xcb_grab_server(connection_->get());  // nobody else is served meanwhile
}

void InputDriver::endGathering() {
  xcb_ungrab_server(connection_->get());
  isGathering_ = false;
  deliver();
}

void InputDriver::deliver() const {
  if (!isGathering_) connection_->sync();
}

std::uint8_t InputDriver::keycodeOf(std::uint32_t keysym) const {
  const xcb_setup_t* setup = xcb_get_setup(connection_->get());
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const XReply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
      connection_->get(), xcb_get_keyboard_mapping(connection_->get(), setup->min_keycode, count),
      nullptr));
  if (reply) {
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    for (int key = 0; key < count; ++key) {
      if (keysyms[key * reply->keysyms_per_keycode] == keysym) {
        return static_cast<std::uint8_t>(setup->min_keycode + key);
      }
    }
  }
  throw std::runtime_error("no key has this keysym");
}

}  // namespace vistrel::testbed
