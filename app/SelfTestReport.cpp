#include "app/SelfTestReport.h"

namespace vistrel {

std::string selfTestReport(const SelfTestFindings& findings) {
  using std::to_string;
  const auto whole = [](double number) { return to_string(platform::truncatedToInt64(number)); };
  const platform::Rect& bounds = findings.bounds;
  std::string line = "vdtest: created=";
  line += findings.created ? "true" : "false";
  line += " displayID=" + to_string(findings.displayID);
  line += " online " + to_string(findings.onlineBefore) + "->" + to_string(findings.onlineAfter);
  line += " screens=" + to_string(findings.screens) + " mainMaxX=" + whole(findings.mainMaxX);
  line += " bounds=" + whole(bounds.minX()) + "," + whole(bounds.minY()) + " ";
  line += whole(bounds.width()) + "x" + whole(bounds.height()) + "\n";
  return line;
}

}  // namespace vistrel
