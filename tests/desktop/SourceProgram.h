#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace vistrel::testbed {

/// A program that people mirror, whose window shows something of several colours that rests.
struct SourceProgram {
  /// As a part of a test's name: letters and digits.
  std::string name;
  /// What a person finds it under in the picker: the program and its window's title.
  std::string row;
  /// Its desktop entry among those of the machine.
  std::string desktopEntry;
  /// The program and its arguments. Writes what it needs into its home.
  std::vector<std::string> (*commandIn)(const std::filesystem::path& home);

  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const SourceProgram& program) {
    return stream << program.name;
  }
};

SourceProgram xterm();
/// Tk.
SourceProgram wish();
/// GTK 4.
SourceProgram gnomeCalculator();
/// Qt 5.
SourceProgram kcalc();
SourceProgram mpv();

}  // namespace vistrel::testbed
