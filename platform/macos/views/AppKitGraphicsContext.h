#pragma once

#include "platform/GraphicsContext.h"

namespace vistrel::platform::macos {

/// Draws into the view whose `drawRect:` is running. Main thread.
class AppKitGraphicsContext final : public GraphicsContext {
 public:
  void strokePath(const Path& path, double lineWidth, Color color) override;
  void drawText(const std::string& text, const Rect& area, const TextStyle& style) override;
  void drawSymbol(const std::string& name, const Rect& area, Color tint) override;
};

}  // namespace vistrel::platform::macos
