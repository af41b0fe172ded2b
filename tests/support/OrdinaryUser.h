#pragma once

namespace vistrel::testbed {

/// While root makes one, the process becomes nobody, for good, with all that it starts from then
/// on; of root's powers it keeps that of reading what is closed to others, where programs may lie
/// that it is to start. Another user stays who they are.
struct OrdinaryUser {
  /// Throws std::system_error when the system refuses.
  OrdinaryUser();
};

}  // namespace vistrel::testbed
