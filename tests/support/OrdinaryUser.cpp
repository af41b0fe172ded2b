#include "tests/support/OrdinaryUser.h"

#include <cerrno>
#include <grp.h>
#include <sys/prctl.h>
#include <system_error>
#include <unistd.h>

namespace vistrel::testbed {

OrdinaryUser::OrdinaryUser() {
  if (::geteuid() != 0) {
    return;
  }
  constexpr uid_t nobody = 65534;
  if (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
      ::setresuid(nobody, nobody, nobody) != 0) {
    throw std::system_error(errno, std::generic_category(), "becoming an ordinary user");
  }
  // Else others of that user cannot see which program this is.
  ::prctl(PR_SET_DUMPABLE, 1);
}

}  // namespace vistrel::testbed
