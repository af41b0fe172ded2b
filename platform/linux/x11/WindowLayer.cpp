#include "platform/linux/x11/WindowLayer.h"

#include <algorithm>
#include <array>

namespace vistrel::platform::linux_desktop {
namespace {

struct TypeLayer {
  std::string_view type;
  WindowLayer layer;
};

constexpr std::string_view typePrefix = "_NET_WM_WINDOW_TYPE_";

constexpr std::array<TypeLayer, 14> layers{{{"NORMAL", layerOrdinary},
                                            {"DIALOG", layerOrdinary},
                                            {"DESKTOP", layerDesktop},
                                            {"DOCK", layerDock},
                                            {"TOOLBAR", layerFloating},
                                            {"MENU", layerFloating},
                                            {"UTILITY", layerFloating},
                                            {"SPLASH", layerFloating},
                                            {"DROPDOWN_MENU", layerPopUp},
                                            {"POPUP_MENU", layerPopUp},
                                            {"TOOLTIP", layerPopUp},
                                            {"NOTIFICATION", layerPopUp},
                                            {"COMBO", layerPopUp},
                                            {"DND", layerPopUp}}};

}  // namespace

std::optional<WindowLayer> layerOfType(std::string_view typeName) {
  if (!typeName.starts_with(typePrefix)) return std::nullopt;
  const auto name = typeName.substr(typePrefix.size());
  const auto found = std::find_if(layers.begin(), layers.end(),
                                  [&](const TypeLayer& each) { return each.type == name; });
  return found == layers.end() ? std::nullopt : std::optional(found->layer);
}

}  // namespace vistrel::platform::linux_desktop
