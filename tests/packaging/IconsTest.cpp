#include <gtest/gtest.h>

#include "tests/packaging/FileTree.h"
#include "tests/packaging/ProgramOutput.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {
namespace {

const std::filesystem::path sources = VISTREL_SOURCE_DIR;

TEST(Icons, AreRenderedFromTheirDrawings) {
  const std::filesystem::path kept = sources / "resources/icons";
  const TemporaryDirectory rendered;
  outputOf({sources / "scripts/render-icons", rendered.path()});
  ASSERT_EQ(filesBelow(rendered.path() / "hicolor"), filesBelow(kept / "hicolor"));
  ASSERT_TRUE(filesBelow(rendered.path()).contains("vistrel.icns"));
  for (const std::string& file : filesBelow(rendered.path())) {
    EXPECT_EQ(contentsOf(rendered.path() / file), contentsOf(kept / file))
        << file << " is not what scripts/render-icons makes";
  }
}

TEST(Icons, ComeInTheSizesThatDesktopsAskFor) {
  const auto files = filesBelow(sources / "resources/icons/hicolor");
  for (const char* size :
       {"16x16", "22x22", "24x24", "32x32", "48x48", "64x64", "128x128", "256x256"}) {
    EXPECT_TRUE(files.contains(std::string(size) + "/apps/vistrel.png")) << size;
  }
}

}  // namespace
}  // namespace vistrel::testbed
