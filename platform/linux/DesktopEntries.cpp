#include "platform/linux/DesktopEntries.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/linux/Environment.h"
#include "platform/linux/RegularFile.h"
#include "platform/linux/Utf8.h"

namespace vistrel::platform::linux_desktop {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view fileSuffix = ".desktop";
/// Many times what an application with all its names and actions in all languages needs.
constexpr std::size_t longestFile = std::size_t{256} * 1024;
/// Many times what a desktop with everything installed has below one directory.
constexpr int deepestFolder = 8;
constexpr int mostFiles = 10'000;

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& each : result) {
    if (each >= 'A' && each <= 'Z') each = static_cast<char>(each - 'A' + 'a');
  }
  return result;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Takes the text up to `separator` off the front of `rest`.
std::string_view takeUpTo(std::string_view& rest, char separator) {
  const auto end = std::min(rest.find(separator), rest.size());
  const auto part = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return part;
}

std::string unescaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      text += value[i];
      continue;
    }
    const char code = value[++i];
    text += code == 's' ? ' ' : code == 'n' ? '\n' : code == 't' ? '\t' : code;
  }
  return repairedUtf8(text);
}

using Keys = std::map<std::string_view, std::string_view>;

/// The keys of the group [Desktop Entry].
Keys mainGroup(std::string_view text) {
  Keys keys;
  bool inGroup = false;
  while (!text.empty()) {
    const auto line = trimmed(takeUpTo(text, '\n'));
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      inGroup = line == "[Desktop Entry]";
    } else if (inGroup) {
      auto value = line;
      const auto key = trimmed(takeUpTo(value, '='));
      keys.emplace(key, trimmed(value));
    }
  }
  return keys;
}

std::string_view valueOf(const Keys& keys, std::string_view key) {
  const auto found = keys.find(key);
  return found == keys.end() ? std::string_view() : found->second;
}

std::string localizedName(const Keys& keys, std::string_view locale) {
  for (const auto& suffix : localeSuffixes(locale)) {
    const auto value = valueOf(keys, std::string("Name[").append(suffix).append("]"));
    if (!value.empty()) return unescaped(value);
  }
  return unescaped(valueOf(keys, "Name"));
}

/// The first word of a command line (Desktop Entry Specification, "The Exec key"), which may be in
/// quotes; takes it off the front of `rest`.
std::string_view takeProgram(std::string_view& rest) {
  if (!rest.starts_with('"')) return takeUpTo(rest, ' ');
  rest.remove_prefix(1);
  return takeUpTo(rest, '"');
}

/// Whether a program is told more than how to be itself: another program's name, a script, an
/// application of several that it contains.
bool namesSomething(std::string_view arguments) {
  while (!arguments.empty()) {
    const auto word = takeUpTo(arguments, ' ');
    if (!word.empty() && word.front() != '-' && word.front() != '%') return true;
  }
  return false;
}

std::string programOf(const Keys& keys) {
  if (valueOf(keys, "NoDisplay") == "true") return {};
  const std::string command = unescaped(valueOf(keys, "Exec"));
  std::string_view arguments = command;
  const auto program = takeProgram(arguments);
  return namesSomething(arguments) ? std::string() : fs::path(program).filename().string();
}

/// Names by which an application is known if it is the only one that has them.
class NamesOfOne {
 public:
  /// An empty name is none.
  void add(const std::string& name, const std::string& id) {
    if (!name.empty()) idsByName_[lowerCase(name)].push_back(id);
  }
  /// Where the name is not in use already.
  void addTo(std::map<std::string, std::string, std::less<>>& ids) const {
    for (const auto& [name, sharing] : idsByName_) {
      if (sharing.size() == 1) ids.emplace(name, sharing.front());
    }
  }

 private:
  std::map<std::string, std::vector<std::string>> idsByName_;
};

std::string lastPartOf(std::string_view id) {
  const auto dot = id.rfind('.');
  return dot == std::string_view::npos ? std::string() : std::string(id.substr(dot + 1));
}

/// The id that the Desktop Entry Specification makes of a path below "applications":
/// "kde/foo.desktop" is "kde-foo".
std::string idOf(const fs::path& file, const fs::path& directory) {
  auto id = file.lexically_relative(directory).generic_string();
  id.resize(id.size() - fileSuffix.size());
  std::replace(id.begin(), id.end(), '/', '-');
  return id;
}

}  // namespace

