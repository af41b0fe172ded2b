#include "platform/linux/qt/windows/SavedFrames.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <sys/stat.h>
#include <system_error>

#include "platform/linux/RegularFile.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// X11 positions and sizes are 16-bit.
constexpr double farthest = 32767;
constexpr std::size_t longestFile = 200;

std::optional<double> takeNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool isFileNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_';
}

/// With what is missing above it, for its owner alone (XDG base directory specification) whatever
/// the umask.
void makePrivateDirectory(const std::filesystem::path& path) {
  std::error_code ignored;
  if (path.empty() || std::filesystem::exists(path, ignored)) return;
  makePrivateDirectory(path.parent_path());
  if (mkdir(path.c_str(), S_IRWXU) == 0) chmod(path.c_str(), S_IRWXU);
}

}  // namespace

std::string textOfFrame(const Rect& frame) {
  std::string text;
  for (const double number : {frame.minX(), frame.minY(), frame.width(), frame.height()}) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    if (!text.empty()) text += ' ';
    text.append(digits.data(), written.ptr);
  }
  return text + '\n';
}

std::optional<Rect> frameFromText(std::string_view text) {
  std::array<double, 4> numbers{};
  for (double& number : numbers) {
    const auto taken = takeNumber(text);
    if (!taken || std::abs(*taken) > farthest) return std::nullopt;
    number = *taken;
  }
  const auto [x, y, width, height] = numbers;
  if (text != "\n" || width < 1 || height < 1) return std::nullopt;
  return rect(x, y, width, height);
}

std::optional<Rect> SavedFrames::load(const std::string& name) const {
  const auto path = fileOf(name);
  if (!path) return std::nullopt;
  const auto text = contentsOfRegularFile(*path, longestFile);
  return text ? frameFromText(*text) : std::nullopt;
}

void SavedFrames::save(const std::string& name, const Rect& frame) const {
  const auto path = fileOf(name);
  if (!path) return;
  makePrivateDirectory(directory_);
  replaceRegularFile(*path, textOfFrame(frame));
}

std::optional<std::filesystem::path> SavedFrames::fileOf(const std::string& name) const {
  if (directory_.empty() || name.empty() ||
      !std::all_of(name.begin(), name.end(), isFileNameCharacter)) {
    return std::nullopt;
  }
  return directory_ / (name + ".frame");
}

}  // namespace vistrel::platform::linux_desktop
