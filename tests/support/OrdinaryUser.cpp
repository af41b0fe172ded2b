#include "tests/support/OrdinaryUser.h"

#include <array>
#include <cerrno>
#include <grp.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace vistrel::testbed {
namespace {

/// What finds its way below directories that are closed to others, as a machine's own checkout may
/// be: whatever is started may as well.
constexpr int wayfinder = CAP_DAC_READ_SEARCH;

/// Lets it outlive the change of user: see capabilities(7), "Effect of user ID changes".
void keepWayfinder() { ::prctl(PR_SET_KEEPCAPS, 1, 0, 0, 0); }

/// Where a container has none of it, closed directories stay closed.
void passWayfinderOn() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
  if (::syscall(SYS_capget, &header, sets.data()) != 0) {
    return;
  }
  const bool isThere = (sets[0].permitted & CAP_TO_MASK(wayfinder)) != 0;
  const unsigned kept = isThere ? CAP_TO_MASK(wayfinder) : 0;
  sets = {{{kept, kept, kept}, {0, 0, 0}}};
  if (::syscall(SYS_capset, &header, sets.data()) == 0 && isThere) {
    ::prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_RAISE, wayfinder, 0, 0);
  }
}

}  // namespace

OrdinaryUser::OrdinaryUser() {
  if (::geteuid() != 0) {
    return;
  }
  constexpr uid_t nobody = 65534;
  keepWayfinder();
  if (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
      ::setresuid(nobody, nobody, nobody) != 0) {
    throw std::system_error(errno, std::generic_category(), "becoming an ordinary user");
  }
  passWayfinderOn();
  // Else others of that user cannot see which program this is.
  ::prctl(PR_SET_DUMPABLE, 1);
}

}  // namespace vistrel::testbed
