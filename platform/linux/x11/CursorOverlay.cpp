#include "platform/linux/x11/CursorOverlay.h"

#include <xcb/xfixes.h>

#include "platform/linux/x11/Drawing.h"

namespace vistrel::platform::linux_desktop {

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
  if (!picture_ || isEmpty(intersection(area, rectOf(source.picture()->size())))) return {};
  return {picture_, area};
}

void CursorOverlay::readImage() {
  imageIsStale_ = false;
  picture_ = nullptr;
  auto* const xcb = connection_.xcb();
  const auto image =
      replyTo<xcb_xfixes_get_cursor_image_reply>(xcb, xcb_xfixes_get_cursor_image(xcb));
  if (!image || image->width == 0 || image->height == 0) return;
  image_ = {-image->xhot, -image->yhot, image->width, image->height};
  const auto format = connection_.formats().translucent;
  const auto canvas = makeCanvas(connection_, 32, format, sizeOf(image_));
  const auto* pixels = xcb_xfixes_get_cursor_image_cursor_image(image.get());
  putRows(connection_, canvas.pixmap, 32, image->width, 0, image->height,
          reinterpret_cast<const std::uint8_t*>(pixels), image->width * sizeof(*pixels));
  // A picture keeps its pixmap alive.
  picture_ = std::make_shared<const Picture>(
      makePicture(connection_, canvas.pixmap.id(), format, XCB_RENDER_REPEAT_NONE));
}

}  // namespace vistrel::platform::linux_desktop
