#include "platform/linux/wayland/kwin/GlobalMenuKeys.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr const char* service = "org.kde.kglobalaccel";
constexpr const char* component = "com.tollbeck.vistrel";
/// What begins so is neither kept beyond the session nor listed in settings.
constexpr const char* action = "_k_session:context-menu";
constexpr const char* pathOfComponent = "/component/com_tollbeck_vistrel";

/// Qt::Key_Menu; Qt::SHIFT and Qt::Key_F10.
constexpr std::array<std::int32_t, 2> menuKeys{0x01000055, 0x02000000 | 0x01000039};

/// KGlobalAccel's flags: SetPresent, and NoAutoloading, without which former keys would be loaded.
constexpr std::uint32_t asToldNow = 2 | 4;

void appendAction(sd_bus_message& call) {
  sd_bus_message_append(&call, "as", 4, component, action, "Vistrel", "Context menu of a panel");
}

}  // namespace

std::unique_ptr<GlobalMenuKeys> GlobalMenuKeys::connect(std::function<void()> pressed) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return nullptr;
  return std::unique_ptr<GlobalMenuKeys>(new GlobalMenuKeys(bus, std::move(pressed)));
}

GlobalMenuKeys::GlobalMenuKeys(sd_bus* bus, std::function<void()> pressed)
    : bus_(bus), pressed_(std::move(pressed)) {
  const auto rule = std::string("type='signal',sender='") + service + "',path='" + pathOfComponent +
                    "',interface='org.kde.kglobalaccel.Component',member='globalShortcutPressed'";
  sd_bus_add_match_async(bus, nullptr, rule.c_str(), hear, nullptr, this);
}

int GlobalMenuKeys::hear(sd_bus_message* signal, void* keys, sd_bus_error* /*error*/) {
  const char* ofComponent = nullptr;
  const char* pressed = nullptr;
  if (sd_bus_message_read(signal, "ss", &ofComponent, &pressed) > 0 &&
      std::string_view(pressed) == action) {
    static_cast<GlobalMenuKeys*>(keys)->pressed_();
  }
  return 0;
}

void GlobalMenuKeys::take() {
  call("doRegister", appendAction);
  call("setShortcut", [](sd_bus_message& call) {
    appendAction(call);
    sd_bus_message_append_array(&call, SD_BUS_TYPE_INT32, menuKeys.data(), sizeof menuKeys);
    sd_bus_message_append_basic(&call, SD_BUS_TYPE_UINT32, &asToldNow);
  });
}

void GlobalMenuKeys::release() {
  call("unregister",
       [](sd_bus_message& call) { sd_bus_message_append(&call, "ss", component, action); });
}

void GlobalMenuKeys::call(const char* method,
                          const std::function<void(sd_bus_message& call)>& write) {
  sd_bus_message* message = nullptr;
  if (sd_bus_message_new_method_call(bus_.get(), &message, service, "/kglobalaccel",
                                     "org.kde.KGlobalAccel", method) < 0) {
    return;
  }
  write(*message);
  // Nobody else's service of that name is started for it.
  sd_bus_message_set_auto_start(message, 0);
  sd_bus_message_set_expect_reply(message, 0);
  sd_bus_send(bus_.get(), message, nullptr);
  sd_bus_message_unref(message);
  sd_bus_flush(bus_.get());
}

int GlobalMenuKeys::descriptor() const { return sd_bus_get_fd(bus_.get()); }

bool GlobalMenuKeys::serve() {
  int processed = 0;
  do {
    processed = sd_bus_process(bus_.get(), nullptr);
  } while (processed > 0);
  return processed >= 0;
}

}  // namespace vistrel::platform::linux_desktop
