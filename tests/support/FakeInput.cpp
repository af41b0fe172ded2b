#include "tests/support/FakeInput.h"

#include <fake-input.h>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

constexpr std::uint32_t isUp = 0;
constexpr std::uint32_t isDown = 1;

}  // namespace

FakeInput::FakeInput(const WaylandClient& client)
    : client_(&client),
      input_(client.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4)) {
  org_kde_kwin_fake_input_authenticate(input_, "Test", "stands in for a person");
  client_->sync();
}

FakeInput::~FakeInput() { org_kde_kwin_fake_input_destroy(input_); }

void FakeInput::moveTo(Point point) {
  org_kde_kwin_fake_input_pointer_motion_absolute(input_, wl_fixed_from_int(point.x),
                                                  wl_fixed_from_int(point.y));
  client_->sync();
}

void FakeInput::press(Button button) {
  org_kde_kwin_fake_input_button(input_, static_cast<std::uint32_t>(button), isDown);
  client_->sync();
}

void FakeInput::release(Button button) {
  org_kde_kwin_fake_input_button(input_, static_cast<std::uint32_t>(button), isUp);
  client_->sync();
}

void FakeInput::click(int count, Button button) {
  for (int i = 0; i < count; ++i) {
    // Two presses within one millisecond of the server's clock are no double-click to toolkits.
    letOthersRun();
    press(button);
    release(button);
  }
}

void FakeInput::clickAt(Point point, int count, Button button) {
  moveTo(point);
  click(count, button);
}

void FakeInput::type(std::uint32_t key) {
  org_kde_kwin_fake_input_keyboard_key(input_, key, isDown);
  org_kde_kwin_fake_input_keyboard_key(input_, key, isUp);
  client_->sync();
}

}  // namespace vistrel::testbed
