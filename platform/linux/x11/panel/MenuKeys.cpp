#include "platform/linux/x11/panel/MenuKeys.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/linux/x11/server/ServedConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

// X11/keysymdef.h.
constexpr xcb_keysym_t keyMenu = 0xff67;
constexpr xcb_keysym_t keyF10 = 0xffc7;

/// Caps Lock, and Num Lock and Scroll Lock where keyboards have them: they are no part of a
/// shortcut.
constexpr std::uint16_t locks[] = {XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_5};

/// `modifiers` with every choice of locks.
std::vector<std::uint16_t> withLocks(std::uint16_t modifiers) {
  std::vector<std::uint16_t> all{modifiers};
  for (const auto lock : locks) {
    const auto count = all.size();
    for (std::size_t i = 0; i < count; ++i) all.push_back(all[i] | lock);
  }
  return all;
}

}  // namespace

std::shared_ptr<MenuKeys> MenuKeys::on(const std::shared_ptr<SerialQueue>& queue,
                                       std::function<void()> pressed) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  std::shared_ptr<MenuKeys> keys(new MenuKeys(std::move(connection), std::move(pressed)));
  queue->async([queue = queue.get(), keys] {
    serveOn(*queue, *keys->connection_, [keys] { keys->serve(); });
  });
  return keys;
}

MenuKeys::MenuKeys(std::unique_ptr<Connection> connection, std::function<void()> pressed)
    : connection_(std::move(connection)), pressed_(std::move(pressed)) {}

void MenuKeys::take() {
  release();
  for (const auto& key : keysOfKeyboard()) {
    const auto grabbed =
        xcb_grab_key_checked(connection_->xcb(), 0, connection_->root(), key.modifiers, key.code,
                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    if (!failureOf(connection_->xcb(), grabbed)) taken_.push_back(key);
  }
}

void MenuKeys::release() {
  for (const auto& key : std::exchange(taken_, {})) {
    xcb_ungrab_key(connection_->xcb(), key.code, connection_->root(), key.modifiers);
  }
  connection_->flush();
}

void MenuKeys::serve() {
  connection_->serve([this](const xcb_generic_event_t& event) { handle(event); });
}

void MenuKeys::handle(const xcb_generic_event_t& event) {
  if (typeOf(event) == XCB_MAPPING_NOTIFY && !taken_.empty()) return take();
  if (typeOf(event) != XCB_KEY_PRESS) return;
  // The press has given us the whole keyboard, which the menu is about to need.
  xcb_ungrab_keyboard(connection_->xcb(), XCB_CURRENT_TIME);
  connection_->sync();
  pressed_();
}

std::vector<MenuKeys::Key> MenuKeys::keysOfKeyboard() {
  const auto* setup = xcb_get_setup(connection_->xcb());
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const auto mapping = replyTo<xcb_get_keyboard_mapping_reply>(
      connection_->xcb(), xcb_get_keyboard_mapping(connection_->xcb(), setup->min_keycode, count));
  if (!mapping) return {};
  const auto* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
  std::vector<Key> keys;
  for (int i = 0; i < count; ++i) {
    const auto symbol = symbols[std::ptrdiff_t{i} * mapping->keysyms_per_keycode];
    if (symbol != keyMenu && symbol != keyF10) continue;
    const auto code = static_cast<xcb_keycode_t>(setup->min_keycode + i);
    for (const auto modifiers : withLocks(symbol == keyF10 ? XCB_MOD_MASK_SHIFT : 0)) {
      keys.push_back({code, modifiers});
    }
  }
  return keys;
}

}  // namespace vistrel::platform::linux_desktop
