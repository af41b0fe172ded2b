#include "app/AppInfo.h"

#include "platform/Bundle.h"

namespace vistrel::AppInfo {

std::string version() {
  return platform::bundleInfo("CFBundleShortVersionString").value_or("1.0.0");
}

}  // namespace vistrel::AppInfo
