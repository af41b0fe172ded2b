#include "tests/support/AuthorityFile.h"

#include <fstream>

namespace vistrel::testbed {

AuthorityFile::AuthorityFile() {
  // Xau(3): family FamilyWild, empty address and number; lengths are 16 bits, highest byte first.
  std::string entry("\xff\xff\0\0\0\0", 6);
  for (const std::string& part : {std::string("MIT-MAGIC-COOKIE-1"), std::string(16, 'k')}) {
    entry += '\0';
    entry += static_cast<char>(part.size());
    entry += part;
  }
  std::ofstream(path(), std::ios::binary) << entry;
}

}  // namespace vistrel::testbed
