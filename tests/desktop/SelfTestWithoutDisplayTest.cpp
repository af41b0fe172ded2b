#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include "tests/desktop/RunningVistrel.h"

namespace vistrel::testbed {
namespace {

constexpr const char* listing =
    "=== CGVirtualDisplayDescriptor (MISSING)\n"
    "=== CGVirtualDisplaySettings (MISSING)\n"
    "=== CGVirtualDisplayMode (MISSING)\n"
    "=== CGVirtualDisplay (MISSING)\n";

/// The program in an empty environment, without a display.
ChildProcess::Command programWith(const std::vector<std::string>& arguments) {
  return RunningVistrel::command(arguments, {});
}

/// With its standard error on that descriptor.
ChildProcess::Command programWith(const std::vector<std::string>& arguments,
                                  const FileDescriptor& standardError) {
  auto command = RunningVistrel::withStandardError(programWith(arguments),
                                                   std::to_string(standardError.get()));
  command.inherited = {standardError.get()};
  return command;
}

void expectEnd(ChildProcess& program, int exitStatus, const std::string& standardError) {
  const auto ending = program.waitForEnd();
  ASSERT_TRUE(ending.has_value()) << "still running";
  EXPECT_EQ(ending->exitStatus, exitStatus);
  EXPECT_EQ(program.standardError(), standardError);
  EXPECT_EQ(program.standardOutput(), "");
}

TEST(SelfTestWithoutDisplay, DiagnosticsListFourMissingClassesWhateverElseIsAskedFor) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--vddiag"}, {"--vddiag", "--vdtest"}, {"--vdtest", "--vddiag"}}) {
    ChildProcess program(programWith(arguments));
    expectEnd(program, 0, listing);
  }
}

TEST(SelfTestWithoutDisplay, VirtualDisplayTestReportsThatNothingWasMade) {
  ChildProcess program(programWith({"--vdtest"}));
  expectEnd(program, 1,
            "vdtest: created=false displayID=0 online 0->0 screens=0 mainMaxX=0 bounds=0,0 0x0\n");
}

TEST(SelfTestWithoutDisplay, TextGoesOutInOneWrite) {
  // On such a socket each write arrives as a packet of its own.
  std::array<int, 2> ends{};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), 0);
  const FileDescriptor reading(ends[0]);
  const FileDescriptor writing(ends[1]);
  ChildProcess program(programWith({"--vddiag"}, writing));
  expectEnd(program, 0, "");

  std::array<char, 4096> packet{};
  const ssize_t size = ::recv(reading.get(), packet.data(), packet.size(), MSG_DONTWAIT);
  EXPECT_EQ(std::string(packet.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))),
            listing);
  EXPECT_EQ(::recv(reading.get(), packet.data(), packet.size(), MSG_DONTWAIT), -1);
}

TEST(SelfTestWithoutDisplay, EndsAsEverWithoutStandardError) {
  ChildProcess diagnostics(RunningVistrel::withStandardError(programWith({"--vddiag"}), "-"));
  ChildProcess test(RunningVistrel::withStandardError(programWith({"--vdtest"}), "-"));
  expectEnd(diagnostics, 0, "");
  expectEnd(test, 1, "");
}

TEST(SelfTestWithoutDisplay, EndsAsEverWhereNobodyReadsStandardError) {
  Pipe pipe = Pipe::open();
  pipe.readEnd.close();
  ChildProcess diagnostics(programWith({"--vddiag"}, pipe.writeEnd));
  ChildProcess test(programWith({"--vdtest"}, pipe.writeEnd));
  expectEnd(diagnostics, 0, "");
  expectEnd(test, 1, "");
}

}  // namespace
}  // namespace vistrel::testbed
