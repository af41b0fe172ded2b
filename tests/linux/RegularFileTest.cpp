#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/RegularFile.h"
#include "tests/support/FileDescriptor.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::platform::linux_desktop {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t plenty = 1'000'000;

class RegularFile : public ::testing::Test {
 protected:
  void write(const std::string& contents) {
    std::ofstream(file_, std::ios::binary | std::ios::trunc) << contents;
  }

  testbed::TemporaryDirectory directory_;
  std::ptrdiff_t entries() const {
    const auto all = fs::directory_iterator(directory_.path());
    return std::distance(begin(all), end(all));
  }

  fs::path file_ = directory_.path() / "file";
};

TEST_F(RegularFile, IsReadToItsEndWhateverIsInIt) {
  for (const auto& contents : {std::string(), std::string("a line\n"), std::string("\0\xff\0", 3),
                               std::string(10'000, 'x')}) {
    write(contents);
    EXPECT_EQ(contentsOfRegularFile(file_, plenty), contents);
  }
}

TEST_F(RegularFile, IsNotReadWhenItIsLongerThanItMayBe) {
  for (const std::size_t most : {10, 4096, 5000}) {
    write(std::string(most, 'x'));
    EXPECT_EQ(contentsOfRegularFile(file_, most), std::string(most, 'x'));
    write(std::string(most + 1, 'x'));
    EXPECT_EQ(contentsOfRegularFile(file_, most), std::nullopt) << most;
  }
}

TEST_F(RegularFile, OfLinesIsReadToItsLastWholeLineWhenItIsLongerThanItMayBe) {
  write("one\ntwo\nthree");
  EXPECT_EQ(linesOfRegularFile(file_, 13), "one\ntwo\nthree");
  EXPECT_EQ(linesOfRegularFile(file_, 12), "one\ntwo\n");
  EXPECT_EQ(linesOfRegularFile(file_, 8), "one\ntwo\n");
  EXPECT_EQ(linesOfRegularFile(file_, 7), "one\n");
  EXPECT_EQ(linesOfRegularFile(file_, 3), "");
  write(std::string(10'000, 'x'));
  EXPECT_EQ(linesOfRegularFile(file_, 9'000), "");
  EXPECT_EQ(linesOfRegularFile(directory_.path(), plenty), std::nullopt);
}

TEST_F(RegularFile, IsReadThroughALink) {
  write("elsewhere");
  const auto link = directory_.path() / "link";
  fs::create_symlink(file_, link);
  EXPECT_EQ(contentsOfRegularFile(link, plenty), "elsewhere");
}

TEST_F(RegularFile, OfTheSystemIsReadAlthoughItSaysThatItIsEmpty) {
  EXPECT_EQ(fs::file_size("/proc/self/comm"), 0U);
  EXPECT_NE(contentsOfRegularFile("/proc/self/comm", plenty), std::string());
}

TEST_F(RegularFile, IsNoneWhereNothingOrSomethingElseIs) {
  EXPECT_EQ(contentsOfRegularFile(file_, plenty), std::nullopt);
  EXPECT_EQ(contentsOfRegularFile(directory_.path(), plenty), std::nullopt);
  fs::create_symlink("loop", directory_.path() / "loop");
  EXPECT_EQ(contentsOfRegularFile(directory_.path() / "loop", plenty), std::nullopt);
}

TEST_F(RegularFile, IsNoneWhereADeviceIs) {
  const testbed::FileDescriptor terminal(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
  ASSERT_EQ(unlockpt(terminal.get()), 0);
  const char* const device = ptsname(terminal.get());
  ASSERT_TRUE(fs::is_character_file(device));
  // With a terminal's sign for the end.
  ASSERT_EQ(::write(terminal.get(), "a line\n\4", 8), 8);
  EXPECT_EQ(contentsOfRegularFile(device, plenty), std::nullopt);
}

TEST_F(RegularFile, IsNotWaitedForInAPipe) {
  ASSERT_EQ(mkfifo(file_.c_str(), S_IRWXU), 0);
  EXPECT_EQ(contentsOfRegularFile(file_, plenty), std::nullopt);
}

TEST_F(RegularFile, ThatCannotBeReadIsNone) {
  // A regular file by its kind, whose beginning nobody can read, not even a superuser.
  ASSERT_TRUE(fs::is_regular_file("/proc/self/mem"));
  EXPECT_EQ(contentsOfRegularFile("/proc/self/mem", plenty), std::nullopt);
}

TEST_F(RegularFile, IsReplacedAndLeavesNothingBeside) {
  for (const auto& contents : {std::string("first"), std::string("\0\xff\0", 3), std::string()}) {
    replaceRegularFile(file_, contents);
    EXPECT_EQ(contentsOfRegularFile(file_, plenty), contents);
    EXPECT_EQ(entries(), 1);
  }
}

TEST_F(RegularFile, IsItsOwnersAloneWhateverTheUmask) {
  for (const mode_t mask : {0000, 0022, 0777}) {
    fs::remove(file_);
    const auto former = umask(mask);
    replaceRegularFile(file_, "private");
    umask(former);
    EXPECT_EQ(fs::status(file_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  }
}

TEST_F(RegularFile, ReplacesALinkAndNeverWhatItLeadsTo) {
  const auto target = directory_.path() / "target";
  const auto replacesLink = [&] {
    fs::remove(file_);
    fs::create_symlink(target, file_);
    replaceRegularFile(file_, "ours");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file_)));
    EXPECT_EQ(contentsOfRegularFile(file_, plenty), "ours");
  };
  replacesLink();
  EXPECT_FALSE(fs::exists(target));

  std::ofstream(target) << "somebody's";
  replacesLink();
  EXPECT_EQ(contentsOfRegularFile(target, plenty), "somebody's");

  fs::remove(target);
  ASSERT_EQ(mkfifo(target.c_str(), S_IRWXU), 0);
  replacesLink();
  EXPECT_TRUE(fs::is_fifo(target));

  fs::remove(target);
  fs::create_directory(target);
  replacesLink();
  EXPECT_TRUE(fs::is_directory(target));
}

TEST_F(RegularFile, ReplacesNothingThatIsNoFile) {
  fs::create_directory(file_);
  replaceRegularFile(file_, "ours");
  EXPECT_TRUE(fs::is_empty(file_));

  fs::remove(file_);
  ASSERT_EQ(mkfifo(file_.c_str(), S_IRWXU), 0);
  replaceRegularFile(file_, "ours");
  EXPECT_TRUE(fs::is_fifo(file_));
  EXPECT_EQ(entries(), 1);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
