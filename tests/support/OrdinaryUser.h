#pragma once

namespace vistrel::testbed {

/// While root makes one, the process becomes nobody, for good, with all that it starts from then
/// on. Of root's powers it keeps that over files that are closed to others, since the programs that
/// it is to start may be. Another user stays who they are.
struct OrdinaryUser {
  /// Throws std::system_error when the system refuses.
  OrdinaryUser();
};

}  // namespace vistrel::testbed
