#include "platform/linux/x11/source/SourceWindow.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/shape.h>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/TopLevel.h"
#include "platform/linux/x11/manager/VisibleFrame.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::uint32_t clientEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                       XCB_EVENT_MASK_PROPERTY_CHANGE;
constexpr std::uint32_t frameEvents =
    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;

/// For windows that may have gone: nobody waits for the answer.
void watchShape(Connection& connection, xcb_window_t window, bool watched) {
  if (!connection.extensions().offersShapes) return;
  forgive(connection.xcb(), xcb_shape_select_input_checked(connection.xcb(), window, watched));
}

std::vector<PixelRect> rectsOf(const xcb_xfixes_fetch_region_reply_t& region) {
  const auto* rects = xcb_xfixes_fetch_region_rectangles(&region);
  std::vector<PixelRect> result;
  std::transform(rects, rects + xcb_xfixes_fetch_region_rectangles_length(&region),
                 std::back_inserter(result), [](const xcb_rectangle_t& each) {
                   return PixelRect{each.x, each.y, each.width, each.height};
                 });
  return result;
}

/// openbox 3.6.1 and mutter 43.8 roll a window up by its frame alone, which leaves the client a
/// pixel or two.
bool isRolledUp(const PixelRect& client, const PixelRect& frame) {
  return 2 * intersection(client, frame).height < client.height;
}

/// RENDER counts in 16.16 numbers, and what filters reach beyond the edge has to fit into them as
/// well: the X.Org server 21.1.7 draws nothing of a picture with longer sides.
bool isReadable(const xcb_get_geometry_reply_t& pixmap) {
  constexpr int longestSide = 0x7fff - 32;
  return pixmap.width <= longestSide && pixmap.height <= longestSide;
}

/// Null where the pixmap is of another depth than the format: between two requests the frame may
/// have gone and its number have come to another window.
Picture pictureOf(Connection& connection, const Pixmap& pixmap, xcb_render_pictformat_t format) {
  Picture picture(connection.xcb());
  const std::uint32_t outside = XCB_RENDER_REPEAT_PAD;
  const auto made = xcb_render_create_picture_checked(connection.xcb(), picture.id(), pixmap.id(),
                                                      format, XCB_RENDER_CP_REPEAT, &outside);
  if (failureOf(connection.xcb(), made)) picture.abandon();
  return picture;
}

}  // namespace

std::unique_ptr<SourceWindow> SourceWindow::open(Connection& connection, xcb_window_t client) {
  std::unique_ptr<SourceWindow> window(new SourceWindow(connection, client));
  if (!window->watchClient()) return nullptr;
  window->refresh();
  return window;
}

SourceWindow::SourceWindow(Connection& connection, xcb_window_t client)
    : connection_(connection), client_(client), subwindows_(connection), region_(connection.xcb()) {
  xcb_xfixes_create_region(connection_.xcb(), region_.id(), 0, nullptr);
}

SourceWindow::~SourceWindow() {
  releaseFrame();
  forgive(connection_.xcb(), connection_.selectEvents(client_, 0));
}

void SourceWindow::rest() {
  cursor_.reset();
  grid_.reset();
}

CursorOverlay& SourceWindow::cursor() {
  if (!cursor_) cursor_.emplace(connection_);
  return *cursor_;
}

bool SourceWindow::visitSampleGrid(int rows, int columns,
                                   const std::function<bool(PixelBGRA)>& visit) {
  if (!grid_) grid_.emplace(connection_);
  return grid_->visit(*picture_, rows, columns, visit);
}

void SourceWindow::renew() {
  gone_ = gone_ || !watchClient();
  if (frame_ != XCB_NONE) forgive(connection_.xcb(), listenToFrame());
  viewable_ = false;
  moved_ = true;
  renamed_ = true;
}

bool SourceWindow::watchClient() {
  if (failureOf(connection_.xcb(), connection_.selectEvents(client_, clientEvents))) return false;
  subwindows_.watch(client_);
  return true;
}

void SourceWindow::attachToFrame() {
  moved_ = false;
  const auto frame = topLevelOf(connection_, client_);
  if (frame == frame_ || frame == XCB_NONE) return;
  releaseFrame();
  frame_ = frame;
  // A frame that went while it was being looked up: the client will tell of a new one.
  hasRoom_ = true;
  if (watchFrame()) return;
  trace(TraceTopic::capture, [&] { return windowText(frame_) + " went while it was looked up"; });
  releaseFrame();
}

xcb_void_cookie_t SourceWindow::listenToFrame() {
  watchShape(connection_, frame_, true);
  return connection_.selectEvents(frame_,
                                  frame_ == client_ ? clientEvents | frameEvents : frameEvents);
}

