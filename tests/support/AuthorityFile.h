#pragma once

#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {

/// A file with one cookie for any display, as XAUTHORITY names it: a server that is started with it
/// ("-auth") refuses whoever lacks it.
class AuthorityFile {
 public:
  AuthorityFile();

  std::string path() const { return (directory_.path() / "authority").string(); }

 private:
  TemporaryDirectory directory_;
};

}  // namespace vistrel::testbed
