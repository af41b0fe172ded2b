#include "tests/support/TestWindow.h"

#include <array>
#include <cstring>
#include <stdexcept>
#include <unistd.h>
#include <vector>

#include "tests/support/ManagerProbe.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

// Root windows of 24 bits: red, green, blue from the highest byte down.
std::uint32_t pixelOf(Rgb colour) {
  return std::uint32_t{colour.red} << 16 | std::uint32_t{colour.green} << 8 | colour.blue;
}

std::string hostName() {
  std::array<char, 256> name{};
  ::gethostname(name.data(), name.size() - 1);
  return name.data();
}

// WM_NORMAL_HINTS (ICCCM 4.1.2.3): the place is the user's choice, and names the window itself
// rather than its frame.
std::vector<std::uint32_t> placedExactly(Rect area) {
  constexpr std::uint32_t userPosition = 1;
  constexpr std::uint32_t userSize = 2;
  constexpr std::uint32_t windowGravity = 512;
  constexpr std::size_t fields = 18;
  std::vector<std::uint32_t> hints(fields);
  hints[0] = userPosition | userSize | windowGravity;
  hints[1] = static_cast<std::uint32_t>(area.x);
  hints[2] = static_cast<std::uint32_t>(area.y);
  hints[3] = static_cast<std::uint32_t>(area.width);
  hints[4] = static_cast<std::uint32_t>(area.height);
  hints[17] = XCB_GRAVITY_STATIC;
  return hints;
}

template <class Condition>
void waitUntil(const char* what, Condition&& condition) {
  if (!eventually(condition)) {
    throw std::runtime_error(std::string("a test window did not get ") + what);
  }
}

}  // namespace

TestWindow::TestWindow(const std::string& display, const Options& options)
    : connection_(display),
      id_(xcb_generate_id(connection_.get())),
      pen_(xcb_generate_id(connection_.get())),
      width_(options.area.width),
      height_(options.area.height),
      picture_(options.picture) {
  const std::array<std::uint32_t, 2> values{options.managed ? 0U : 1U,
                                            XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS};
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, id_, connection_.root(),
                    static_cast<std::int16_t>(options.area.x),
                    static_cast<std::int16_t>(options.area.y), static_cast<std::uint16_t>(width_),
                    static_cast<std::uint16_t>(height_), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                    values.data());
  xcb_create_gc(connection_.get(), pen_, id_, 0, nullptr);
  announce(options);
  show(options.picture);
  map();
  moveTo({options.area.x, options.area.y});
}

void TestWindow::announce(const Options& options) const {
  const xcb_atom_t utf8 = connection_.atom("UTF8_STRING");
  connection_.setText(id_, "WM_NAME", XCB_ATOM_STRING, options.title);
  connection_.setText(id_, "_NET_WM_NAME", utf8, options.title);
  const std::string instanceAndClass = options.application + '\0' + options.application + '\0';
  connection_.setText(id_, "WM_CLASS", XCB_ATOM_STRING, instanceAndClass);
  connection_.setText(id_, "WM_CLIENT_MACHINE", XCB_ATOM_STRING, hostName());
  connection_.setNumbers(id_, "_NET_WM_PID", XCB_ATOM_CARDINAL,
                         {static_cast<std::uint32_t>(options.pid.value_or(::getpid()))});
  connection_.setNumbers(id_, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS,
                         placedExactly(options.area));
  if (!options.decorated) {
    // Motif's hints: only the decorations field is meant, and none are wanted.
    const std::string motif = "_MOTIF_WM_HINTS";
    connection_.setNumbers(id_, motif, connection_.atom(motif), {2, 0, 0, 0, 0});
  }
  if (!options.struts.empty()) {
    connection_.setNumbers(id_, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                           {connection_.atom("_NET_WM_WINDOW_TYPE_DOCK")});
    connection_.setNumbers(id_, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, options.struts);
  }
}

void TestWindow::setStruts(const std::vector<std::uint32_t>& struts) {
  connection_.setNumbers(id_, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, struts);
  connection_.sync();
}

Rect TestWindow::area() const {
  const auto area = areaOf(connection_, id_);
  if (!area) {
    throw std::runtime_error("a test window is gone");
  }
  return *area;
}

