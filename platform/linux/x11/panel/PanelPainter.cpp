#include "platform/linux/x11/panel/PanelPainter.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <iterator>
#include <utility>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/panel/CoveredPanels.h"
#include "platform/linux/x11/picture/Corners.h"
#include "platform/linux/x11/picture/MipLevels.h"
#include "platform/linux/x11/server/ServerGrab.h"

namespace vistrel::platform::linux_desktop {
namespace {

PixelSize sizeOfChrome(const PanelChrome& chrome) { return {chrome.width, chrome.height}; }

/// The radius that fits.
int cornerRadiusOf(const PanelChrome& chrome) {
  return std::clamp(chrome.cornerRadius, 0, std::min(chrome.width, chrome.height) / 2);
}

/// Whether two chromes differ in their pixels alone.
bool sameLayout(const PanelChrome& a, const PanelChrome& b) {
  return sizeOfChrome(a) == sizeOfChrome(b) && a.contents == b.contents &&
         a.contentsBackground == b.contentsBackground && a.overlays == b.overlays &&
         a.cornerRadius == b.cornerRadius;
}

/// None where the server has no memory for it.
std::optional<Canvas> makeCornerMask(Connection& connection, int radius) {
  const int side = 2 * radius;
  auto mask = makeCanvas(connection, 8, connection.formats().alphaMask, {side, side});
  if (!mask) return std::nullopt;
  const std::size_t stride = (static_cast<std::size_t>(side) + 3) / 4 * 4;
  const auto coverage = discCoverage(radius, stride);
  putRows(connection, mask->pixmap, 8, {0, 0, side, side}, coverage.data(), stride);
  return mask;
}

}  // namespace

PanelPainter::PanelPainter(Connection& connection, PictureStore& store, xcb_window_t window)
    : connection_(connection), store_(store), window_(window) {
  auto* const xcb = connection_.xcb();
  selectEvents();  // before the size is asked for, so that none is missed
  const auto geometry = replyTo<xcb_get_geometry_reply>(xcb, xcb_get_geometry(xcb, window_));
  const auto attributes =
      replyTo<xcb_get_window_attributes_reply>(xcb, xcb_get_window_attributes(xcb, window_));
  if (!geometry || !attributes) return;
  depth_ = geometry->depth;
  windowSize_ = {geometry->width, geometry->height};
  isMapped_ = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
  const auto format = connection_.formats().ofVisual.find(attributes->visual);
  if (format != connection_.formats().ofVisual.end()) format_ = format->second;
  copying_ = makeGContext(connection_, window_);
  composited_ = isComposited(connection_);
  liesUnderPanels_ = isMarkedCovered(connection_, window_);
}

PanelPainter::~PanelPainter() {
  const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
  xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_EVENT_MASK, &none);
}

void PanelPainter::selectEvents() {
  // What the window shows stays when it is resized.
  const std::array<std::uint32_t, 2> values{
      XCB_GRAVITY_NORTH_WEST, XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                  XCB_EVENT_MASK_PROPERTY_CHANGE |
                                  XCB_EVENT_MASK_VISIBILITY_CHANGE};
  xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK,
                               values.data());
  xcb_xfixes_select_selection_input(connection_.xcb(), connection_.root(),
                                    compositorSelection(connection_),
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void PanelPainter::lookForCompositor() {
  const bool composited = isComposited(connection_);
  if (composited == composited_) return;
  composited_ = composited;
  outlineChanged_ = true;
  dirty_.add(rectOf(back_.size));
  paint();
}

std::optional<AwaitedChrome> PanelPainter::takeNextChrome() {
  return awaited_.takeFor(windowSize_,
                          hasSmoothCorners() ? Beside::nothing : Beside::managersFrame);
}

std::optional<AwaitedChrome> PanelPainter::newestChrome() const {
  if (const auto* const awaited = awaited_.newest()) return *awaited;
  if (!chrome_) return std::nullopt;
  return AwaitedChrome{chrome_, [] {}};
}

bool PanelPainter::setChrome(std::shared_ptr<const PanelChrome> chrome) {
  assert(thread_.isCurrent());
  if (!makeCanvasesFor(*chrome)) return false;
  const auto former = std::exchange(chrome_, std::move(chrome));
  if (former && sameLayout(*former, *chrome_)) {
    const auto [first, count] = differingRows(former->pixels, chrome_->pixels);
    if (count > 0) uploadRows(first, count);
    return true;
  }
  overlays_ = mergedWhereOverlapping(chrome_->overlays);
  uploadRows(0, chrome_->height);
  outlineChanged_ = true;
  return true;
}

bool PanelPainter::makeCanvasesFor(const PanelChrome& chrome) {
  std::optional<Canvas> mask;
  const int radius = cornerRadiusOf(chrome);
  if (radius > 0 && cornerMask_.size != PixelSize{2 * radius, 2 * radius}) {
    mask = makeCornerMask(connection_, radius);
    if (!mask) return false;
  }
  const auto size = sizeOfChrome(chrome);
  if (back_.size != size) {
    auto chromeCanvas = makeCanvas(connection_, 32, connection_.formats().translucent, size);
    auto back = makeCanvas(connection_, depth_, format_, size);
    if (!chromeCanvas || !back) return false;
    chromeCanvas_ = *std::move(chromeCanvas);
    back_ = *std::move(back);
  }
  if (mask) cornerMask_ = *std::move(mask);
  return true;
}

void PanelPainter::uploadRows(int first, int count) {
  constexpr int pixelsAtOnce = 1 << 14;
  const int width = chrome_->width;
  const int end = first + count;
  dirty_.add({0, first, width, count});
  while (first < end) {
    const int rows = std::min(end - first, std::max(1, pixelsAtOnce / std::max(1, width)));
    const auto pixels = chrome_->pixels.rows(first, rows);
    putRows(connection_, chromeCanvas_.pixmap, 32, {0, first, width, rows},
            reinterpret_cast<const std::uint8_t*>(pixels.data()),
            static_cast<std::size_t>(width) * sizeof(pixels.front()));
    first += rows;
  }
}

/// Where the window is larger than the chrome, because it is about to shrink or has just grown, it
/// is transparent, or cut off where the display cannot show that.
void PanelPainter::outlineWindow() {
  if (hasSmoothCorners()) {
    clearBeside();
  } else {
    // What comes to light, such as when a manager lets its frame grow, shows by itself; what was
    // there before would stay until it is told of and drawn. Without a shape what lies beside is
    // not for the eye.
    const std::uint32_t picture = back_.pixmap.id();
    xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_BACK_PIXMAP, &picture);
  }
  shapeWindow();
}

