#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/DesktopEntries.h"
#include "tests/support/Poll.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(LocaleSuffixes, goFromTheMostSpecificToTheLanguage) {
  EXPECT_THAT(localeSuffixes("de_AT.UTF-8@euro"),
              ElementsAre("de_AT@euro", "de_AT", "de@euro", "de"));
  EXPECT_THAT(localeSuffixes("de_AT.UTF-8"), ElementsAre("de_AT", "de"));
  EXPECT_THAT(localeSuffixes("fr"), ElementsAre("fr"));
}

TEST(LocaleSuffixes, areNoneWithoutALanguage) {
  for (const auto* locale : {"", "C", "C.UTF-8", "POSIX"}) {
    EXPECT_THAT(localeSuffixes(locale), IsEmpty()) << locale;
  }
}

constexpr auto files = R"(# A comment
[Desktop Entry]
Type=Application
Name=Files
Name[de]=Dateien
Name[de_AT] = Akten
StartupWMClass=Org.Files

[Desktop Action new]
Name=New Window
)";

TEST(DesktopEntry, isNamedInThePersonsLanguage) {
  EXPECT_EQ(parseDesktopEntry(files, "de_DE.UTF-8")->name, "Dateien");
  EXPECT_EQ(parseDesktopEntry(files, "de_AT.UTF-8")->name, "Akten");
  EXPECT_EQ(parseDesktopEntry(files, "fr_FR.UTF-8")->name, "Files");
  EXPECT_EQ(parseDesktopEntry(files, "C")->name, "Files");
}

TEST(DesktopEntry, saysWhichClassItsWindowsHave) {
  EXPECT_EQ(parseDesktopEntry(files, "C")->startupWMClass, "Org.Files");
}

TEST(DesktopEntry, isNoneForLinksHiddenOnesAndThoseWithoutAName) {
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Link\nName=x\n", "C"));
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=x\nHidden=true\n", "C"));
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Application\n", "C"));
  EXPECT_FALSE(parseDesktopEntry("", "C"));
}

TEST(DesktopEntry, hasItsEscapesUndone) {
  const auto entry =
      parseDesktopEntry("[Desktop Entry]\nType=Application\nName=a\\sb\\\\c\xFF\r\n", "C");
  EXPECT_EQ(entry->name, "a b\\c\uFFFD");
}

std::string programOf(const std::string& lines) {
  return parseDesktopEntry("[Desktop Entry]\nType=Application\nName=x\n" + lines, "C")->program;
}

TEST(DesktopEntry, knowsItsProgramByItsFileName) {
  EXPECT_EQ(programOf("Exec=kcalc\n"), "kcalc");
  EXPECT_EQ(programOf("Exec=/usr/bin/mpv --player-operation-mode=pseudo-gui -- %U\n"), "mpv");
  EXPECT_EQ(programOf("Exec=\"/opt/My App/paint\" %f\n"), "paint");
}

TEST(DesktopEntry, isNotKnownByAProgramThatIsToldWhatToBe) {
  EXPECT_EQ(programOf("Exec=python3 /usr/share/clock/clock.py\n"), "");
  EXPECT_EQ(programOf("Exec=env LANG=C clock\n"), "");
  EXPECT_EQ(programOf("Exec=java -jar clock.jar\n"), "");
  EXPECT_EQ(programOf("Exec=/usr/bin/python3\nNoDisplay=true\n"), "");
  EXPECT_EQ(programOf(""), "");
}

class DesktopEntriesTest : public testing::Test {
 protected:
  void install(const std::string& data, const std::string& file, const std::string& text) {
    const auto path = directory_.path() / data / "applications" / file;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << "[Desktop Entry]\nType=Application\n" << text;
  }

  DesktopEntries entries() {
    DesktopEntries result({directory_.path() / "home", directory_.path() / "system"}, "C");
    result.refresh();
    return result;
  }

  testbed::TemporaryDirectory directory_;
};

TEST_F(DesktopEntriesTest, areFoundByTheirIdWithFoldersInIt) {
  install("system", "kde/okular.desktop", "Name=Okular\n");
  EXPECT_EQ(entries().withId("kde-okular")->name, "Okular");
  EXPECT_EQ(entries().withId("okular"), nullptr);
}

TEST_F(DesktopEntriesTest, areFoundByTheirWindowsClassWhateverItsLetterCase) {
  install("system", "org.files.desktop", "Name=Files\nStartupWMClass=FilesWindow\n");
  EXPECT_EQ(entries().withWindowClass("fileswindow")->name, "Files");
  EXPECT_EQ(entries().withWindowClass("Org.Files")->name, "Files");
  EXPECT_EQ(entries().withWindowClass(""), nullptr);
}

TEST_F(DesktopEntriesTest, goByTheirOwnWordOnTheClassFirst) {
  install("system", "term.desktop", "Name=Plain\n");
  install("system", "zterm.desktop", "Name=Fancy\nStartupWMClass=term\n");
  EXPECT_EQ(entries().withWindowClass("term")->name, "Fancy");
}