bool SourceWindow::watchFrame() {
  auto* const xcb = connection_.xcb();
  damage_ = Damage(xcb);
  renamed_ = true;
  const std::array<xcb_void_cookie_t, 3> requests{
      listenToFrame(),
      xcb_composite_redirect_window_checked(xcb, frame_, XCB_COMPOSITE_REDIRECT_AUTOMATIC),
      xcb_damage_create_checked(xcb, damage_.id(), frame_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY)};
  bool isWatched = true;
  for (const auto& request : requests) {
    const auto failure = failureOf(xcb, request);
    isWatched &= !failure;
    hasRoom_ &= failure != XCB_ALLOC;
  }
  return isWatched;
}

void SourceWindow::releaseFrame() {
  if (frame_ == XCB_NONE) return;
  damage_ = {};
  watchShape(connection_, frame_, false);
  forgive(connection_.xcb(), xcb_composite_unredirect_window_checked(
                                 connection_.xcb(), frame_, XCB_COMPOSITE_REDIRECT_AUTOMATIC));
  forgive(connection_.xcb(),
          connection_.selectEvents(frame_, frame_ == client_ ? clientEvents : 0));
  frame_ = XCB_NONE;
  viewable_ = false;
}

void SourceWindow::handle(const xcb_generic_event_t& event) {
  subwindows_.handle(event);
  if (cursor_) cursor_->handle(event, *this);
  const auto type = typeOf(event);
  hasPointerNews_ |= type == XCB_ENTER_NOTIFY || type == XCB_LEAVE_NOTIFY;
  if (type == connection_.extensions().damageNotify) {
    const auto& notify = eventAs<xcb_damage_notify_event_t>(event);
    if (notify.damage == damage_.id()) hasDamage_ = true;
    return;
  }
  if (type == connection_.extensions().shapeNotify) {
    const auto& notify = eventAs<xcb_shape_notify_event_t>(event);
    renamed_ |= notify.affected_window == frame_ && notify.shape_kind == XCB_SHAPE_SK_BOUNDING;
    return;
  }
  // These events carry the window that they are about at the same place.
  const auto window = eventAs<xcb_map_notify_event_t>(event).window;
  const bool isClient = window == client_;
  if (type == XCB_PROPERTY_NOTIFY) {
    changedProperty(eventAs<xcb_property_notify_event_t>(event));
  } else if (!isClient && window != frame_) {
    return;
  } else if (type == XCB_CONFIGURE_NOTIFY) {
    configured(eventAs<xcb_configure_notify_event_t>(event));
  } else if (type == XCB_MAP_NOTIFY) {
    renamed_ = true;
  } else if (type == XCB_UNMAP_NOTIFY) {
    viewable_ = false;
  } else if (type == XCB_REPARENT_NOTIFY) {
    moved_ = true;
  } else if (type == XCB_DESTROY_NOTIFY) {
    gone_ |= isClient;
    viewable_ = false;
  }
}

void SourceWindow::configured(const xcb_configure_notify_event_t& event) {
  const PixelRect geometry{event.x, event.y, event.width, event.height};
  if (event.window == frame_) {
    // A window that only moves keeps its picture.
    const bool resized =
        sizeOf(geometry) != sizeOf(frameGeometry_) || event.border_width != frameBorder_;
    frameGeometry_ = geometry;
    frameBorder_ = event.border_width;
    if (!resized) return;
  }
  renamed_ = true;
}

void SourceWindow::changedProperty(const xcb_property_notify_event_t& event) {
  if (event.window != client_) return;
  renamed_ |= event.atom == connection_.atom("_NET_FRAME_EXTENTS") ||
              event.atom == connection_.atom("_GTK_FRAME_EXTENTS");
}

void SourceWindow::refresh() {
  if (gone_) return;
  if (moved_ || !hasRoom_) attachToFrame();
  if (renamed_ && frame_ != XCB_NONE) nameAgain();
}

void SourceWindow::nameAgain() {
  renamed_ = false;
  const auto attributes = replyTo<xcb_get_window_attributes_reply>(
      connection_.xcb(), xcb_get_window_attributes(connection_.xcb(), client_));
  if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
    trace(TraceTopic::capture,
          [&] { return windowText(client_) + " is not on the screen and keeps its last picture"; });
    return;
  }
  auto picture = namePicture();
  viewable_ = picture != nullptr;
  if (!picture) return;
  picture_ = std::move(picture);
  hasNewPicture_ = true;
  changes_ = {true, {}};
}

std::shared_ptr<const LivePicture> SourceWindow::unnamed(const char* reason) const {
  trace(TraceTopic::capture,
        [&] { return windowText(client_) + " gets no new picture: " + reason; });
  return nullptr;
}