void TestWindow::show(const Quadrants& picture) {
  picture_ = picture;
  if (surface_ != XCB_NONE) {
    xcb_free_pixmap(connection_.get(), surface_);
  }
  surface_ = xcb_generate_id(connection_.get());
  xcb_create_pixmap(connection_.get(), connection_.screen().root_depth, surface_, id_,
                    static_cast<std::uint16_t>(width_), static_cast<std::uint16_t>(height_));
  const int middleX = width_ / 2;
  const int middleY = height_ / 2;
  draw({0, 0, middleX, middleY}, picture.topLeft);
  draw({middleX, 0, width_ - middleX, middleY}, picture.topRight);
  draw({0, middleY, middleX, height_ - middleY}, picture.bottomLeft);
  draw({middleX, middleY, width_ - middleX, height_ - middleY}, picture.bottomRight);
  present({0, 0, width_, height_});
}

void TestWindow::paint(Rect part, Rgb colour) {
  draw(part, colour);
  present(part);
}

void TestWindow::draw(Rect part, Rgb colour) {
  const std::uint32_t pixel = pixelOf(colour);
  const xcb_rectangle_t rectangle{
      static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
      static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height)};
  xcb_change_gc(connection_.get(), pen_, XCB_GC_FOREGROUND, &pixel);
  xcb_poly_fill_rectangle(connection_.get(), surface_, pen_, 1, &rectangle);
}

void TestWindow::present(Rect part) {
  xcb_change_window_attributes(connection_.get(), id_, XCB_CW_BACK_PIXMAP, &surface_);
  xcb_clear_area(connection_.get(), 0, id_, static_cast<std::int16_t>(part.x),
                 static_cast<std::int16_t>(part.y), static_cast<std::uint16_t>(part.width),
                 static_cast<std::uint16_t>(part.height));
  connection_.sync();
}

void TestWindow::moveTo(Point origin) {
  const std::array<std::uint32_t, 2> values{static_cast<std::uint32_t>(origin.x),
                                            static_cast<std::uint32_t>(origin.y)};
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                       values.data());
  waitUntil("its place", [&] {
    const Rect now = area();
    return Point{now.x, now.y} == origin;
  });
}

void TestWindow::resize(int width, int height) {
  const std::array<std::uint32_t, 2> values{static_cast<std::uint32_t>(width),
                                            static_cast<std::uint32_t>(height)};
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
  waitUntil("its size", [&] {
    const Rect now = area();
    return now.width == width && now.height == height;
  });
  width_ = width;
  height_ = height;
  show(picture_);
}

void TestWindow::unmap() {
  xcb_unmap_window(connection_.get(), id_);
  // ICCCM 4.1.4: a program that withdraws its window also tells the manager.
  xcb_unmap_notify_event_t event{};
  event.response_type = XCB_UNMAP_NOTIFY;
  event.event = connection_.root();
  event.window = id_;
  std::array<char, 32> bytes{};
  std::memcpy(bytes.data(), &event, sizeof(event));
  xcb_send_event(connection_.get(), 0, connection_.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 bytes.data());
  waitUntil("off the screen", [&] { return !isViewable(connection_, id_); });
}

void TestWindow::map() {
  xcb_map_window(connection_.get(), id_);
  waitUntil("on the screen", [&] { return isViewable(connection_, id_); });
}

void TestWindow::minimise() {
  constexpr std::uint32_t iconicState = 3;
  connection_.sendToManager(id_, "WM_CHANGE_STATE", {iconicState});
  // Managers that composite may keep it mapped.
  waitUntil("minimised", [&] {
    return !isViewable(connection_, id_) || hasState(connection_, id_, "_NET_WM_STATE_HIDDEN");
  });
  awaitManager(connection_);
}

void TestWindow::raiseAbove(const TestWindow& other) {
  constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  waitUntil("above the other", [&] { return isAbove(connection_, id_, other.id()); });
}

int TestWindow::typedKeys() {
  takeInput();
  return typedKeys_;
}

int TestWindow::pressedButtons() {
  takeInput();
  return pressedButtons_;
}

void TestWindow::takeInput() {
  while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    const int type = event->response_type & 0x7f;
    typedKeys_ += type == XCB_KEY_PRESS ? 1 : 0;
    pressedButtons_ += type == XCB_BUTTON_PRESS ? 1 : 0;
  }
}

void TestWindow::destroy() {
  xcb_destroy_window(connection_.get(), id_);
  waitUntil("destroyed", [&] { return !areaOf(connection_, id_); });
}

}  // namespace vistrel::testbed
