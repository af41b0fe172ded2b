#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vistrel::platform::linux_desktop {

/// One installed application, as the Desktop Entry Specification describes it.
struct DesktopEntry {
  std::string name;  // in the person's language
  std::string startupWMClass;
  /// The file name of the program that it runs; empty where that says little about it, since it is
  /// told by arguments what to be, or the entry is not shown in menus.
  std::string program;
};

/// The suffixes of localized keys for a locale such as "de_AT.UTF-8@euro", best first:
/// "de_AT@euro", "de_AT", "de@euro", "de".
std::vector<std::string> localeSuffixes(std::string_view locale);

/// The locale of messages, from the environment.
std::string messagesLocale();

/// None when the file is no visible application or has no name.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale);

/// The applications of the XDG data directories. Read again when a directory has changed. One
/// thread at a time.
class DesktopEntries {
 public:
  /// `dataDirectories`: the most important first.
  DesktopEntries(std::vector<std::filesystem::path> dataDirectories, std::string locale);

  /// Looks at the directories again.
  void refresh();
  /// The application whose desktop file is `id` (without ".desktop"); null when there is none.
  const DesktopEntry* withId(std::string_view id) const;
  /// The application that says its windows have this class; else the one whose id is it; else the
  /// only one whose id has it for its last part, as "kcalc" is that of "org.kde.kcalc". Letter case
  /// is ignored.
  const DesktopEntry* withWindowClass(std::string_view windowClass) const;
  /// The only application that runs a program of this file name; letter case is ignored.
  const DesktopEntry* withProgram(std::string_view program) const;

 private:
  /// By what it is known by, in lower case.
  using Ids = std::map<std::string, std::string, std::less<>>;
  using Stamps = std::map<std::filesystem::path, std::filesystem::file_time_type>;

  Stamps stampsOfDirectories() const;
  void readAll();
  void readDirectory(const std::filesystem::path& directory);
  const DesktopEntry* entryIn(const Ids& ids, std::string_view name) const;

  std::vector<std::filesystem::path> dataDirectories_;
  std::string locale_;
  Stamps stamps_;
  std::map<std::string, std::optional<DesktopEntry>, std::less<>> byId_;  // none: a hidden one
  Ids idByClass_;
  Ids idByProgram_;
};

}  // namespace vistrel::platform::linux_desktop
