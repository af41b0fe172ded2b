#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "tests/architecture/IncludeRules.h"

namespace vistrel::architecture {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* upward = "arrows run down only";
constexpr const char* systemInCore = "the core includes the C++ standard library alone";
constexpr const char* foreignBackend = "a backend is known to itself alone";
constexpr const char* coreInBackend = "a backend knows nothing of the core";
constexpr const char* oppositeHalf = "the halves of a backend do not know each other";
constexpr const char* displaySystemInProvider = "a provider knows no display system";
constexpr const char* roomAbove = "a room includes the rooms that it stands on";
constexpr const char* unknownRoom = "a new room says what it stands on";
constexpr const char* notFromRoot = "write includes of our own from the project root";

std::vector<std::string> brokenRules(const std::string& file, const std::string& text) {
  std::vector<std::string> rules;
  for (const auto& violation : includeViolations(file, text)) rules.push_back(violation.rule);
  return rules;
}

TEST(IncludeRules, AllowTheOwnRoomAndThoseBelow) {
  EXPECT_THAT(brokenRules("app/AppDelegate.cpp",
                          "#include \"app/AppDelegate.h\"\n"
                          "#include \"picker/PickerWindowController.h\"\n"
                          "#include \"mirror/MirrorPanel.h\"\n"
                          "#include \"platform/View.h\"\n"),
              IsEmpty());
}

TEST(IncludeRules, AllowTheStandardLibraryEverywhere) {
  EXPECT_THAT(brokenRules("mirror/BlankTest.cpp", "#include <vector>\n#include <cstdint>\n"),
              IsEmpty());
}

TEST(IncludeRules, CatchAnArrowThatRunsUp) {
  EXPECT_THAT(brokenRules("platform/View.cpp", "#include \"mirror/MirrorPanel.h\"\n"),
              ElementsAre(upward));
  EXPECT_THAT(brokenRules("parking/WindowParker.h", "#include \"mirror/MirrorPanel.h\"\n"),
              ElementsAre(upward));
  EXPECT_THAT(brokenRules("mirror/MirrorPanel.h", "#include \"catalogue/Snap.h\"\n"),
              ElementsAre(upward));
  EXPECT_THAT(brokenRules("catalogue/Snap.h", "#include \"picker/PickerTexts.h\"\n"),
              ElementsAre(upward));
  EXPECT_THAT(brokenRules("picker/PickerTexts.h", "#include \"app/AppDelegate.h\"\n"),
              ElementsAre(upward));
}

TEST(IncludeRules, CatchASystemsHeaderInTheCore) {
  for (const char* header : {"QWidget", "X11/Xlib.h", "xcb/xcb.h", "AppKit/AppKit.h", "unistd.h",
                             "sys/types.h", "QtCore/qobject.h", "stdint.h"}) {
    EXPECT_THAT(brokenRules("mirror/MirrorPanel.h", std::string("#include <") + header + ">\n"),
                ElementsAre(systemInCore))
        << header;
  }
  EXPECT_THAT(brokenRules("platform/View.h", "#include <QWidget>\n"), ElementsAre(systemInCore));
}

TEST(IncludeRules, CatchASystemsHeaderInQuotes) {
  EXPECT_THAT(brokenRules("mirror/MirrorPanel.h", "#include \"X11/Xlib.h\"\n"),
              ElementsAre(notFromRoot));
}

TEST(IncludeRules, CatchABackendInTheCore) {
  EXPECT_THAT(
      brokenRules("mirror/MirrorPanel.h", "#include \"platform/simulated/SimulatedFrames.h\"\n"),
      ElementsAre(foreignBackend));
  EXPECT_THAT(brokenRules("platform/View.cpp", "#include \"platform/linux/SerialQueue.h\"\n"),
              ElementsAre(foreignBackend));
  EXPECT_THAT(brokenRules("app/main.cpp", "#import <platform/macos/Panel.h>\n"),
              ElementsAre(foreignBackend));
}

TEST(IncludeRules, AllowABackendItsSystemItsFolderAndTheSeam) {
  EXPECT_THAT(brokenRules("platform/linux/qt/QtWindow.cpp",
                          "#include <QWidget>\n"
                          "#include <unistd.h>\n"
                          "#include \"platform/Window.h\"\n"
                          "#include \"platform/linux/SerialQueue.h\"\n"
                          "#include \"platform/linux/qt/QtWindow.h\"\n"),
              IsEmpty());
}

TEST(IncludeRules, CatchTheCoreInABackend) {
  EXPECT_THAT(brokenRules("platform/linux/qt/QtWindow.cpp", "#include \"mirror/MirrorPanel.h\"\n"),
              ElementsAre(coreInBackend));
}

TEST(IncludeRules, CatchOneBackendInAnother) {
  EXPECT_THAT(brokenRules("platform/simulated/A.h", "#include \"platform/linux/SerialQueue.h\"\n"),
              ElementsAre(foreignBackend));
}

TEST(IncludeRules, CatchOneHalfOfTheLinuxBackendInTheOther) {
  EXPECT_THAT(brokenRules("platform/linux/qt/A.cpp", "#include \"platform/linux/x11/B.h\"\n"),
              ElementsAre(oppositeHalf));
  EXPECT_THAT(brokenRules("platform/linux/x11/B.cpp", "#include \"platform/linux/qt/A.h\"\n"),
              ElementsAre(oppositeHalf));
  EXPECT_THAT(brokenRules("platform/linux/Factory.cpp",
                          "#include \"platform/linux/qt/A.h\"\n"
                          "#include \"platform/linux/x11/B.h\"\n"),
              IsEmpty());
}

TEST(IncludeRules, AllowTheWaylandHalfWhatBringsPicturesIntoPanels) {
  EXPECT_THAT(brokenRules("platform/linux/wayland/A.cpp",
                          "#include <wayland-client.h>\n"
                          "#include \"platform/linux/session/B.h\"\n"
                          "#include \"platform/linux/wayland/C.h\"\n"
                          "#include \"platform/linux/x11/picture/D.h\"\n"
                          "#include \"platform/linux/x11/server/E.h\"\n"
                          "#include \"platform/linux/x11/source/F.h\"\n"),
              IsEmpty());
}

TEST(IncludeRules, CatchTheWaylandHalfInAnotherAndAnyOtherRoomInIt) {
  EXPECT_THAT(brokenRules("platform/linux/wayland/A.cpp",
                          "#include \"platform/linux/x11/listing/B.h\"\n"
                          "#include \"platform/linux/x11/X11Session.h\"\n"
                          "#include \"platform/linux/qt/space/C.h\"\n"),
              ElementsAre(oppositeHalf, oppositeHalf, oppositeHalf));
  EXPECT_THAT(
      brokenRules("platform/linux/x11/source/A.cpp", "#include \"platform/linux/wayland/B.h\"\n"),
      ElementsAre(oppositeHalf));
  EXPECT_THAT(
      brokenRules("platform/linux/session/A.h", "#include \"platform/linux/wayland/B.h\"\n"),
      ElementsAre(displaySystemInProvider));
}

TEST(IncludeRules, CatchADisplaySystemInAProvider) {
  EXPECT_THAT(brokenRules("platform/linux/session/A.h",
                          "#include <vector>\n"
                          "#include \"platform/Image.h\"\n"
                          "#include \"platform/linux/PixelRect.h\"\n"
                          "#include \"platform/linux/session/B.h\"\n"),
              IsEmpty());
  EXPECT_THAT(brokenRules("platform/linux/session/A.h",
                          "#include <xcb/xcb.h>\n"
                          "#include <QRect>\n"
                          "#include \"platform/linux/x11/server/B.h\"\n"
                          "#include \"platform/linux/qt/QtDesktop.h\"\n"),
              ElementsAre(displaySystemInProvider, displaySystemInProvider, displaySystemInProvider,
                          displaySystemInProvider));
  EXPECT_THAT(
      brokenRules("platform/linux/x11/stream/A.cpp", "#include \"platform/linux/session/B.h\"\n"),
      IsEmpty());
}

TEST(IncludeRules, AllowARoomOfAHalfTheRoomsThatItStandsOn) {
  EXPECT_THAT(brokenRules("platform/linux/x11/stream/A.cpp",
                          "#include \"platform/linux/SerialQueue.h\"\n"
                          "#include \"platform/linux/x11/stream/B.h\"\n"
                          "#include \"platform/linux/x11/picture/C.h\"\n"),
              IsEmpty());
  EXPECT_THAT(brokenRules("platform/linux/qt/QtWindows.cpp",
                          "#include \"platform/linux/qt/panel/A.h\"\n"
                          "#include \"platform/linux/qt/QtDesktop.h\"\n"),
              IsEmpty());
}

TEST(IncludeRules, CatchARoomOfAHalfInOneBelowOrBesideIt) {
  EXPECT_THAT(brokenRules("platform/linux/x11/picture/A.cpp",
                          "#include \"platform/linux/x11/stream/B.h\"\n"),
              ElementsAre(roomAbove));
  EXPECT_THAT(
      brokenRules("platform/linux/qt/panel/A.cpp", "#include \"platform/linux/qt/widgets/B.h\"\n"),
      ElementsAre(roomAbove));
}

TEST(IncludeRules, CatchWhatPutsTheRoomsTogetherInARoom) {
  EXPECT_THAT(
      brokenRules("platform/linux/qt/panel/A.cpp", "#include \"platform/linux/qt/QtDesktop.h\"\n"),
      ElementsAre(roomAbove));
}

TEST(IncludeRules, AllowARoomOfTheMacBackendTheRoomsThatItStandsOn) {
  EXPECT_THAT(brokenRules("platform/macos/views/A.mm",
                          "#import <AppKit/AppKit.h>\n"
                          "#include \"platform/macos/Conversions.h\"\n"
                          "#include \"platform/macos/capture/B.h\"\n"
                          "#include \"platform/macos/views/C.h\"\n"),
              IsEmpty());
}

TEST(IncludeRules, CatchARoomOfTheMacBackendInOneBelowOrBesideIt) {
  EXPECT_THAT(brokenRules("platform/macos/views/A.mm", "#include \"platform/macos/windows/B.h\"\n"),
              ElementsAre(roomAbove));
  EXPECT_THAT(
      brokenRules("platform/macos/capture/A.mm", "#include \"platform/macos/displays/B.h\"\n"),
      ElementsAre(roomAbove));
  EXPECT_THAT(
      brokenRules("platform/macos/Conversions.mm", "#include \"platform/macos/application/B.h\"\n"),
      ElementsAre(roomAbove));
}

TEST(IncludeRules, CatchARoomThatNobodyKnows) {
  EXPECT_THAT(brokenRules("platform/linux/x11/attic/A.cpp", "#include <vector>\n"),
              ElementsAre(unknownRoom));
  EXPECT_THAT(brokenRules("platform/macos/attic/A.mm", "#include <vector>\n"),
              ElementsAre(unknownRoom));
}

TEST(IncludeRules, CatchAnIncludeThatIsNotFromTheRoot) {
  EXPECT_THAT(brokenRules("mirror/MirrorPanel.cpp", "#include \"MirrorPanel.h\"\n"),
              ElementsAre(notFromRoot));
  EXPECT_THAT(brokenRules("mirror/MirrorPanel.cpp", "#include \"../mirror/MirrorPanel.h\"\n"),
              ElementsAre(notFromRoot));
}

TEST(IncludeRules, ReadIncludesHoweverTheyAreSpaced) {
  EXPECT_THAT(brokenRules("mirror/A.h", "  #  include\t<QWidget> // why\n"),
              ElementsAre(systemInCore));
}

TEST(IncludeRules, TellWhereAndWhatTheyCaught) {
  EXPECT_THAT(includeViolations("mirror/A.h", "#include <QWidget>\n"),
              ElementsAre(Violation{"mirror/A.h", "QWidget", systemInCore}));
}

std::string textOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

TEST(TheHouse, KeepsItsIncludeRules) {
  const std::filesystem::path root = VISTREL_SOURCE_DIR;
  int filesRead = 0;
  for (const char* room : {"app", "picker", "catalogue", "mirror", "parking", "platform"}) {
    if (!std::filesystem::exists(root / room)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / room)) {
      const auto extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp" && extension != ".mm") continue;
      ++filesRead;
      const std::string file = std::filesystem::relative(entry.path(), root).generic_string();
      for (const auto& violation : includeViolations(file, textOf(entry.path()))) {
        ADD_FAILURE() << violation.file << " includes " << violation.included << ": "
                      << violation.rule;
      }
    }
  }
  EXPECT_GT(filesRead, 50);
}

}  // namespace
}  // namespace vistrel::architecture
