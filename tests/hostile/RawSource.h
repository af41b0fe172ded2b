#pragma once

#include "tests/support/TestWindow.h"
#include "tests/support/XConnection.h"

namespace vistrel::hostile {

/// A window of some program that need not behave: no titles, no hints, and any depth, border or
/// size that the server allows. It is drawn into directly, and nothing answers for it.
class RawSource {
 public:
  struct Options {
    testbed::Rect area{20, 20, 200, 160};
    int border = 0;
    bool overrideRedirect = false;
    /// The root's own when none is given; any other brings a colormap along.
    const xcb_visualtype_t* visual = nullptr;
    std::uint8_t depth = XCB_COPY_FROM_PARENT;
  };

  /// Maps the window at once. `connection` outlives this object.
  RawSource(const testbed::XConnection& connection, const Options& options);
  RawSource(const RawSource&) = delete;
  RawSource& operator=(const RawSource&) = delete;
  ~RawSource() { destroy(); }

  xcb_window_t id() const { return id_; }
  testbed::Rect area() const { return area_; }
  void paint(const testbed::Quadrants& picture);
  void resize(int width, int height);
  void map();
  void unmap();
  void destroy();

 private:
  void fill(testbed::Rect part, testbed::Rgb colour);

  const testbed::XConnection& connection_;
  const xcb_window_t id_;
  const xcb_colormap_t colours_;
  const xcb_gcontext_t pen_;
  testbed::Rect area_;
};

/// A visual of that depth other than the root's own; null when the server has none.
const xcb_visualtype_t* otherVisual(const testbed::XConnection& connection, std::uint8_t depth);

}  // namespace vistrel::hostile
