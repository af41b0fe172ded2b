#include "platform/linux/wayland/kwin/NativeHomecoming.h"

#include <iomanip>
#include <limits>
#include <sstream>

#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::string numberText(double number) {
  std::ostringstream text;
  text << std::setprecision(std::numeric_limits<double>::max_digits10) << number;
  return text.str();
}

}  // namespace

std::string scriptThatMoves(const std::string& uuid, Point position, std::optional<Point> parked) {
  const auto condition = parked
                             ? "Math.abs(client.x - " + numberText(parked->x) +
                                   ") < 1 && Math.abs(client.y - " + numberText(parked->y) + ") < 1"
                             : std::string("true");
  return "(function () {\n"
         "  var each = find(" +
         scriptLiteral(uuid) +
         ");\n"
         "  if (!each) return;\n"
         "  var frame = each.frameGeometry, client = inside(each);\n"
         "  if (" +
         condition + ") each.frameGeometry = {x: " + numberText(position.x) +
         " - (client.x - frame.x), y: " + numberText(position.y) +
         " - (client.y - frame.y), width: frame.width, height: frame.height};\n"
         "  tell('there');\n"
         "})();\n";
}

void bringLeftHome(ParkedRecord& record, KWinScripts& scripts, double deadline) {
  std::string script;
  for (const auto& [uuid, places] : record.read()) {
    script += scriptThatMoves(uuid, places.home, places.parked);
  }
  if (script.empty()) return;
  trace(TraceTopic::manager, [] { return "parked native windows were left, and go home"; });
  if (scripts.run(script, deadline)) record.write({});
}

}  // namespace vistrel::platform::linux_desktop
