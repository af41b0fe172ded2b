#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Color.h"
#include "platform/Image.h"
#include "platform/linux/ChromePixels.h"
#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

/// Everything of a panel except the mirrored picture, painted from its view tree. Rectangles have
/// their origin at the top-left of the panel's window.
struct PanelChrome {
  /// The panel's size in pixels.
  int width = 0;
  int height = 0;
  /// width × height pixels.
  ChromePixels pixels;
  /// Where the picture lies, aspect-fit and centred under the chrome, perhaps on below its lower
  /// edge; none when it is not shown.
  std::optional<PixelRect> contents;
  /// What lies in `contents` beside the picture.
  Color contentsBackground;
  /// Parts of `contents` that the chrome draws over; elsewhere in `contents` it is transparent.
  std::vector<PixelRect> overlays;
  /// Radius in pixels of the rounded corners that clip chrome and picture alike.
  int cornerRadius = 0;
};

/// What draws a panel's window: chrome and picture composited, without a picture ever crossing to
/// the client. Serves the window's expose events by itself. Main thread; the drawing may happen on
/// the mirror's own queue.
class PanelSurface {
 public:
  virtual ~PanelSurface() = default;

  /// Shows a new chrome, and the picture scaled to its new place, once the window has room for it;
  /// until then what it shows stays, and a newer chrome may take its place. Calls `shown`, if there
  /// is one, until `detach`, when the window may become as small as the chrome: that is when it
  /// shows it and what lies beside it is transparent, or earlier where nothing can be.
  virtual void setChrome(PanelChrome chrome, std::function<void()> shown) = 0;
  /// What was set last; null before.
  virtual std::shared_ptr<const PanelChrome> chrome() const = 0;
  /// Shows `image`, made by this backend's image context, and from then on what its mirror accepts,
  /// as soon as it does; null shows the background alone.
  virtual void setContents(std::shared_ptr<const Image> image) = 0;
  /// The window whose picture it shows; none while it shows the background alone.
  virtual std::optional<std::uint32_t> source() const = 0;
  /// Stops drawing; returns once nothing touches the window any more, so that it may be destroyed.
  virtual void detach() = 0;
};

}  // namespace vistrel::platform::linux_desktop
