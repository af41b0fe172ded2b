#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/StandardError.h"
#include "tests/support/FileDescriptor.h"

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

/// All that is written by `writing`, which gets the pipe's end. `beforeEachRead` runs on a thread
/// of its own.
template <class Writing, class BeforeEachRead>
std::string read(Pipe pipe, const Writing& writing, const BeforeEachRead& beforeEachRead) {
  std::string received;
  std::thread reader([&] {
    std::array<char, 5000> part{};
    for (;;) {
      beforeEachRead();
      const ssize_t size = ::read(pipe.readEnd.get(), part.data(), part.size());
      if (size < 0 && errno == EINTR) continue;
      if (size <= 0) return;
      received.append(part.data(), static_cast<std::size_t>(size));
    }
  });
  writing(pipe.writeEnd.get());
  pipe.writeEnd = FileDescriptor();
  reader.join();
  return received;
}

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
  const std::string text = longText();
  const auto write = [&](int descriptor) { writeWhole(descriptor, text); };
  Pipe pipe = Pipe::open();
  ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK), 0);
  EXPECT_EQ(read(std::move(pipe), write, [] {}), text);
}

TEST(StandardError, GoesOutWholeThoughSignalsInterruptIt) {
  struct sigaction action {};
  struct sigaction former {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(::sigaction(SIGUSR1, &action, &former), 0);
  const std::string text = longText();
  const pthread_t writer = ::pthread_self();
  const auto write = [&](int descriptor) { writeWhole(descriptor, text); };
  EXPECT_EQ(read(Pipe::open(), write, [writer] { ::pthread_kill(writer, SIGUSR1); }), text);
  ::sigaction(SIGUSR1, &former, nullptr);
}

TEST(StandardError, IsLostWhereNobodyReadsIt) {
  Pipe pipe = Pipe::open();
  pipe.readEnd = FileDescriptor();
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
