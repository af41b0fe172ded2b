// An ordinary Wayland program with one window; a test tells it what to do: see NativeWindow.h and
// NativeDock.h. Arguments: the descriptors to read commands from and to write answers to, the
// application's id, and what the window is: "bare", "decorated" by the compositor, or a "dock".

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <map>
#include <memory>
#include <plasma-shell.h>
#include <poll.h>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <xdg-decoration-unstable-v1.h>
#include <xdg-shell.h>

#include "tests/support/CommandPipe.h"
#include "tests/support/FileDescriptor.h"
#include "tests/support/WaylandClient.h"

namespace vistrel::testbed {
namespace {

using Pixel = std::uint32_t;  // XRGB, 8 bits each

int checked(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
  return result;
}

/// Memory that the compositor reads: what one commit shows.
class Buffer {
 public:
  Buffer(wl_shm* shm, int width, int height) : width_(width), height_(height) {
    const FileDescriptor file(checked(::memfd_create("window", MFD_CLOEXEC), "memfd_create"));
    checked(::ftruncate(file.get(), static_cast<off_t>(bytes())), "ftruncate");
    pixels_ = static_cast<Pixel*>(
        ::mmap(nullptr, bytes(), PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0));
    auto* const pool = wl_shm_create_pool(shm, file.get(), static_cast<std::int32_t>(bytes()));
    buffer_ = wl_shm_pool_create_buffer(pool, 0, width, height, width * 4, WL_SHM_FORMAT_XRGB8888);
    wl_shm_pool_destroy(pool);
    static constexpr wl_buffer_listener listener{
        [](void* self, wl_buffer*) { static_cast<Buffer*>(self)->isHeld_ = false; }};
    wl_buffer_add_listener(buffer_, &listener, this);
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() {
    wl_buffer_destroy(buffer_);
    ::munmap(pixels_, bytes());
  }

  int width() const { return width_; }
  int height() const { return height_; }
  /// Whether the compositor may still read it.
  bool isHeld() const { return isHeld_; }
  void attachTo(wl_surface* surface) {
    isHeld_ = true;
    wl_surface_attach(surface, buffer_, 0, 0);
  }
  void copy(const Buffer& other) { std::copy_n(other.pixels_, width_ * height_, pixels_); }
  void fill(int x, int y, int width, int height, Pixel colour) {
    for (int row = std::max(y, 0); row < std::min(y + height, height_); ++row) {
      for (int column = std::max(x, 0); column < std::min(x + width, width_); ++column) {
        pixels_[row * width_ + column] = colour;
      }
    }
  }

 private:
  std::size_t bytes() const { return static_cast<std::size_t>(width_) * height_ * 4; }

  int width_;
  int height_;
  Pixel* pixels_ = nullptr;
  wl_buffer* buffer_ = nullptr;
  bool isHeld_ = false;
};

struct Size {
  int width = 0;
  int height = 0;

