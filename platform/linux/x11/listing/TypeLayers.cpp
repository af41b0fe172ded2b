#include "platform/linux/x11/listing/TypeLayers.h"

#include <array>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::array<TypeLayer, 14> layers{{{"_NET_WM_WINDOW_TYPE_NORMAL", layerOrdinary},
                                            {"_NET_WM_WINDOW_TYPE_DIALOG", layerOrdinary},
                                            {"_NET_WM_WINDOW_TYPE_DESKTOP", layerDesktop},
                                            {"_NET_WM_WINDOW_TYPE_DOCK", layerDock},
                                            {"_NET_WM_WINDOW_TYPE_TOOLBAR", layerFloating},
                                            {"_NET_WM_WINDOW_TYPE_MENU", layerFloating},
                                            {"_NET_WM_WINDOW_TYPE_UTILITY", layerFloating},
                                            {"_NET_WM_WINDOW_TYPE_SPLASH", layerFloating},
                                            {"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", layerPopUp},
                                            {"_NET_WM_WINDOW_TYPE_POPUP_MENU", layerPopUp},
                                            {"_NET_WM_WINDOW_TYPE_TOOLTIP", layerPopUp},
                                            {"_NET_WM_WINDOW_TYPE_NOTIFICATION", layerPopUp},
                                            {"_NET_WM_WINDOW_TYPE_COMBO", layerPopUp},
                                            {"_NET_WM_WINDOW_TYPE_DND", layerPopUp}}};

}  // namespace

std::span<const TypeLayer> typeLayers() { return layers; }

}  // namespace vistrel::platform::linux_desktop
