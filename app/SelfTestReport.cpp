#include "app/SelfTestReport.h"

#include <sstream>

namespace vistrel {

std::string selfTestReport(const SelfTestFindings& findings) {
  using platform::truncatedToInt64;
  const platform::Rect& bounds = findings.bounds;
  std::ostringstream line;
  line << "vdtest: created=" << (findings.created ? "true" : "false")
       << " displayID=" << findings.displayID  //
       << " online " << findings.onlineBefore << "->" << findings.onlineAfter
       << " screens=" << findings.screens << " mainMaxX=" << truncatedToInt64(findings.mainMaxX)
       << " bounds=" << truncatedToInt64(bounds.minX()) << "," << truncatedToInt64(bounds.minY())
       << " " << truncatedToInt64(bounds.width()) << "x" << truncatedToInt64(bounds.height())
       << "\n";
  return line.str();
}

}  // namespace vistrel