void PanelPainter::clearBeside() {
  const std::uint32_t transparent = 0;
  xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_BACK_PIXEL, &transparent);
  const auto right = static_cast<std::int16_t>(back_.size.width);
  const auto bottom = static_cast<std::int16_t>(back_.size.height);
  if (windowSize_.width > right) xcb_clear_area(connection_.xcb(), 0, window_, right, 0, 0, 0);
  if (windowSize_.height > bottom) xcb_clear_area(connection_.xcb(), 0, window_, 0, bottom, 0, 0);
}

void PanelPainter::shapeWindow() {
  if (!connection_.extensions().offersShapes) return;
  // picom 9.1 leaves a window's shape out of the shadow that it draws around it, and would draw
  // none in corners that are transparent but belong to the window: bright squares.
  const auto size = sizeOfChrome(*chrome_);
  const auto crossed = hasSmoothCorners() ? CrossedPixels::all : CrossedPixels::mostlyInside;
  auto parts = roundedRows(size, cornerRadiusOf(*chrome_), crossed);
  if (hasSmoothCorners()) {
    // A manager gives its frame the new shape a little later, and the former one must neither cut
    // off what a larger window shows by then nor bare the frame beside a smaller one's.
    constexpr int beyond = 4096;
    parts.push_back({size.width, 0, beyond, size.height + beyond});
    parts.push_back({0, size.height, size.width, beyond});
  }
  std::vector<xcb_rectangle_t> wire;
  std::transform(parts.begin(), parts.end(), std::back_inserter(wire), wireRect);
  xcb_shape_rectangles(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                       XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                       static_cast<std::uint32_t>(wire.size()), wire.data());
}

PixelRect PanelPainter::pictureAreaFor(PixelSize source) const {
  return chrome_ && chrome_->contents ? aspectFit(source, *chrome_->contents) : PixelRect{};
}

std::optional<PixelSize> PanelPainter::pictureSizeFor(PixelSize source) const {
  const auto area = pictureAreaFor(source);
  return isEmpty(area) ? std::nullopt : std::optional(sizeOf(area));
}

void PanelPainter::pictureChanged(const PictureChanges& changes) {
  assert(thread_.isCurrent());
  const auto area = pictureAreaFor(store_.size());
  const bool isElsewhere = std::exchange(pictureArea_, area) != area;
  if (!showsPicture_) return;
  if (isElsewhere && chrome_->contents) dirty_.add(*chrome_->contents);
  if (isEmpty(area)) return;
  for (const auto& each : store_.changedIn(area, changes)) dirty_.add(each);
}

void PanelPainter::setShowsPicture(bool shows) {
  assert(thread_.isCurrent());
  if (shows == showsPicture_) return;
  showsPicture_ = shows;
  if (chrome_ && chrome_->contents) dirty_.add(*chrome_->contents);
}

