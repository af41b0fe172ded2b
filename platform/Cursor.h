#pragma once

namespace vistrel::platform {

enum class Cursor { arrow, crosshair };

}  // namespace vistrel::platform
