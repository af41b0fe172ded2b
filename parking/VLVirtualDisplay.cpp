#include "parking/VLVirtualDisplay.h"

#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace vistrel {

using platform::classNamed;
using platform::RuntimeClass;
using platform::RuntimeObject;

namespace {

constexpr const char* descriptorClass = "CGVirtualDisplayDescriptor";
constexpr const char* settingsClass = "CGVirtualDisplaySettings";
constexpr const char* modeClass = "CGVirtualDisplayMode";
constexpr const char* displayClass = "CGVirtualDisplay";
constexpr const char* classNames[] = {descriptorClass, settingsClass, modeClass, displayClass};

/// The global concurrent queue of the user-interactive quality of service.
constexpr platform::GlobalQueue userInteractiveQueue{.identifier = 0x21, .flags = 0};

/// The size that the display claims to have: its whole points, of two pixels each, by 10 / 2.54.
platform::Size sizeInMillimeters(std::int32_t width, std::int32_t height) {
  const auto millimeters = [](std::int32_t pixels) {
    const std::int32_t points = pixels / 2;
    return points / 2.54 * 10;
  };
  return {millimeters(width), millimeters(height)};
}

/// What a message answered; none when it is of another type.
template <class T>
std::optional<T> answer(const platform::RuntimeValue& value) {
  const T* const content = std::get_if<T>(&value);
  return content == nullptr ? std::nullopt : std::optional<T>(*content);
}

/// Null when the class makes none.
std::shared_ptr<RuntimeObject> makeDescriptor(RuntimeClass& itsClass, std::int32_t width,
                                              std::int32_t height, const std::string& name) {
  auto descriptor = itsClass.make();
  if (!descriptor) return nullptr;
  descriptor->send("setQueue:", {userInteractiveQueue});
  descriptor->send("setName:", {name});
  descriptor->send("setMaxPixelsWide:", {static_cast<std::uint32_t>(width)});
  descriptor->send("setMaxPixelsHigh:", {static_cast<std::uint32_t>(height)});
  descriptor->send("setSizeInMillimeters:", {sizeInMillimeters(width, height)});
  descriptor->send("setProductID:", {0x1234U});
  descriptor->send("setVendorID:", {0x3456U});
  descriptor->send("setSerialNum:", {1U});
  descriptor->send("setTerminationHandler:", {platform::Block([] {})});
  return descriptor;
}

/// Null when one of the classes makes none.
std::shared_ptr<RuntimeObject> makeSettings(RuntimeClass& itsClass, RuntimeClass& itsModeClass,
                                            std::int32_t width, std::int32_t height) {
  auto settings = itsClass.make();
  if (!settings) return nullptr;
  settings->send("setHiDPI:", {true});
  const auto mode = itsModeClass.make(
      "initWithWidth:height:refreshRate:",
      {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), 60.0});
  if (!mode) return nullptr;
  settings->send("setModes:", {std::vector{mode}});
  return settings;
}

std::string listing(const RuntimeClass& itsClass) {
  std::string text;
  for (const auto& [name, attributes] : itsClass.properties()) {
    text.append("  prop ").append(name).append(" : ").append(attributes).append("\n");
  }
  for (const std::string& selector : itsClass.selectors()) {
    text.append("  sel  ").append(selector).append("\n");
  }
  return text;
}

}  // namespace

std::string VLVirtualDisplay::diagnostics() {
  std::string text;
  for (const char* name : classNames) {
    const auto found = classNamed(name);
    text += std::string("=== ") + name + " " + (found ? "(found)" : "(MISSING)") + "\n";
    if (found) text += listing(*found);
  }
  return text;
}

std::unique_ptr<VLVirtualDisplay> VLVirtualDisplay::displayWithWidth(std::int32_t width,
                                                                     std::int32_t height,
                                                                     const std::string& name) {
  auto display = std::make_unique<VLVirtualDisplay>();
  return display->createWithWidth(width, height, name) ? std::move(display) : nullptr;
}

bool VLVirtualDisplay::createWithWidth(std::int32_t width, std::int32_t height,
                                       const std::string& name) {
  const auto descriptors = classNamed(descriptorClass);
  const auto settings = classNamed(settingsClass);
  const auto modes = classNamed(modeClass);
  const auto displays = classNamed(displayClass);
  if (!descriptors || !settings || !modes || !displays) return false;

  const auto descriptor = makeDescriptor(*descriptors, width, height, name);
  if (!descriptor) return false;
  const auto display = displays->make("initWithDescriptor:", {descriptor});
  if (!display) return false;
  const auto wanted = makeSettings(*settings, *modes, width, height);
  if (!wanted) return false;
  if (!answer<bool>(display->send("applySettings:", {wanted})).value_or(false)) return false;
  display_ = display;
  displayID_ = answer<std::uint32_t>(display->send("displayID")).value_or(0);
  return displayID_ != 0;
}

}  // namespace vistrel
