#include "tests/packaging/FileTree.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vistrel::testbed {

std::set<std::string> filesBelow(const std::filesystem::path& directory) {
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
    if (!entry.is_directory()) {
      files.insert(entry.path().lexically_relative(directory).string());
    }
  }
  return files;
}

std::set<std::string> installedFiles() {
  const std::string id = VISTREL_APPLICATION_ID;
  std::set<std::string> files = {
      "bin/vistrel",
      "lib/vistrel/vistrel-wayland.so",
      "libexec/vistrel/vistrel-dialog-keeper",
      "libexec/vistrel/vistrel-guard",
      "libexec/vistrel/vistrel-kwin-grant",
      "libexec/vistrel/vistrel-kwin-guard",
      "share/applications/" + id + ".desktop",
      "share/doc/vistrel/README.md",
      "share/doc/vistrel/changelog.gz",
      "share/doc/vistrel/copyright",
      "share/icons/hicolor/scalable/apps/vistrel.svg",
      "share/icons/hicolor/symbolic/apps/vistrel-symbolic.svg",
      "share/man/man1/vistrel.1.gz",
      "share/metainfo/" + id + ".metainfo.xml",
  };
  const std::filesystem::path sources = VISTREL_SOURCE_DIR;
  for (const std::string& file : filesBelow(sources / "docs")) {
    files.insert("share/doc/vistrel/docs/" + file);
  }
  for (const std::string& file : filesBelow(sources / "resources/icons/hicolor")) {
    files.insert("share/icons/hicolor/" + file);
  }
  return files;
}

std::string contentsOf(const std::filesystem::path& file) {
  const std::ifstream stream(file, std::ios::binary);
  std::ostringstream contents;
  if (!(contents << stream.rdbuf())) {
    throw std::runtime_error("cannot read " + file.string());
  }
  return contents.str();
}

}  // namespace vistrel::testbed