std::vector<std::string> localeSuffixes(std::string_view locale) {
  auto rest = locale;
  auto withoutModifier = takeUpTo(rest, '@');
  const auto modifier = rest.empty() ? std::string() : std::string("@").append(rest);
  const std::string region(takeUpTo(withoutModifier, '.'));
  const std::string language = region.substr(0, region.find('_'));
  if (language.empty() || language == "C" || language == "POSIX") return {};
  std::vector<std::string> suffixes;
  for (const auto& each : {region + modifier, region, language + modifier, language}) {
    if (std::find(suffixes.begin(), suffixes.end(), each) == suffixes.end()) {
      suffixes.push_back(each);
    }
  }
  return suffixes;
}

std::string messagesLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (auto value = environmentVariable(name); !value.empty()) return value;
  }
  return "C";
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
  const auto keys = mainGroup(text);
  if (valueOf(keys, "Type") != "Application" || valueOf(keys, "Hidden") == "true") return {};
  DesktopEntry entry{localizedName(keys, locale), unescaped(valueOf(keys, "StartupWMClass")),
                     programOf(keys)};
  return entry.name.empty() ? std::nullopt : std::optional(entry);
}

DesktopEntries::DesktopEntries(std::vector<fs::path> dataDirectories, std::string locale)
    : dataDirectories_(std::move(dataDirectories)), locale_(std::move(locale)) {}

void DesktopEntries::refresh() {
  auto stamps = stampsOfDirectories();
  if (stamps == stamps_) return;
  stamps_ = std::move(stamps);
  readAll();
}

DesktopEntries::Stamps DesktopEntries::stampsOfDirectories() const {
  Stamps stamps;
  for (const auto& each : dataDirectories_) {
    std::error_code missing;
    const auto stamp = fs::last_write_time(each / "applications", missing);
    if (!missing) stamps[each] = stamp;
  }
  return stamps;
}

void DesktopEntries::readAll() {
  byId_.clear();
  idByClass_.clear();
  idByProgram_.clear();
  for (const auto& each : dataDirectories_) readDirectory(each / "applications");
  // An application's own word on its class goes before an id that happens to be the same.
  for (const auto& [id, entry] : byId_) {
    if (entry && !entry->startupWMClass.empty()) {
      idByClass_.emplace(lowerCase(entry->startupWMClass), id);
    }
  }
  for (const auto& [id, entry] : byId_) {
    if (entry) idByClass_.emplace(lowerCase(id), id);
  }
  NamesOfOne lastParts;
  NamesOfOne programs;
  for (const auto& [id, entry] : byId_) {
    if (!entry) continue;
    lastParts.add(lastPartOf(id), id);
    programs.add(entry->program, id);
  }
  lastParts.addTo(idByClass_);
  programs.addTo(idByProgram_);
}

void DesktopEntries::readDirectory(const fs::path& directory) {
  std::error_code error;
  const auto options = fs::directory_options::skip_permission_denied;
  int files = 0;
  for (fs::recursive_directory_iterator file(directory, options, error), end;
       !error && file != end && files < mostFiles; file.increment(error), ++files) {
    if (file.depth() == deepestFolder) file.disable_recursion_pending();
    if (file->path().extension() != fileSuffix) continue;
    // A file of a more important directory has the word, also when it hides the application.
    const auto id = idOf(file->path(), directory);
    if (byId_.contains(id)) continue;
    const auto text = linesOfRegularFile(file->path(), longestFile);
    byId_.emplace(id, parseDesktopEntry(text.value_or(std::string()), locale_));
  }
}

const DesktopEntry* DesktopEntries::withId(std::string_view id) const {
  const auto found = byId_.find(id);
  return found == byId_.end() || !found->second ? nullptr : &*found->second;
}

const DesktopEntry* DesktopEntries::withWindowClass(std::string_view windowClass) const {
  return entryIn(idByClass_, windowClass);
}

const DesktopEntry* DesktopEntries::withProgram(std::string_view program) const {
  return entryIn(idByProgram_, program);
}

const DesktopEntry* DesktopEntries::entryIn(const Ids& ids, std::string_view name) const {
  const auto found = ids.find(lowerCase(name));
  return found == ids.end() ? nullptr : withId(found->second);
}

}  // namespace vistrel::platform::linux_desktop