void PanelPainter::paint() {
  assert(thread_.isCurrent());
  if (!chrome_) return;
  for (const auto& each : dirty_) compose(intersection(each, rectOf(back_.size)));
  std::optional<ServerGrab> grab;
  if (std::exchange(outlineChanged_, false)) {
    grab.emplace(connection_);
    outlineWindow();
  }
  for (const auto& each : dirty_) copyToWindow(each);
  dirty_.clear();
}

void PanelPainter::showAgain() {
  assert(thread_.isCurrent());
  if (composited_) copyToWindow(rectOf(back_.size));
}

void PanelPainter::compose(const PixelRect& area) {
  if (isEmpty(area)) return;
  const auto picture = showsPicture_ ? intersection(area, pictureArea_) : PixelRect{};
  if (picture != area) composeBackground(area);
  if (!isEmpty(picture)) {
    store_.draw(back_.picture, pictureArea_, picture);
  }
  composeChrome(area);
  if (hasSmoothCorners()) composeCorners(area);
}

void PanelPainter::composeBackground(const PixelRect& area) {
  fill(connection_, back_.picture, Color::clear(), area);
  if (!chrome_->contents) return;
  const auto background = intersection(area, *chrome_->contents);
  if (!isEmpty(background)) {
    fill(connection_, back_.picture, chrome_->contentsBackground, background);
  }
}

void PanelPainter::composeChrome(const PixelRect& area) {
  const auto layOver = [this](const PixelRect& part) {
    if (isEmpty(part)) return;
    copyUnscaled(connection_, XCB_RENDER_PICT_OP_OVER, chromeCanvas_.picture, back_.picture, part);
  };
  if (!chrome_->contents || !contains(*chrome_->contents, area)) return layOver(area);
  for (const auto& each : overlays_) layOver(intersection(area, each));
}

void PanelPainter::composeCorners(const PixelRect& area) {
  const int radius = cornerRadiusOf(*chrome_);
  if (radius == 0) return;
  const int right = back_.size.width - radius;
  const int bottom = back_.size.height - radius;
  for (const int x : {0, right}) {
    for (const int y : {0, bottom}) {
      const auto corner = intersection(area, {x, y, radius, radius});
      if (isEmpty(corner)) continue;
      const int maskX = x == 0 ? 0 : radius;
      const int maskY = y == 0 ? 0 : radius;
      copyUnscaled(connection_, XCB_RENDER_PICT_OP_IN_REVERSE, cornerMask_.picture, back_.picture,
                   corner, x - maskX, y - maskY);
    }
  }
}

void PanelPainter::copyToWindow(const PixelRect& area) {
  const auto wire = wireRect(intersection(area, rectOf(back_.size)));
  if (wire.width == 0 || wire.height == 0) return;
  xcb_copy_area(connection_.xcb(), back_.pixmap.id(), window_, copying_.id(), wire.x, wire.y,
                wire.x, wire.y, wire.width, wire.height);
}

void PanelPainter::followSight(const xcb_generic_event_t& event) {
  const auto type = typeOf(event);
  if (type == XCB_MAP_NOTIFY && eventAs<xcb_map_notify_event_t>(event).window == window_) {
    isMapped_ = true;
  } else if (type == XCB_UNMAP_NOTIFY &&
             eventAs<xcb_unmap_notify_event_t>(event).window == window_) {
    isMapped_ = false;
  } else if (type == XCB_VISIBILITY_NOTIFY) {
    const auto& notify = eventAs<xcb_visibility_notify_event_t>(event);
    if (notify.window == window_) isCovered_ = notify.state == XCB_VISIBILITY_FULLY_OBSCURED;
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const auto& notify = eventAs<xcb_property_notify_event_t>(event);
    if (notify.window == window_ && notify.atom == connection_.atom(coveredMark)) {
      liesUnderPanels_ = notify.state == XCB_PROPERTY_NEW_VALUE;
    }
  }
}

void PanelPainter::handle(const xcb_generic_event_t& event) {
  assert(thread_.isCurrent());
  followSight(event);
  if (typeOf(event) == XCB_EXPOSE) {
    const auto& expose = eventAs<xcb_expose_event_t>(event);
    if (expose.window != window_ || !chrome_) return;
    copyToWindow({expose.x, expose.y, expose.width, expose.height});
  } else if (typeOf(event) == XCB_CONFIGURE_NOTIFY) {
    const auto& configure = eventAs<xcb_configure_notify_event_t>(event);
    if (configure.window == window_) windowSize_ = {configure.width, configure.height};
  } else if (typeOf(event) == connection_.extensions().selectionNotify) {
    lookForCompositor();
  }
}

}  // namespace vistrel::platform::linux_desktop
