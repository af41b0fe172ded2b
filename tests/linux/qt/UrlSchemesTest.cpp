#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "platform/linux/qt/process/UrlSchemes.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(SchemeOf, IsWhatStandsBeforeTheColonInLowerCase) {
  EXPECT_EQ(schemeOf("https://example.org/"), "https");
  EXPECT_EQ(schemeOf("MailTo:ann@example.org"), "mailto");
  EXPECT_EQ(schemeOf("x-apple.systempreferences:com.apple.preference.security"),
            "x-apple.systempreferences");
}

TEST(SchemeOf, IsEmptyWhereNoneIsWellFormed) {
  for (const char* url : {"", "https", ":", "://", "1a:b", "a b:c", "ü:x", "x-scheme/handler=:"}) {
    EXPECT_EQ(schemeOf(url), "") << url;
  }
}

class SchemeHandlers : public ::testing::Test {
 protected:
  void write(const char* file, const std::string& text) {
    const auto path = directory_.path() / file;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
  }

  bool isServed(const char* scheme) {
    const auto lists = handlerLists({directory_.path() / "config"}, {directory_.path() / "data"});
    return isSchemeServed(scheme, lists);
  }

  testbed::TemporaryDirectory directory_;
};

TEST_F(SchemeHandlers, NothingIsServedWithoutLists) { EXPECT_FALSE(isServed("https")); }

TEST_F(SchemeHandlers, APersonsChoiceServes) {
  write("config/mimeapps.list", "[Default Applications]\nx-scheme-handler/https=b.desktop\n");
  EXPECT_TRUE(isServed("https"));
  EXPECT_FALSE(isServed("http"));
  EXPECT_FALSE(isServed(""));
}

TEST_F(SchemeHandlers, AnInstalledProgramServes) {
  write("data/applications/mimeinfo.cache", "[MIME Cache]\nx-scheme-handler/irc=chat.desktop;\n");
  EXPECT_TRUE(isServed("irc"));
}

TEST_F(SchemeHandlers, ARemovedOrEmptyAssociationDoesNotServe) {
  write("config/mimeapps.list",
        "[Removed Associations]\nx-scheme-handler/irc=chat.desktop;\n"
        "[Default Applications]\nx-scheme-handler/https=\n");
  EXPECT_FALSE(isServed("irc"));
  EXPECT_FALSE(isServed("https"));
}

TEST_F(SchemeHandlers, AListThatIsAPipeIsNotWaitedFor) {
  write("data/applications/mimeinfo.cache", "[MIME Cache]\nx-scheme-handler/irc=chat.desktop;\n");
  const auto config = directory_.path() / "config";
  std::filesystem::create_directories(config);
  ASSERT_EQ(mkfifo((config / "mimeapps.list").c_str(), S_IRWXU), 0);
  EXPECT_TRUE(isServed("irc"));
  EXPECT_FALSE(isServed("https"));
}

TEST_F(SchemeHandlers, OfALongListServeThoseOfItsFirstLines) {
  constexpr std::size_t enough = 4 * 1024 * 1024;
  const std::string first = "[Default Applications]\nx-scheme-handler/https=b.desktop\n";
  const std::string cut = "x-scheme-handler/irc=c";
  write("config/mimeapps.list", first + std::string(enough - first.size() - cut.size() - 1, '#') +
                                    "\n" + cut +
                                    "hat.desktop\nx-scheme-handler/mailto=mail.desktop\n");
  EXPECT_TRUE(isServed("https"));
  EXPECT_FALSE(isServed("irc"));
  EXPECT_FALSE(isServed("mailto"));
}

TEST_F(SchemeHandlers, AListThatIsNoFileServesNothing) {
  std::filesystem::create_directories(directory_.path() / "config/mimeapps.list");
  EXPECT_FALSE(isServed("https"));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
