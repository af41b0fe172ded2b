#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <string>

#include "platform/linux/XdgDirectories.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;

namespace fs = std::filesystem;

/// An environment with these variables alone.
Variables only(std::map<std::string, std::string> set) {
  return [set = std::move(set)](const char* name) {
    const auto found = set.find(name);
    return found == set.end() ? std::string() : found->second;
  };
}

TEST(XdgDirectories, AreTheStandardsOwnWhereNothingIsSet) {
  const auto ann = only({{"HOME", "/home/ann"}});
  EXPECT_EQ(xdgStateHome(ann), "/home/ann/.local/state");
  EXPECT_THAT(xdgConfigDirectories(ann),
              ElementsAre(fs::path("/home/ann/.config"), fs::path("/etc/xdg")));
  EXPECT_THAT(xdgDataDirectories(ann),
              ElementsAre(fs::path("/home/ann/.local/share"), fs::path("/usr/local/share"),
                          fs::path("/usr/share")));
}

TEST(XdgDirectories, AreWhatIsSet) {
  const auto ann = only({{"HOME", "/home/ann"},
                         {"XDG_STATE_HOME", "/s"},
                         {"XDG_CONFIG_HOME", "/c"},
                         {"XDG_CONFIG_DIRS", "/c1:/c2"},
                         {"XDG_DATA_HOME", "/d"},
                         {"XDG_DATA_DIRS", "/d1"}});
  EXPECT_EQ(xdgStateHome(ann), "/s");
  EXPECT_THAT(xdgConfigDirectories(ann),
              ElementsAre(fs::path("/c"), fs::path("/c1"), fs::path("/c2")));
  EXPECT_THAT(xdgDataDirectories(ann), ElementsAre(fs::path("/d"), fs::path("/d1")));
}

TEST(XdgDirectories, LeaveOutPathsThatAreNotAbsolute) {
  const auto ann = only({{"HOME", "/home/ann"},
                         {"XDG_STATE_HOME", "state"},
                         {"XDG_CONFIG_HOME", "./config"},
                         {"XDG_CONFIG_DIRS", "::here:/c:~/there:"},
                         {"XDG_DATA_DIRS", "data:"}});
  EXPECT_EQ(xdgStateHome(ann), "/home/ann/.local/state");
  EXPECT_THAT(xdgConfigDirectories(ann),
              ElementsAre(fs::path("/home/ann/.config"), fs::path("/c")));
  EXPECT_THAT(xdgDataDirectories(ann),
              ElementsAre(fs::path("/home/ann/.local/share"), fs::path("/usr/local/share"),
                          fs::path("/usr/share")));
}

TEST(XdgDirectories, AreNotWhereTheProgramHappensToBeStarted) {
  for (const char* home : {"", "ann"}) {
    const auto nobody = only({{"HOME", home}});
    EXPECT_EQ(xdgStateHome(nobody), "");
    EXPECT_THAT(xdgConfigDirectories(nobody), ElementsAre(fs::path("/etc/xdg")));
    EXPECT_THAT(xdgDataDirectories(nobody),
                ElementsAre(fs::path("/usr/local/share"), fs::path("/usr/share")));
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
