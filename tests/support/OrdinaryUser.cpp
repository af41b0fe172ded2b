#include "tests/support/OrdinaryUser.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <grp.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace vistrel::testbed {
namespace {

/// What opens directories and programs that are closed to others, as a machine's own checkout may
/// be. A container often has the first one alone.
constexpr std::array openers = {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH};

/// Keeps those of them that there are, and no other capability, here and in all that is started.
void keepOpeners() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
  if (::syscall(SYS_capget, &header, sets.data()) != 0) {
    return;
  }
  std::uint32_t kept = 0;
  for (const auto each : openers) {
    kept |= sets[0].permitted & CAP_TO_MASK(each);
  }
  sets = {{{kept, kept, kept}, {0, 0, 0}}};
  if (::syscall(SYS_capset, &header, sets.data()) != 0) {
    return;
  }
  for (const auto each : openers) {
    ::prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_RAISE, each, 0, 0);
  }
}

}  // namespace

OrdinaryUser::OrdinaryUser() {
  if (::geteuid() != 0) {
    return;
  }
  constexpr uid_t nobody = 65534;
  // Capabilities outlive the change of user then: capabilities(7).
  ::prctl(PR_SET_KEEPCAPS, 1, 0, 0, 0);
  if (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
      ::setresuid(nobody, nobody, nobody) != 0) {
    throw std::system_error(errno, std::generic_category(), "becoming an ordinary user");
  }
  keepOpeners();
  // Else others of that user cannot see which program this is.
  ::prctl(PR_SET_DUMPABLE, 1);
}

}  // namespace vistrel::testbed