TEST_F(DesktopEntriesTest, areFoundByTheLastPartOfTheirIdWhereItIsNobodyElses) {
  install("system", "org.kde.kcalc.desktop", "Name=KCalc\n");
  EXPECT_EQ(entries().withWindowClass("kcalc")->name, "KCalc");
  EXPECT_EQ(entries().withWindowClass("KCalc")->name, "KCalc");
  EXPECT_EQ(entries().withWindowClass("kde"), nullptr);
  install("system", "com.other.KCalc.desktop", "Name=Other\n");
  EXPECT_EQ(entries().withWindowClass("kcalc"), nullptr);
  install("system", "kcalc.desktop", "Name=Whole\n");
  EXPECT_EQ(entries().withWindowClass("kcalc")->name, "Whole");
  install("system", "calc.desktop", "Name=Own word\nStartupWMClass=kcalc\n");
  EXPECT_EQ(entries().withWindowClass("kcalc")->name, "Own word");
}

TEST_F(DesktopEntriesTest, areFoundByTheirProgramWhereNoOtherRunsIt) {
  install("system", "calculator.desktop", "Name=Calculator\nExec=/usr/bin/kcalc %f\n");
  EXPECT_EQ(entries().withProgram("kcalc")->name, "Calculator");
  EXPECT_EQ(entries().withProgram(""), nullptr);
  EXPECT_EQ(entries().withWindowClass("kcalc"), nullptr);
  install("system", "hex.desktop", "Name=Hexadecimal\nExec=kcalc --hex\n");
  EXPECT_EQ(entries().withProgram("kcalc"), nullptr);
}

TEST_F(DesktopEntriesTest, ofThePersonGoBeforeThoseOfTheSystem) {
  install("system", "edit.desktop", "Name=System's\n");
  install("home", "edit.desktop", "Name=Mine\n");
  EXPECT_EQ(entries().withId("edit")->name, "Mine");
}

TEST_F(DesktopEntriesTest, canBeHiddenByThePerson) {
  install("system", "edit.desktop", "Name=System's\n");
  install("home", "edit.desktop", "Name=Mine\nHidden=true\n");
  EXPECT_EQ(entries().withId("edit"), nullptr);
  EXPECT_EQ(entries().withWindowClass("edit"), nullptr);
}

TEST_F(DesktopEntriesTest, installedLaterAreFoundAfterARefresh) {
  install("system", "first.desktop", "Name=First\n");
  auto all = entries();
  install("system", "second.desktop", "Name=Second\n");
  const auto applications = directory_.path() / "system" / "applications";
  // Clocks of file systems may be coarse.
  std::filesystem::last_write_time(
      applications, std::filesystem::last_write_time(applications) + std::chrono::seconds(5));
  all.refresh();
  EXPECT_EQ(all.withId("second")->name, "Second");
}

TEST_F(DesktopEntriesTest, areNotWaitedForInAPipe) {
  install("system", "edit.desktop", "Name=Edit\n");
  const auto pipe = directory_.path() / "system" / "applications" / "pipe.desktop";
  ASSERT_EQ(mkfifo(pipe.c_str(), S_IRWXU), 0);
  std::atomic<bool> isRead = false;
  std::thread reader([&] {
    EXPECT_EQ(entries().withId("edit")->name, "Edit");
    isRead = true;
  });
  EXPECT_TRUE(testbed::eventually([&] { return isRead.load(); }));
  // Whoever waits for somebody to write is let go.
  close(open(pipe.c_str(), O_RDWR));
  reader.join();
}

TEST_F(DesktopEntriesTest, countAsFarAsTheLastWholeLineOfWhatAnApplicationNeeds) {
  constexpr std::size_t enough = 256 * 1024;
  const std::string begun = "[Desktop Entry]\nType=Application\n";
  const std::string name = "Name=Large\n#";
  const std::string cut = "StartupWMClass=Window";
  install("system", "large.desktop",
          name + std::string(enough - begun.size() - name.size() - cut.size() - 1, '#') + "\n" +
              cut + "AndMore\nHidden=true\n" + std::string(1'000'000, '#'));
  const auto all = entries();
  EXPECT_NE(all.withId("large"), nullptr) << "what hides it comes too late";
  EXPECT_EQ(all.withWindowClass("Window"), nullptr);
  EXPECT_EQ(all.withWindowClass("WindowAndMore"), nullptr);
}

TEST_F(DesktopEntriesTest, areFoundInFoldersOfSomeDepth) {
  const auto folders = [](int depth) {
    std::string path;
    for (int i = 0; i < depth; ++i) path += "a/";
    return path;
  };
  for (const int depth : {8, 9}) install("system", folders(depth) + "x.desktop", "Name=X\n");
  EXPECT_NE(entries().withId("a-a-a-a-a-a-a-a-x"), nullptr);
  EXPECT_EQ(entries().withId("a-a-a-a-a-a-a-a-a-x"), nullptr);
}

TEST_F(DesktopEntriesTest, areLookedForAmongSoManyFilesAtTheMost) {
  const auto applications = directory_.path() / "system" / "applications";
  std::filesystem::create_directories(applications);
  install("home", "mine.desktop", "Name=Mine\n");
  constexpr int found = 10'000;
  for (int i = 0; i < found + 10; ++i) {
    const auto file = applications / (std::to_string(i) + ".desktop");
    std::filesystem::create_hard_link(directory_.path() / "home" / "applications" / "mine.desktop",
                                      file);
  }
  const auto all = entries();
  int listed = 0;
  for (int i = 0; i < found + 10; ++i) listed += all.withId(std::to_string(i)) != nullptr ? 1 : 0;
  EXPECT_EQ(listed, found);
}

TEST_F(DesktopEntriesTest, areNoneWithoutDirectories) { EXPECT_EQ(entries().withId("x"), nullptr); }

}  // namespace
}  // namespace vistrel::platform::linux_desktop