std::shared_ptr<const LivePicture> SourceWindow::namePicture() {
  auto* const xcb = connection_.xcb();
  const auto attributes =
      replyTo<xcb_get_window_attributes_reply>(xcb, xcb_get_window_attributes(xcb, frame_));
  const auto frame = replyTo<xcb_get_geometry_reply>(xcb, xcb_get_geometry(xcb, frame_));
  Pixmap pixmap(xcb);
  const auto named = xcb_composite_name_window_pixmap_checked(xcb, frame_, pixmap.id());
  if (failureOf(xcb, named)) pixmap.abandon();
  if (!pixmap || !attributes || !frame) return unnamed("the server refuses");
  const auto bounds = replyTo<xcb_get_geometry_reply>(xcb, xcb_get_geometry(xcb, pixmap.id()));
  const auto& formats = connection_.formats().opaqueOfVisual;
  const auto format = formats.find(attributes->visual);
  if (!bounds || format == formats.end()) return unnamed("its pixels are of no known format");
  if (!isReadable(*bounds)) return unnamed("it is larger than RENDER can read");
  frameGeometry_ = {frame->x, frame->y, frame->width, frame->height};
  frameBorder_ = frame->border_width;
  auto picture = pictureOf(connection_, pixmap, format->second);
  if (!picture) return unnamed("another window has come to its number");
  const auto visible = visibleInFrame();
  if (!visible) return unnamed("it has gone or is rolled up");
  const PixelRect whole{0, 0, bounds->width, bounds->height};
  auto crop = intersection(moved(*visible, frameBorder_, frameBorder_), whole);
  if (isEmpty(crop)) crop = whole;
  trace(TraceTopic::capture, [&] {
    return windowText(client_) + " in " + windowText(frame_) + " of " + areaText(frameGeometry_) +
           " shows " + areaText(crop);
  });
  return std::make_shared<LivePicture>(
      LivePicture{std::move(pixmap), std::move(picture), crop, outsideShape(crop)});
}

std::vector<PixelRect> SourceWindow::outsideShape(const PixelRect& crop) const {
  auto* const xcb = connection_.xcb();
  Region region(xcb);
  const auto bounds = wireRect(moved(crop, -frameBorder_, -frameBorder_));
  const auto made =
      xcb_xfixes_create_region_from_window_checked(xcb, region.id(), frame_, XCB_SHAPE_SK_BOUNDING);
  if (failureOf(xcb, made)) {
    region.abandon();
    return {};
  }
  xcb_xfixes_invert_region(xcb, region.id(), bounds, region.id());
  const auto outside =
      replyTo<xcb_xfixes_fetch_region_reply>(xcb, xcb_xfixes_fetch_region(xcb, region.id()));
  if (!outside) return {};
  auto rects = rectsOf(*outside);
  for (auto& each : rects) each = inCrop(each, crop);
  return rects;
}

std::optional<PixelRect> SourceWindow::visibleInFrame() const {
  const auto framed = FramedWindowRequest(connection_, client_, frame_).fetch();
  if (!framed || isRolledUp(framed->client, rectOf(sizeOf(frameGeometry_)))) return std::nullopt;
  return framed->visible;
}

PixelRect SourceWindow::inCrop(const PixelRect& inFrame, const PixelRect& crop) const {
  return moved(inFrame, frameBorder_ - crop.x, frameBorder_ - crop.y);
}

PixelRect SourceWindow::inPicture(const PixelRect& onRoot) const {
  // A window's place is that of its border's corner, where the pixmap begins as well.
  return moved(onRoot, -frameGeometry_.x - picture_->crop.x, -frameGeometry_.y - picture_->crop.y);
}

void SourceWindow::askForChanges() {
  collectDamage();
  hasDamage_ = false;
  hasNewPicture_ = false;
  if (!damage_ || !picture_) return;
  auto* const xcb = connection_.xcb();
  forgive(xcb, xcb_damage_subtract_checked(xcb, damage_.id(), XCB_NONE, region_.id()));
  asked_.emplace(xcb, xcb_xfixes_fetch_region(xcb, region_.id()));
}

void SourceWindow::collectDamage() {
  if (!asked_) return;
  const auto damaged = asked_->fetch();
  asked_.reset();
  if (!damaged) return;
  for (const auto& each : rectsOf(*damaged)) {
    changes_.rects.add(intersection(inCrop(each, picture_->crop), rectOf(picture_->size())));
  }
}

PictureChanges SourceWindow::takeChanges() {
  collectDamage();
  return std::exchange(changes_, {});
}

std::unique_ptr<CaptureSource> openSourceWindow(const CapturingMirror& mirror, WindowID window) {
  return SourceWindow::open(mirror.connection, window);
}

}  // namespace vistrel::platform::linux_desktop
