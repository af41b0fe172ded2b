#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include "tests/packaging/FileTree.h"
#include "tests/packaging/ProgramOutput.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/XConnection.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The package of this version, as it has just been made.
std::string package() {
  for (const auto& entry : std::filesystem::directory_iterator(VISTREL_MADE_DIR)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with("vistrel_" VISTREL_VERSION "_") && name.ends_with(".deb")) {
      return entry.path().string();
    }
  }
  throw std::runtime_error("no package in " VISTREL_MADE_DIR);
}

std::string field(const std::string& name) {
  const std::string value = outputOf({"dpkg-deb", "--field", package(), name});
  return value.substr(0, value.find_last_not_of('\n') + 1);
}

/// The package's files, and what it tells the package manager, in a directory of their own.
class DebianPackage : public ::testing::Test {
 protected:
  DebianPackage() { outputOf({"dpkg-deb", "--raw-extract", package(), directory_.path()}); }

  std::filesystem::path usr() const { return directory_.path() / "usr"; }
  std::filesystem::path documents() const { return usr() / "share/doc/vistrel"; }
  std::vector<std::filesystem::path> programs() const {
    return {usr() / "bin/vistrel", usr() / "libexec/vistrel/vistrel-guard",
            usr() / "libexec/vistrel/vistrel-dialog-keeper",
            usr() / "libexec/vistrel/vistrel-kwin-guard", usr() / "lib/vistrel/vistrel-wayland.so"};
  }
  std::filesystem::path checksums() const { return directory_.path() / "DEBIAN/md5sums"; }

 private:
  const TemporaryDirectory directory_;
};

TEST_F(DebianPackage, HoldsWhatAnInstallationPutsBelowUsr) {
  std::set<std::string> expected = {"DEBIAN/control", "DEBIAN/md5sums"};
  for (const std::string& file : installedFiles()) {
    expected.insert("usr/" + file);
  }
  EXPECT_EQ(filesBelow(usr().parent_path()), expected);
}

TEST_F(DebianPackage, BelongsToRootAndIsReadableByAll) {
  for (const std::string& line : linesOf(outputOf({"dpkg-deb", "--contents", package()}))) {
    const bool isProgram = line.ends_with("/usr/bin/vistrel") ||
                           line.find(" ./usr/libexec/vistrel/vistrel-") != std::string::npos;
    EXPECT_THAT(line,
                AnyOf(StartsWith("drwxr-xr-x root/root "),
                      StartsWith(isProgram ? "-rwxr-xr-x root/root " : "-rw-r--r-- root/root ")));
  }
}

TEST_F(DebianPackage, SaysWhatItIs) {
  EXPECT_EQ(field("Package"), "vistrel");
  EXPECT_EQ(field("Version"), VISTREL_VERSION);
  EXPECT_EQ(field("Section"), "x11");
  EXPECT_EQ(field("Priority"), "optional");
  EXPECT_THAT(field("Maintainer"), StartsWith("Tollbeck <"));
  EXPECT_THAT(field("Description"),
              StartsWith("live mirrors of windows in small floating panels\n Vistrel shows"));
}

/// The toolkit loads its half for X by name, so that no linker knows of it.
TEST_F(DebianPackage, DependsOnWhatHoldsTheToolkitsPlatform) {
  const std::string owner = outputOf({"dpkg-query", "--search", "*/platforms/libqxcb.so"});
  const std::string name = owner.substr(0, owner.find(':'));
  EXPECT_THAT(field("Depends"), HasSubstr(name + " (>="));
}

TEST_F(DebianPackage, OnlyRecommendsWhatWaylandSessionsNeed) {
  for (const char* library : {"libwayland-client", "libpipewire"}) {
    EXPECT_THAT(field("Depends"), Not(HasSubstr(library)));
  }
  EXPECT_THAT(field("Recommends"), HasSubstr("libwayland-client0"));
  EXPECT_THAT(outputOf({"readelf", "--dynamic", usr() / "bin/vistrel"}),
              Not(AnyOf(HasSubstr("libwayland"), HasSubstr("libpipewire"))));
}

/// By which KWin knows whom the entry is about.
TEST_F(DebianPackage, NamesTheProgramByItsPathWhereItAsksForNativeWindows) {
  const auto lines =
      linesOf(contentsOf(usr() / "share/applications" / (VISTREL_APPLICATION_ID ".desktop")));
  EXPECT_THAT(lines, Contains("Exec=/usr/bin/vistrel"));
  EXPECT_THAT(lines, Contains("X-KDE-Wayland-Interfaces=org_kde_plasma_window_management,"
                              "zkde_screencast_unstable_v1"));
}

TEST_F(DebianPackage, HasTheChecksumOfEachFile) {
  EXPECT_EQ(linesOf(contentsOf(checksums())).size(), installedFiles().size());
  EXPECT_NO_THROW(
      outputOf({"env", "-C", usr().parent_path(), "md5sum", "--check", "--strict", checksums()}));
}

