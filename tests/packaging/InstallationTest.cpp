#include <gtest/gtest.h>

#include "tests/packaging/FileTree.h"
#include "tests/packaging/ProgramOutput.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {
namespace {

TEST(Installation, PutsWhatADesktopNeedsBelowItsPrefixAndNothingElse) {
  const TemporaryDirectory prefix;
  outputOf({VISTREL_CMAKE, "--install", VISTREL_BINARY_DIR, "--prefix", prefix.path()});
  EXPECT_EQ(filesBelow(prefix.path()), installedFiles());
}

}  // namespace
}  // namespace vistrel::testbed
