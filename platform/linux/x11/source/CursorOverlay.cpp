#include "platform/linux/x11/source/CursorOverlay.h"

#include <utility>
#include <xcb/xfixes.h>

#include "platform/linux/x11/picture/Drawing.h"
#include "platform/linux/x11/source/SourceWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

Canvas makeTransparentOutside(Connection& connection, PixelSize size) {
  const auto format = connection.formats().translucent;
  auto canvas = makeCanvas(connection, 32, format, size);
  canvas.picture = makePicture(connection, canvas.pixmap.id(), format, XCB_RENDER_REPEAT_NONE);
  return canvas;
}

Canvas halved(Connection& connection, const Canvas& canvas) {
  const PixelSize size{(canvas.size.width + 1) / 2, (canvas.size.height + 1) / 2};
  auto result = makeTransparentOutside(connection, size);
  drawScaled(connection, canvas.picture, halving, result.picture, rectOf(size));
  return result;
}

}  // namespace

std::shared_ptr<const std::vector<Canvas>> cursorLevels(Connection& connection, PixelSize size,
                                                        const std::uint32_t* pixels) {
  std::vector<Canvas> levels;
  levels.push_back(makeTransparentOutside(connection, size));
  putRows(connection, levels.front().pixmap, 32, rectOf(size),
          reinterpret_cast<const std::uint8_t*>(pixels),
          static_cast<std::size_t>(size.width) * sizeof(*pixels));
  while (levels.back().size != PixelSize{1, 1}) {
    levels.push_back(halved(connection, levels.back()));
  }
  return std::make_shared<const std::vector<Canvas>>(std::move(levels));
}

void CursorOverlay::handle(const xcb_generic_event_t& event, const SourceWindow& source) {
  if (typeOf(event) == connection_.extensions().cursorNotify) {
    imageIsStale_ = true;
  } else if (typeOf(event) == XCB_ENTER_NOTIFY || typeOf(event) == XCB_LEAVE_NOTIFY) {
    const auto& crossing = eventAs<xcb_enter_notify_event_t>(event);
    if (crossing.event != source.frame()) return;
    // Into a window inside, or only a grab: still over the source.
    const bool staysInside =
        crossing.detail == XCB_NOTIFY_DETAIL_INFERIOR || crossing.mode != XCB_NOTIFY_MODE_NORMAL;
    setFollowing(typeOf(event) == XCB_ENTER_NOTIFY || staysInside);
  }
}

void CursorOverlay::setFollowing(bool following) {
  if (following == following_) return;
  following_ = following;
  imageIsStale_ = true;
  xcb_xfixes_select_cursor_input(connection_.xcb(), connection_.root(),
                                 following ? XCB_XFIXES_CURSOR_NOTIFY_MASK_DISPLAY_CURSOR : 0);
}

void CursorOverlay::askForPlace() {
  asked_.emplace(connection_.xcb(), xcb_query_pointer(connection_.xcb(), connection_.root()));
}

CursorMark CursorOverlay::markOver(const SourceWindow& source) {
  if (!asked_) askForPlace();
  const auto pointer = asked_->fetch();
  asked_.reset();
  const bool isOver = pointer && pointer->child == source.frame();
  setFollowing(isOver);
  if (!isOver) return {};
  if (imageIsStale_) readImage();
  const auto area = source.inPicture(moved(image_, pointer->root_x, pointer->root_y));
  if (!levels_ || isEmpty(intersection(area, rectOf(source.picture()->size())))) return {};
  return {levels_, area};
}

void CursorOverlay::readImage() {
  imageIsStale_ = false;
  levels_ = nullptr;
  auto* const xcb = connection_.xcb();
  const auto image =
      replyTo<xcb_xfixes_get_cursor_image_reply>(xcb, xcb_xfixes_get_cursor_image(xcb));
  if (!image || image->width == 0 || image->height == 0) return;
  image_ = {-image->xhot, -image->yhot, image->width, image->height};
  levels_ = cursorLevels(connection_, sizeOf(image_),
                         xcb_xfixes_get_cursor_image_cursor_image(image.get()));
}

}  // namespace vistrel::platform::linux_desktop
