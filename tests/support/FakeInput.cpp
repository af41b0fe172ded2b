#include "tests/support/FakeInput.h"

#include <fake-input.h>

namespace vistrel::testbed {
namespace {

std::uint32_t stateOf(bool isDown) { return isDown ? 1 : 0; }

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

void FakeInput::turn(Button button, bool isDown) {
  org_kde_kwin_fake_input_button(input_, static_cast<std::uint32_t>(button), stateOf(isDown));
  client_->sync();
}

void FakeInput::turnKey(std::uint32_t key, bool isDown) {
  org_kde_kwin_fake_input_keyboard_key(input_, key, stateOf(isDown));
  client_->sync();
}

}  // namespace vistrel::testbed
