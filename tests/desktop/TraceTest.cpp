#include <algorithm>
#include <sstream>

#include "tests/desktop/DesktopTest.h"

namespace vistrel::testbed {
namespace {

/// The program, asked by the environment to say on standard error what it decides.
class ProgramsTrace : public DesktopTest {
 protected:
  void TearDown() override {}

  void startTracing(const std::string& request) {
    std::vector<std::string> environment = display_.environment();
    environment.push_back("VISTREL_TRACE=" + request);
    vistrel_ = std::make_unique<RunningVistrel>(connection_,
                                                RunningVistrel::command({}, environment), scale_);
  }
  std::vector<std::string> lines() const {
    std::istringstream text(vistrel_->process().standardError());
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }
  bool says(const std::string& beginning) const {
    return std::ranges::any_of(
        lines(), [&](const std::string& line) { return line.starts_with(beginning); });
  }
};

TEST_F(ProgramsTrace, IsALineForEachDecisionAboutWhatWasAskedFor) {
  const auto source = openSource();
  startTracing("start,capture,pictures");
  mirrorRow(0, 1, 1);
  std::ostringstream id;
  id << std::hex << source->id();
  EXPECT_TRUE(
      eventually([&] { return says("vistrel: capture: window 0x" + id.str() + " is captured"); }));
  EXPECT_TRUE(says("vistrel: start: X11 lists, captures and moves windows on " + display_.name()));
  EXPECT_TRUE(says("vistrel: start: this is the display's one instance"));
  const auto all = lines();
  EXPECT_EQ(all.front(),
            "vistrel: VISTREL_TRACE does not know \"pictures\"; it knows: capture, errors, "
            "manager, monitors, start, tray, all");
  for (auto line = std::next(all.begin()); line != all.end(); ++line) {
    EXPECT_TRUE(line->starts_with("vistrel: start: ") || line->starts_with("vistrel: capture: "))
        << *line;
    EXPECT_EQ(line->find("Document"), std::string::npos) << "titles are nobody's business";
  }
}

}  // namespace
}  // namespace vistrel::testbed
