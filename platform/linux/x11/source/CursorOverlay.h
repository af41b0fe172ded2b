#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/x11/picture/PictureStore.h"

namespace vistrel::platform::linux_desktop {

class SourceWindow;

/// A pointer's picture and its reductions, for a `CursorMark`. `pixels` are a8r8g8b8,
/// premultiplied, rows without gaps; not empty.
std::shared_ptr<const std::vector<Canvas>> cursorLevels(Connection& connection, PixelSize size,
                                                        const std::uint32_t* pixels);

/// The pointer over one source window. Asks for the pointer's place only while the pointer is
/// there; no event tells of its movement without getting in the way of other clients.
class CursorOverlay {
 public:
  explicit CursorOverlay(Connection& connection) : connection_(connection) {}
  CursorOverlay(const CursorOverlay&) = delete;
  CursorOverlay& operator=(const CursorOverlay&) = delete;
  ~CursorOverlay() { setFollowing(false); }

  void handle(const xcb_generic_event_t& event, const SourceWindow& source);
  /// Whether the pointer is over the source, so that its place has to be asked for.
  bool isFollowing() const { return following_; }
  /// Asks the server where the pointer is. It need not be waited for before it is needed.
  void askForPlace();
  /// Whether the place that was asked for has not been taken yet.
  bool isAsked() const { return asked_.has_value(); }
  /// Where the pointer lay over the source when it was last asked for, or lies now; empty while it
  /// is elsewhere or over a window that covers the source.
  CursorMark markOver(const SourceWindow& source);

 private:
  void setFollowing(bool following);
  void readImage();

  Connection& connection_;
  std::optional<Pending<xcb_query_pointer_reply, xcb_query_pointer_cookie_t>> asked_;
  bool following_ = false;
  bool imageIsStale_ = true;
  std::shared_ptr<const std::vector<Canvas>> levels_;  // null when the pointer has no picture
  PixelRect image_;                                    // around the hot spot
};

}  // namespace vistrel::platform::linux_desktop
