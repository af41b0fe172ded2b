#pragma once

#include <utility>

#include "platform/Menu.h"
#include "platform/ScreenCapture.h"

namespace vistrel {

/// What a menu item for a window stands for.
class WindowBox : public platform::RepresentedObject {
 public:
  explicit WindowBox(platform::WindowRecord record) : window(std::move(record)) {}

  const platform::WindowRecord window;
};

}  // namespace vistrel
