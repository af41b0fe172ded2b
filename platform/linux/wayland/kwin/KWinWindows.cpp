#include "platform/linux/wayland/kwin/KWinWindows.h"

#include <algorithm>
#include <plasma-virtual-desktop.h>
#include <plasma-window-management.h>

#include "platform/linux/Utf8.h"

namespace vistrel::platform::linux_desktop {
namespace {

// KWin 5.27 offers 16, KWin 6 more, and both tell a client of 16 the same.
constexpr std::uint32_t newestManagement = 16;
// The first one that knows windows by their UUIDs.
constexpr std::uint32_t oldestManagement = 13;
constexpr std::uint32_t newestDesktops = 2;

}  // namespace

struct KWinWindows::Window {
  Window(KWinWindows& all, std::string name)
      : owner(all),
        uuid(std::move(name)),
        proxy(org_kde_plasma_window_management_get_window_by_uuid(all.management_, uuid.c_str())) {
    listen();
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() { org_kde_plasma_window_destroy(proxy); }

  static Window& of(void* self) { return *static_cast<Window*>(self); }
  void listen();

  KWinWindows& owner;
  const std::string uuid;
  org_kde_plasma_window* const proxy;
  std::string title;
  std::string applicationId;
  std::uint32_t states = 0;
  std::optional<std::int32_t> processId;
  Rect frame;
  std::set<std::string> desktops;
  bool isKnown = false;  // whether KWin has told all that there is at first
  bool hasGone = false;
};

void KWinWindows::Window::listen() {
  using Proxy = org_kde_plasma_window;
  static constexpr org_kde_plasma_window_listener listener{
      .title_changed = [](void* self, Proxy*, const char* text) { of(self).title = text; },
      .app_id_changed = [](void* self, Proxy*, const char* id) { of(self).applicationId = id; },
      .state_changed = [](void* self, Proxy*, std::uint32_t flags) { of(self).states = flags; },
      .virtual_desktop_changed = [](void*, Proxy*, std::int32_t) {},
      .themed_icon_name_changed = [](void*, Proxy*, const char*) {},
      .unmapped = [](void* self, Proxy*) { of(self).hasGone = true; },
      .initial_state = [](void* self, Proxy*) { of(self).isKnown = true; },
      .parent_window = [](void*, Proxy*, Proxy*) {},
      .geometry = [](void* self, Proxy*, std::int32_t x, std::int32_t y, std::uint32_t width,
                     std::uint32_t height) { of(self).frame = rect(x, y, width, height); },
      .icon_changed = [](void*, Proxy*) {},
      .pid_changed =
          [](void* self, Proxy*, std::uint32_t id) {
            if (id != 0) of(self).processId = static_cast<std::int32_t>(id);
          },
      .virtual_desktop_entered = [](void* self, Proxy*,
                                    const char* id) { of(self).desktops.insert(id); },
      .virtual_desktop_left = [](void* self, Proxy*,
                                 const char* id) { of(self).desktops.erase(id); },
      .application_menu = [](void*, Proxy*, const char*, const char*) {},
      .activity_entered = [](void*, Proxy*, const char*) {},
      .activity_left = [](void*, Proxy*, const char*) {},
      .resource_name_changed = [](void*, Proxy*, const char*) {},
  };
  org_kde_plasma_window_add_listener(proxy, &listener, this);
}

struct KWinWindows::Desktop {
  Desktop(org_kde_plasma_virtual_desktop_management* management, const std::string& id)
      : proxy(
            org_kde_plasma_virtual_desktop_management_get_virtual_desktop(management, id.c_str())) {
    using Proxy = org_kde_plasma_virtual_desktop;
    static constexpr org_kde_plasma_virtual_desktop_listener listener{
        .desktop_id = [](void*, Proxy*, const char*) {},
        .name = [](void*, Proxy*, const char*) {},
        .activated = [](void* self, Proxy*) { static_cast<Desktop*>(self)->isShown = true; },
        .deactivated = [](void* self, Proxy*) { static_cast<Desktop*>(self)->isShown = false; },
        .done = [](void*, Proxy*) {},
        .removed = [](void*, Proxy*) {},
    };
    org_kde_plasma_virtual_desktop_add_listener(proxy, &listener, this);
  }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop() { org_kde_plasma_virtual_desktop_destroy(proxy); }