/// Debian Policy 12.1 and 12.7: as small as gzip makes them; and without a time, so that the same
/// text gives the same bytes (RFC 1952, 2.3: flags, time, and 2 for the slowest algorithm).
TEST_F(DebianPackage, CompressesManualAndChangelog) {
  const std::string header("\x1f\x8b\x08\0\0\0\0\0\x02", 9);
  EXPECT_THAT(contentsOf(usr() / "share/man/man1/vistrel.1.gz"), StartsWith(header));
  EXPECT_THAT(contentsOf(documents() / "changelog.gz"), StartsWith(header));
}

TEST_F(DebianPackage, TellsOfItsOwnVersionFirst) {
  const auto changes = linesOf(outputOf({"zcat", documents() / "changelog.gz"}));
  EXPECT_THAT(changes.at(0), StartsWith("vistrel (" VISTREL_VERSION ") "));

  const std::string catalogue =
      contentsOf(usr() / "share/metainfo" / (VISTREL_APPLICATION_ID ".metainfo.xml"));
  const auto newest = catalogue.find("<release ");
  ASSERT_NE(newest, std::string::npos);
  EXPECT_THAT(catalogue.substr(newest), StartsWith("<release version=\"" VISTREL_VERSION "\""));

  const std::string manual = outputOf({"zcat", usr() / "share/man/man1/vistrel.1.gz"});
  EXPECT_THAT(manual, HasSubstr("\"Vistrel " VISTREL_VERSION "\"\n"));
}

TEST_F(DebianPackage, ItsProgramsAreStrippedAndFindLibrariesWhereTheSystemDoes) {
  for (const auto& program : programs()) {
    const std::string dynamic = outputOf({"readelf", "--dynamic", program});
    EXPECT_THAT(dynamic, HasSubstr("(NEEDED)"));
    EXPECT_THAT(dynamic, Not(AnyOf(HasSubstr("(RPATH)"), HasSubstr("(RUNPATH)"))));
    EXPECT_THAT(outputOf({"readelf", "--sections", "--wide", program}), Not(HasSubstr(".symtab")));
  }
}

/// A system of its own for the package manager, without any other package.
class BareSystem {
 public:
  BareSystem() {
    std::filesystem::create_directories(database() / "updates");
    std::filesystem::create_directories(database() / "info");
    outputOf({"touch", database() / "status"});
  }

  const std::filesystem::path& root() const { return directory_.path(); }
  std::filesystem::path database() const { return root() / "var/lib/dpkg"; }

  void run(const std::vector<std::string>& action) {
    std::vector<std::string> command = {"fakeroot",
                                        "dpkg",
                                        "--root=" + root().string(),
                                        "--log=" + (database() / "log").string(),
                                        "--force-not-root",
                                        "--force-bad-path",
                                        "--force-depends"};
    command.insert(command.end(), action.begin(), action.end());
    outputOf(command);
  }

  /// Files and directories, but for the package manager's own.
  std::set<std::string> holds() const {
    std::set<std::string> found;
    for (auto each = std::filesystem::recursive_directory_iterator(root());
         each != std::filesystem::recursive_directory_iterator(); ++each) {
      if (each->path() == database()) {
        each.disable_recursion_pending();
      } else {
        found.insert(each->path().lexically_relative(root()).string());
      }
    }
    return found;
  }

 private:
  const TemporaryDirectory directory_;
};

/// The class of the first window that a program shows, as in WM_CLASS: instance and class, each
/// with a zero after it.
std::string classOfFirstWindow(const XConnection& connection, pid_t program) {
  std::string found;
  const bool isShown = eventually([&] {
    for (const xcb_window_t window : windowsOfProcess(connection, program)) {
      if (isViewable(connection, window)) {
        found = connection.text(window, "WM_CLASS");
      }
    }
    return !found.empty();
  });
  EXPECT_TRUE(isShown) << "no window";
  return found;
}

TEST_F(DebianPackage, InstallsStartsAndLeavesNothingBehind) {
  BareSystem system;
  const auto before = system.holds();
  system.run({"--install", package()});
  const std::filesystem::path installed = system.root() / "usr";
  {
    const PrivateDisplay display;
    const XConnection connection(display.name());
    const ChildProcess vistrel(
        {.arguments = {installed / "bin/vistrel"}, .environment = display.environment()});
    const std::string windowClass = classOfFirstWindow(connection, vistrel.pid());
    // By which desktops know whose window it is (Desktop Entry Specification, StartupWMClass).
    ASSERT_EQ(windowClass, std::string("vistrel\0Vistrel\0", 16));
    EXPECT_THAT(
        linesOf(contentsOf(installed / "share/applications" / (VISTREL_APPLICATION_ID ".desktop"))),
        Contains("StartupWMClass=Vistrel"));
  }
  system.run({"--purge", "vistrel"});
  EXPECT_EQ(system.holds(), before);
}

}  // namespace
}  // namespace vistrel::testbed
