#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "platform/linux/ApplicationNames.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

class ApplicationNamesTest : public testing::Test {
 protected:
  void install(const std::string& file, const std::string& text) {
    const auto applications = directory_.path() / "applications";
    std::filesystem::create_directories(applications);
    std::ofstream(applications / file) << "[Desktop Entry]\nType=Application\n" << text;
  }
  std::string nameFor(const ApplicationHints& hints) {
    ApplicationNames names(DesktopEntries({directory_.path()}, "C"));
    names.refresh();
    return names.nameFor(hints);
  }

  const std::string ownProgram_ = std::filesystem::read_symlink("/proc/self/exe").filename();
  testbed::TemporaryDirectory directory_;
};

// Each entry that is added is a better answer than all before it.
TEST_F(ApplicationNamesTest, comeFromTheHintThatSaysMost) {
  const ApplicationHints hints{.applicationId = "org.example.Sums",
                               .wmClassInstance = "sums",
                               .wmClass = "Reckoner",
                               .processId = getpid()};
  EXPECT_EQ(nameFor(hints), "Reckoner");
  install("a.desktop", "Name=By its process\nExec=" + ownProgram_ + "\n");
  EXPECT_EQ(nameFor(hints), "By its process");
  install("b.desktop", "Name=By the instance, a program\nExec=sums\n");
  EXPECT_EQ(nameFor(hints), "By the instance, a program");
  install("c.desktop", "Name=By the class, a program\nExec=reckoner\n");
  EXPECT_EQ(nameFor(hints), "By the class, a program");
  install("org.example.sums.desktop", "Name=By the instance, the last part of an id\n");
  EXPECT_EQ(nameFor(hints), "By the instance, the last part of an id");
  install("org.example.reckoner.desktop", "Name=By the class, the last part of an id\n");
  EXPECT_EQ(nameFor(hints), "By the class, the last part of an id");
  install("org.example.Sums.desktop", "Name=By its own word\n");
  EXPECT_EQ(nameFor(hints), "By its own word");
}

TEST_F(ApplicationNamesTest, areThoseOfProcessesWhereWindowsSayNothing) {
  EXPECT_EQ(nameFor({.processId = getpid()}), ownProgram_.substr(0, 15));
  EXPECT_EQ(nameFor({}), "Unknown");
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