  org_kde_plasma_virtual_desktop* const proxy;
  bool isShown = false;
};

bool KWinWindows::isOfferedOn(const WaylandConnection& connection) {
  return connection.versionOf(org_kde_plasma_window_management_interface.name) >=
             oldestManagement &&
         connection.versionOf(org_kde_plasma_virtual_desktop_management_interface.name) > 0;
}

KWinWindows::KWinWindows(WaylandConnection& connection)
    : connection_(connection),
      management_(connection.bind<org_kde_plasma_window_management>(
          org_kde_plasma_window_management_interface, newestManagement)),
      desktopManagement_(connection.bind<org_kde_plasma_virtual_desktop_management>(
          org_kde_plasma_virtual_desktop_management_interface, newestDesktops)) {
  using Management = org_kde_plasma_window_management;
  static constexpr org_kde_plasma_window_management_listener windows{
      .show_desktop_changed = [](void*, Management*, std::uint32_t) {},
      .window = [](void*, Management*, std::uint32_t) {},
      .stacking_order_changed = [](void*, Management*, wl_array*) {},
      .stacking_order_uuid_changed =
          [](void* self, Management*, const char* uuids) {
            static_cast<KWinWindows*>(self)->stacking_ = uuids;
          },
      .window_with_uuid = [](void* self, Management*, std::uint32_t,
                             const char* uuid) { static_cast<KWinWindows*>(self)->add(uuid); },
  };
  org_kde_plasma_window_management_add_listener(management_, &windows, this);
  using Desktops = org_kde_plasma_virtual_desktop_management;
  static constexpr org_kde_plasma_virtual_desktop_management_listener desktops{
      .desktop_created = [](void* self, Desktops*, const char* id,
                            std::uint32_t) { static_cast<KWinWindows*>(self)->addDesktop(id); },
      .desktop_removed =
          [](void* self, Desktops*, const char* id) {
            static_cast<KWinWindows*>(self)->desktops_.erase(id);
          },
      .done = [](void*, Desktops*) {},
      .rows = [](void*, Desktops*, std::uint32_t) {},
  };
  org_kde_plasma_virtual_desktop_management_add_listener(desktopManagement_, &desktops, this);
}

KWinWindows::~KWinWindows() {
  windows_.clear();
  desktops_.clear();
  org_kde_plasma_virtual_desktop_management_destroy(desktopManagement_);
  org_kde_plasma_window_management_destroy(management_);
}

void KWinWindows::add(const std::string& uuid) {
  windows_.insert_or_assign(uuid, std::make_unique<Window>(*this, uuid));
}

void KWinWindows::addDesktop(const std::string& id) {
  desktops_.insert_or_assign(id, std::make_unique<Desktop>(desktopManagement_, id));
}

bool KWinWindows::isActiveFullScreen() const {
  return std::any_of(windows_.begin(), windows_.end(), [](const auto& each) {
    const auto& window = *each.second;
    return !window.hasGone &&
           (window.states & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE) != 0 &&
           (window.states & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_FULLSCREEN) != 0;
  });
}

KWinWindow KWinWindows::described(const Window& window) const {
  const auto has = [&](std::uint32_t state) { return (window.states & state) != 0; };
  const bool isShown = window.desktops.empty() ||  // which means all
                       std::any_of(desktops_.begin(), desktops_.end(), [&](const auto& each) {
                         return each.second->isShown && window.desktops.contains(each.first);
                       });
  return {.uuid = window.uuid,
          .title = repairedUtf8(window.title),
          .applicationId = repairedUtf8(window.applicationId),
          .processId = window.processId,
          .frame = window.frame,
          .isMinimised = has(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MINIMIZED),
          .isInTaskbar = !has(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR),
          .isOnShownDesktop = isShown};
}

std::vector<KWinWindow> KWinWindows::list() {
  // Which windows and desktops there are, and then what they are.
  connection_.sync();
  connection_.sync();
  std::erase_if(windows_, [](const auto& each) { return each.second->hasGone; });
  std::vector<const Window*> windows;
  for (const auto& [uuid, window] : windows_) {
    if (window->isKnown) windows.push_back(window.get());
  }
  // What is not in the order of stacking is at the bottom.
  const auto height = [&](const Window* window) {
    const auto place = stacking_.find(window->uuid);
    return place == std::string::npos ? 0 : place + 1;
  };
  std::sort(windows.begin(), windows.end(),
            [&](const Window* a, const Window* b) { return height(a) > height(b); });
  std::vector<KWinWindow> listed;
  listed.reserve(windows.size());
  for (const auto* window : windows) listed.push_back(described(*window));
  return listed;
}

}  // namespace vistrel::platform::linux_desktop