  bool operator==(const Size&) const = default;
};

class Window {
 public:
  Window(const char* applicationId, std::string_view kind) {
    setUpWindow(applicationId);
    if (kind == "decorated") {
      askForDecoration();
    } else if (kind == "dock") {
      becomeDock();
    }
    wl_surface_commit(surface_);
    setUpInput();
    while (!isConfigured_) {
      checked(wl_display_dispatch(client_.display()), "the compositor");
    }
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  bool isClosed() const { return isClosed_; }
  wl_display* display() const { return client_.display(); }

  std::string obey(const std::string& line) {
    std::istringstream text(line);
    std::string command;
    text >> command >> std::ws;
    const std::string answer = carryOut(command, text);
    client_.sync();
    return answer;
  }

 private:
  void setUpWindow(const char* applicationId) {
    static constexpr xdg_wm_base_listener pings{
        [](void*, xdg_wm_base* base, std::uint32_t serial) { xdg_wm_base_pong(base, serial); }};
    static constexpr xdg_surface_listener configures{
        [](void* self, xdg_surface* surface, std::uint32_t serial) {
          xdg_surface_ack_configure(surface, serial);
          static_cast<Window*>(self)->configured();
        }};
    static constexpr xdg_toplevel_listener toplevels{
        [](void* self, xdg_toplevel*, std::int32_t width, std::int32_t height, wl_array* states) {
          const std::span all(static_cast<const std::uint32_t*>(states->data),
                              states->size / sizeof(std::uint32_t));
          static_cast<Window*>(self)->isActive_ =
              std::find(all.begin(), all.end(), XDG_TOPLEVEL_STATE_ACTIVATED) != all.end();
          static_cast<Window*>(self)->proposed({width, height});
        },
        [](void* self, xdg_toplevel*) { static_cast<Window*>(self)->isClosed_ = true; },
        [](void*, xdg_toplevel*, std::int32_t, std::int32_t) {},
        [](void*, xdg_toplevel*, wl_array*) {}};
    xdg_wm_base_add_listener(base_, &pings, nullptr);
    xdg_surface_add_listener(shell_, &configures, this);
    xdg_toplevel_add_listener(toplevel_, &toplevels, this);
    xdg_toplevel_set_app_id(toplevel_, applicationId);
  }

  /// Not every compositor decorates windows.
  void askForDecoration() {
    if (!client_.isOffered(zxdg_decoration_manager_v1_interface)) {
      return;
    }
    auto* const decorations =
        client_.bind<zxdg_decoration_manager_v1>(zxdg_decoration_manager_v1_interface, 1);
    zxdg_toplevel_decoration_v1_set_mode(
        zxdg_decoration_manager_v1_get_toplevel_decoration(decorations, toplevel_),
        ZXDG_TOPLEVEL_DECORATION_V1_MODE_SERVER_SIDE);
  }

  /// In a session of KWin: one that keeps room free along the edge that it lies at.
  void becomeDock() {
    auto* const plasma = client_.bind<org_kde_plasma_shell>(org_kde_plasma_shell_interface, 1);
    dock_ = org_kde_plasma_shell_get_surface(plasma, surface_);
    org_kde_plasma_surface_set_role(dock_, ORG_KDE_PLASMA_SURFACE_ROLE_PANEL);
    org_kde_plasma_surface_set_panel_behavior(dock_,
                                              ORG_KDE_PLASMA_SURFACE_PANEL_BEHAVIOR_ALWAYS_VISIBLE);
  }

  /// A black square, whose first corner is its hot spot.
  void showPointer(wl_pointer* pointer, std::uint32_t serial) {
    // KWin 5.27 takes the byte that is no alpha for alpha here.
    pointerPicture_.fill(0, 0, pointerSide, pointerSide, 0xff000000);
    pointerPicture_.attachTo(pointerSurface_);
    wl_surface_damage_buffer(pointerSurface_, 0, 0, pointerSide, pointerSide);
    wl_surface_commit(pointerSurface_);
    wl_pointer_set_cursor(pointer, serial, pointerSurface_, 0, 0);
    wl_display_flush(display());
  }

  /// The pointer and the keyboard come and go with who stands in for a person, at a seat that has
  /// no other ones.
  void setUpInput() {
    static constexpr wl_seat_listener seats{
        [](void* self, wl_seat*, std::uint32_t capabilities) {
          auto* const window = static_cast<Window*>(self);
          window->havePointer((capabilities & WL_SEAT_CAPABILITY_POINTER) != 0);
          window->haveKeyboard((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
        },
        [](void*, wl_seat*, const char*) {}};
    wl_seat_add_listener(seat_, &seats, this);
  }

  void havePointer(bool isThere) {
    static constexpr wl_pointer_listener pointers{
        [](void* self, wl_pointer* pointer, std::uint32_t serial, wl_surface*, wl_fixed_t,
           wl_fixed_t) {
          static_cast<Window*>(self)->isPointedAt_ = true;
          static_cast<Window*>(self)->showPointer(pointer, serial);
        },
        [](void* self, wl_pointer*, std::uint32_t, wl_surface*) {
          static_cast<Window*>(self)->isPointedAt_ = false;
        },
        [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {},
        [](void* self, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
           std::uint32_t state) { static_cast<Window*>(self)->buttons_ += state == 1 ? 1 : 0; },
        [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {}};
    if (isThere && pointer_ == nullptr) {
      pointer_ = wl_seat_get_pointer(seat_);
      wl_pointer_add_listener(pointer_, &pointers, this);
    } else if (!isThere && pointer_ != nullptr) {
      wl_pointer_destroy(std::exchange(pointer_, nullptr));
      isPointedAt_ = false;
    }
  }

  void haveKeyboard(bool isThere) {
    static constexpr wl_keyboard_listener keyboards{
        [](void*, wl_keyboard*, std::uint32_t, int keymap, std::uint32_t) { ::close(keymap); },
        [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
        [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
        [](void* self, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
           std::uint32_t state) { static_cast<Window*>(self)->keys_ += state == 1 ? 1 : 0; },
        [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
           std::uint32_t) {}};
    if (isThere && keyboard_ == nullptr) {
      keyboard_ = wl_seat_get_keyboard(seat_);
      wl_keyboard_add_listener(keyboard_, &keyboards, this);
    } else if (!isThere && keyboard_ != nullptr) {
      wl_keyboard_destroy(std::exchange(keyboard_, nullptr));
    }
  }

  /// By the compositor, which leaves the size to the window with one of 0 × 0. It may not have seen
  /// yet that the window has another size by its own will.
  void proposed(Size size) {
    if (size.width <= 0 || size.height <= 0 || size == outdated_) {
      return;
    }
    outdated_ = {};
    size_ = size;
  }

  void configured() {
    isConfigured_ = true;
    show();
  }

  std::string carryOut(const std::string& command, std::istringstream& text) {
    if (command == "show") {
      for (Pixel& colour : quadrants_) {
        text >> std::hex >> colour;
      }
      shown_.reset();
      show();
    } else if (command == "paint") {
      int x = 0;
      int y = 0;
      int width = 0;
      int height = 0;
      Pixel colour = 0;
      text >> x >> y >> width >> height >> std::hex >> colour;
      paint(x, y, width, height, colour);
    } else if (command == "resize") {
      outdated_ = std::exchange(size_, {});
      text >> size_.width >> size_.height;
      show();
    } else if (command == "place") {
      int x = 0;
      int y = 0;
      text >> x >> y;
      org_kde_plasma_surface_set_position(dock_, x, y);
      wl_surface_commit(surface_);
    } else if (command == "title") {
      std::string title;
      std::getline(text, title);
      xdg_toplevel_set_title(toplevel_, title.c_str());
    } else if (command == "minimise") {
      xdg_toplevel_set_minimized(toplevel_);
    } else if (command == "maximise") {
      xdg_toplevel_set_maximized(toplevel_);
    } else if (command == "unmaximise") {
      xdg_toplevel_unset_maximized(toplevel_);
    } else if (command == "fill") {
      xdg_toplevel_set_fullscreen(toplevel_, nullptr);
    } else if (command == "unfill") {
      xdg_toplevel_unset_fullscreen(toplevel_);
    } else if (command == "appear") {
      waitUntilDrawn();
    } else if (command == "pointer") {
      return std::to_string(isPointedAt_ ? 1 : 0);
    } else if (command == "buttons") {
      return std::to_string(buttons_);
    } else if (command == "keys") {
      return std::to_string(keys_);
    } else if (command == "active") {
      return std::to_string(isActive_ ? 1 : 0);
    } else if (command == "close") {
      xdg_toplevel_destroy(toplevel_);
      xdg_surface_destroy(shell_);
      isClosed_ = true;
    } else {
      throw std::runtime_error("no such command: " + command);
    }
    return "done";
  }

  /// The picture, unless it is there at this size.
  void show() {
    const auto [width, height] = size_;
    if (shown_ && shown_->width() == width && shown_->height() == height) {
      return;
    }
    auto next = std::make_unique<Buffer>(shm_, width, height);
    const int left = width / 2;
    const int top = height / 2;
    next->fill(0, 0, left, top, quadrants_[0]);
    next->fill(left, 0, width - left, top, quadrants_[1]);
    next->fill(0, top, left, height - top, quadrants_[2]);
    next->fill(left, top, width - left, height - top, quadrants_[3]);
    commit(std::move(next), 0, 0, width, height);
  }

  void paint(int x, int y, int width, int height, Pixel colour) {
    auto next = std::make_unique<Buffer>(shm_, size_.width, size_.height);
    next->copy(*shown_);
    next->fill(x, y, width, height, colour);
    commit(std::move(next), x, y, width, height);
  }

  /// Before that, a compositor may find something else where the window is.
  void waitUntilDrawn() {
    bool isDrawn = false;
    static constexpr wl_callback_listener listener{
        [](void* drawn, wl_callback*, std::uint32_t) { *static_cast<bool*>(drawn) = true; }};
    auto* const frame = wl_surface_frame(surface_);
    wl_callback_add_listener(frame, &listener, &isDrawn);
    wl_surface_commit(surface_);
    while (!isDrawn) {
      checked(wl_display_dispatch(display()), "the compositor");
    }
    wl_callback_destroy(frame);
  }

  void commit(std::unique_ptr<Buffer> next, int x, int y, int width, int height) {
    next->attachTo(surface_);
    wl_surface_damage_buffer(surface_, x, y, width, height);
    wl_surface_commit(surface_);
    former_ = std::move(shown_);
    shown_ = std::move(next);
  }

  const WaylandClient client_;
  wl_shm* shm_ = client_.bind<wl_shm>(wl_shm_interface, 1);
  static constexpr int pointerSide = 16;
  Buffer pointerPicture_{shm_, pointerSide, pointerSide};
  wl_seat* seat_ = client_.bind<wl_seat>(wl_seat_interface, 1);
  wl_pointer* pointer_ = nullptr;
  wl_keyboard* keyboard_ = nullptr;
  xdg_wm_base* base_ = client_.bind<xdg_wm_base>(xdg_wm_base_interface, 1);
  wl_compositor* compositor_ = client_.bind<wl_compositor>(wl_compositor_interface, 4);
  wl_surface* surface_ = wl_compositor_create_surface(compositor_);
  wl_surface* pointerSurface_ = wl_compositor_create_surface(compositor_);
  xdg_surface* shell_ = xdg_wm_base_get_xdg_surface(base_, surface_);
  xdg_toplevel* toplevel_ = xdg_surface_get_toplevel(shell_);
  org_kde_plasma_surface* dock_ = nullptr;  // null for an ordinary window
  std::array<Pixel, 4> quadrants_{};
  std::unique_ptr<Buffer> shown_;
  std::unique_ptr<Buffer> former_;
  Size size_{100, 100};
  Size outdated_;
  bool isPointedAt_ = false;
  int buttons_ = 0;
  int keys_ = 0;
  bool isActive_ = false;
  bool isConfigured_ = false;
  bool isClosed_ = false;
};

/// Obeys until there are no commands any more, and answers the compositor meanwhile.
void serve(Window& window, CommandPipe commands) {
  const auto obey = [&](const std::string& line) { return window.obey(line); };
  while (!window.isClosed()) {
    wl_display_flush(window.display());
    std::array<pollfd, 2> waited{pollfd{wl_display_get_fd(window.display()), POLLIN, 0},
                                 pollfd{commands.descriptor(), POLLIN, 0}};
    checked(::poll(waited.data(), waited.size(), -1), "poll");
    if (waited[0].revents != 0) {
      checked(wl_display_dispatch(window.display()), "the compositor");
    }
    if (waited[1].revents != 0 && !commands.serve(obey)) {
      return;
    }
  }
}

}  // namespace
}  // namespace vistrel::testbed

int main(int argc, char** argv) {
  if (argc != 5) {
    return 2;
  }
  try {
    vistrel::testbed::Window window(argv[3], argv[4]);
    vistrel::testbed::serve(window, {std::atoi(argv[1]), std::atoi(argv[2])});
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
