#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <pthread.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/StandardError.h"
#include "tests/support/FileDescriptor.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::FileDescriptor;
using testbed::Pipe;

/// Far more than a pipe holds, and nowhere the same.
std::string longText() {
  std::string text;
  for (int line = 0; text.size() < 1'000'000; ++line) text += std::to_string(line) + "\n";
  return text;
}

/// All that comes through the pipe until its other end is closed.
std::string readAll(const Pipe& pipe) {
  std::string received;
  std::array<char, 5000> part{};
  for (;;) {
    const ssize_t size = ::read(pipe.readEnd.get(), part.data(), part.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return received;
    received.append(part.data(), static_cast<std::size_t>(size));
  }
}

void fill(const Pipe& pipe) {
  ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK), 0);
  while (::write(pipe.writeEnd.get(), "-", 1) == 1) {
  }
  ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, 0), 0);
}

bool isBlocked(pid_t thread) {
  // proc(5): the state follows the name, which is in parentheses.
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string stat;
  std::getline(file, stat);
  return stat.find(") S") != std::string::npos;
}

std::atomic<int> signals = 0;

TEST(StandardError, GoesOutInOnePieceWhereItFits) {
  // On such a socket each write arrives as a packet of its own.
  std::array<int, 2> ends{};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), 0);
  const FileDescriptor reading(ends[0]);
  const FileDescriptor writing(ends[1]);
  const std::string text(30'000, 'x');
  writeWhole(writing.get(), text);
  std::string packet(100'000, '\0');
  EXPECT_EQ(::recv(reading.get(), packet.data(), packet.size(), MSG_DONTWAIT), 30'000);
}

TEST(StandardError, GoesOutWholeThroughADescriptorThatTakesNoMoreForNow) {
  Pipe pipe = Pipe::open();
  ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK), 0);
  const std::string text = longText();
  std::string received;
  std::thread reader([&] { received = readAll(pipe); });
  writeWhole(pipe.writeEnd.get(), text);
  pipe.writeEnd.close();
  reader.join();
  EXPECT_TRUE(received == text) << received.size();
}

TEST(StandardError, GoesOutWholeThoughASignalInterruptsIt) {
  struct sigaction action {};
  struct sigaction former {};
  signals = 0;
  action.sa_handler = [](int) { ++signals; };
  ASSERT_EQ(::sigaction(SIGUSR1, &action, &former), 0);
  Pipe pipe = Pipe::open();
  ASSERT_NO_FATAL_FAILURE(fill(pipe));
  std::string received;
  std::thread reader([&, writer = ::pthread_self(), writerID = ::gettid()] {
    EXPECT_TRUE(testbed::eventually([&] { return isBlocked(writerID); }));
    ::pthread_kill(writer, SIGUSR1);
    EXPECT_TRUE(testbed::eventually([] { return signals == 1; }));
    received = readAll(pipe);
  });
  writeWhole(pipe.writeEnd.get(), "text");
  pipe.writeEnd.close();
  reader.join();
  ::sigaction(SIGUSR1, &former, nullptr);
  EXPECT_TRUE(received.ends_with("-text")) << received.size();
}

TEST(StandardError, IsLostWhereNobodyReadsIt) {
  Pipe pipe = Pipe::open();
  pipe.readEnd.close();
  writeWhole(pipe.writeEnd.get(), "text");  // would end this process by SIGPIPE
  writeWhole(-1, "text");
}

TEST(StandardError, LeavesBrokenPipesAsTheyWere) {
  const auto former = std::signal(SIGPIPE, SIG_DFL);
  writeWhole(-1, "text");
  EXPECT_EQ(std::signal(SIGPIPE, former), SIG_DFL);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
