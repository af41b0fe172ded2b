#include "platform/linux/qt/SavedFrames.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace vistrel::platform::linux_desktop {

namespace {

/// X11 positions and sizes are 16-bit.
constexpr double farthest = 32767;
constexpr qint64 longestFile = 200;

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

std::filesystem::path stateDirectory(const std::string& stateHome, const std::string& home) {
  const std::filesystem::path given = stateHome;
  const auto base = given.is_absolute() ? given : std::filesystem::path(home) / ".local/state";
  return base / "vistrel";
}

std::optional<Rect> SavedFrames::load(const std::string& name) const {
  const auto path = fileOf(name);
  if (!path) return std::nullopt;
  QFile file(*path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return frameFromText(file.read(longestFile).toStdString());
}

void SavedFrames::save(const std::string& name, const Rect& frame) const {
  const auto path = fileOf(name);
  if (!path) return;
  std::error_code ignored;
  std::filesystem::create_directories(directory_, ignored);
  QSaveFile file(QString::fromStdString(path->string()));
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(QByteArray::fromStdString(textOfFrame(frame)));
  file.commit();
}

std::optional<std::filesystem::path> SavedFrames::fileOf(const std::string& name) const {
  if (name.empty() || !std::all_of(name.begin(), name.end(), isFileNameCharacter)) {
    return std::nullopt;
  }
  return directory_ / (name + ".frame");
}

}  // namespace vistrel::platform::linux_desktop
