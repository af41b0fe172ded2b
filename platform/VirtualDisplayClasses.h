#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Backend.h"
#include "platform/Displays.h"

namespace vistrel::platform {

/// What a virtual display is to be.
struct VirtualDisplayDescriptor {
  std::string name;
  /// In pixels.
  std::uint32_t maxPixelsWide = 0;
  std::uint32_t maxPixelsHigh = 0;
  Size sizeInMillimeters;
  std::uint32_t productID = 0;
  std::uint32_t vendorID = 0;
  std::uint32_t serialNum = 0;

  friend bool operator==(const VirtualDisplayDescriptor&,
                         const VirtualDisplayDescriptor&) = default;
};

/// A picture size of a virtual display, in pixels, and its frames per second.
struct VirtualDisplayMode {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  double refreshRate = 0;

  friend bool operator==(const VirtualDisplayMode&, const VirtualDisplayMode&) = default;
};

struct VirtualDisplaySettings {
  /// Whether two pixels make a point.
  bool hiDPI = false;
  std::vector<VirtualDisplayMode> modes;

  friend bool operator==(const VirtualDisplaySettings&, const VirtualDisplaySettings&) = default;
};

/// A display server that makes displays which nobody sees. When it goes, it removes those that are
/// left. Main thread.
class VirtualDisplayServer {
 public:
  virtual ~VirtualDisplayServer() = default;

  /// Whether it can make any at all; the classes are missing otherwise.
  virtual bool hostsVirtualDisplays() = 0;
  /// Makes a display, which has bounds right away, wherever that may be; none when the server
  /// refuses.
  virtual std::optional<DisplayID> createDisplay(const VirtualDisplayDescriptor& descriptor) = 0;
  /// False when the server refuses; the display is then as it was.
  virtual bool applySettings(DisplayID display, const VirtualDisplaySettings& settings) = 0;
  /// Takes the display down at once. Called when the main loop has turned since its last reference
  /// went.
  virtual void removeDisplay(DisplayID display) = 0;
};

/// The four classes over a display server that knows nothing of classes. They exist while it hosts
/// virtual displays. Each class has one table, which its methods are called through and which it is
/// listed by.
class VirtualDisplayClasses : public VirtualDisplayBackend {
 public:
  /// Objects of the classes hold the server weakly.
  explicit VirtualDisplayClasses(std::shared_ptr<VirtualDisplayServer> server);

  std::shared_ptr<RuntimeClass> classNamed(const std::string& name) override;

 private:
  const std::shared_ptr<VirtualDisplayServer> server_;
  const std::map<std::string, std::shared_ptr<RuntimeClass>> classes_;
};

}  // namespace vistrel::platform
