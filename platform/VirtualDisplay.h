#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/Geometry.h"

namespace vistrel::platform {

// The classes for virtual displays are no documented part of the system that they come from. So
// they are looked up by name, may be missing, and are talked to by selectors. Main thread.
//
// "CGVirtualDisplayDescriptor"  what a display is to be
// "CGVirtualDisplaySettings"    hiDPI, and a list of modes
// "CGVirtualDisplayMode"        width and height in pixels, and a refresh rate
// "CGVirtualDisplay"            a live display; it goes when its last reference has gone, at the
//                               next turn of the main loop or at the end of the process

class RuntimeObject;

/// The arguments of dispatch_get_global_queue.
struct GlobalQueue {
  std::int64_t identifier = 0;
  std::uint64_t flags = 0;

  friend bool operator==(const GlobalQueue&, const GlobalQueue&) = default;
};

/// What a message carries or answers; `std::monostate` is nothing.
using RuntimeValue =
    std::variant<std::monostate, bool, std::uint32_t, double, Size, std::string, GlobalQueue, Block,
                 std::shared_ptr<RuntimeObject>, std::vector<std::shared_ptr<RuntimeObject>>>;

/// An object of one of the classes.
class RuntimeObject {
 public:
  virtual ~RuntimeObject() = default;

  /// Ends the program when the object has no such selector or the arguments are not of its types.
  virtual RuntimeValue send(std::string_view selector,
                            const std::vector<RuntimeValue>& arguments = {}) = 0;
};

/// A property that a class declares.
struct RuntimeProperty {
  std::string name;
  /// In the format of the Objective-C runtime's property_getAttributes: the type encoding after a
  /// T, then "R" for read-only, "C" for copied, "&" for retained, "N" for nonatomic; "TI,R,N".
  std::string attributes;

  friend bool operator==(const RuntimeProperty&, const RuntimeProperty&) = default;
};

class RuntimeClass {
 public:
  virtual ~RuntimeClass() = default;

  /// The instance properties that the class itself declares, in the runtime's order.
  virtual std::vector<RuntimeProperty> properties() const = 0;
  /// The selectors of the instance methods that the class itself implements, in the runtime's
  /// order.
  virtual std::vector<std::string> selectors() const = 0;
  /// A new object, initialised by that selector; null when the initialiser yields nothing.
  virtual std::shared_ptr<RuntimeObject> make(std::string_view initializer = "init",
                                              const std::vector<RuntimeValue>& arguments = {}) = 0;
};

/// Null when the system has no class of that name.
std::shared_ptr<RuntimeClass> classNamed(const std::string& name);

}  // namespace vistrel::platform
