#pragma once

#include <cstddef>

#include "platform/Geometry.h"

namespace vistrel {

class WindowMirrorHUDController;

/// What a mirror asks of whoever keeps all mirrors. Held weakly by the mirror. Main thread.
class MirrorHost {
 public:
  virtual ~MirrorHost() = default;

  /// `rect`, the frame that a drag of the panel of `excluding` proposes, moved onto nearby edges.
  /// Screen space.
  virtual platform::Rect snap(const platform::Rect& rect,
                              const WindowMirrorHUDController& excluding) const = 0;
  /// How many mirrors are open.
  virtual std::size_t mirrorCount() const = 0;
  /// Closes every mirror.
  virtual void closeAll() = 0;
};

}  // namespace vistrel
