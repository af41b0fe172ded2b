#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "platform/linux/RegularFile.h"
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
  EXPECT_EQ(contentsOfRegularFile("/dev/zero", plenty), std::nullopt);
  fs::create_symlink("loop", directory_.path() / "loop");
  EXPECT_EQ(contentsOfRegularFile(directory_.path() / "loop", plenty), std::nullopt);
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

}  // namespace
}  // namespace vistrel::platform::linux_desktop
