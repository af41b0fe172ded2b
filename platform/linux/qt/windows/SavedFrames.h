#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Geometry.h"

namespace vistrel::platform::linux_desktop {

/// The text that keeps a frame: four numbers, x, y, width and height, with blanks between and a
/// line feed at the end.
std::string textOfFrame(const Rect& frame);
/// None unless `text` is such a text and the frame could be a window's.
std::optional<Rect> frameFromText(std::string_view text);

/// Frames kept from run to run, one file per name in one directory; none in an empty one. What
/// cannot be read or written is as if there were none.
class SavedFrames {
 public:
  explicit SavedFrames(std::filesystem::path directory) : directory_(std::move(directory)) {}

  std::optional<Rect> load(const std::string& name) const;
  /// Replaces the file as `replaceRegularFile` does.
  void save(const std::string& name, const Rect& frame) const;

 private:
  /// None for names that are no plain file names.
  std::optional<std::filesystem::path> fileOf(const std::string& name) const;

  std::filesystem::path directory_;
};

}  // namespace vistrel::platform::linux_desktop
