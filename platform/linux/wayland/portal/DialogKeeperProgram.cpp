// vistrel-dialog-keeper: has a connection to the session bus as its first descriptor and a socket
// of the program's whose connection that is as its second. Ends once the program says that its
// dialog was answered. Where the program ends before, keeps the connection open until the portal
// has answered.

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <string>
#include <unistd.h>

#include "platform/linux/DetachedProgram.h"

namespace {

using vistrel::platform::linux_desktop::firstHandedDescriptor;

constexpr int bus = firstHandedDescriptor;
constexpr int program = firstHandedDescriptor + 1;

/// Waits for the one or the other.
bool isAnsweredBeforeTheProgramEnds() {
  char word = 0;
  ssize_t length = -1;
  do {
    length = read(program, &word, 1);
  } while (length < 0 && errno == EINTR);
  return length > 0;
}

/// The signal with which the portal answers a request (org.freedesktop.portal.Request), as it
/// stands in a message: with its end. No other is waited for over the connection.
const std::string answer("Response", sizeof "Response");

void keepUntilAnswered() {
  std::string received;
  for (;;) {
    pollfd incoming{bus, POLLIN, 0};
    poll(&incoming, 1, -1);
    std::array<char, 4096> buffer{};
    const ssize_t length = read(bus, buffer.data(), buffer.size());
    if (length < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (length <= 0) return;
    received.append(buffer.data(), static_cast<std::size_t>(length));
    if (received.find(answer) != std::string::npos) return;
    // What may be its beginning.
    received.erase(0, received.size() - std::min(received.size(), answer.size()));
  }
}

}  // namespace

int main() {
  // So that whoever has started it is not its parent, and need not see to its end.
  if (fork() != 0) _exit(0);
  if (!isAnsweredBeforeTheProgramEnds()) keepUntilAnswered();
  return 0;
}
