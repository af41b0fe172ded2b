#pragma once

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>

namespace vistrel::bench {

/// A file of comma-separated values, each row of which is also said on standard output as it comes.
class Figures {
 public:
  /// Begins it anew, with a row of headings. Throws std::runtime_error when it cannot be written.
  Figures(const std::filesystem::path& file, std::initializer_list<std::string> headings);

  void add(std::initializer_list<std::string> values);

 private:
  std::string name_;
  std::ofstream file_;
};

/// With as many digits as a person reads.
std::string figure(double value);

}  // namespace vistrel::bench
