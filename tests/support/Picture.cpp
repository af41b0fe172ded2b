#include "tests/support/Picture.h"

#include <cstdlib>
#include <png.h>
#include <stdexcept>

namespace vistrel::testbed {

std::ostream& operator<<(std::ostream& stream, const Rgb& colour) {
  return stream << "rgb(" << int{colour.red} << ", " << int{colour.green} << ", "
                << int{colour.blue} << ")";
}

bool similar(Rgb a, Rgb b, int tolerance) {
  return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
         std::abs(a.blue - b.blue) <= tolerance;
}

void Picture::savePng(const std::filesystem::path& file) const {
  static_assert(sizeof(Rgb) == 3, "rows are handed over as packed RGB");
  if (file.has_parent_path()) {
    std::filesystem::create_directories(file.parent_path());
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width_);
  image.height = static_cast<png_uint_32>(height_);
  image.format = PNG_FORMAT_RGB;
  if (png_image_write_to_file(&image, file.c_str(), 0, pixels_.data(), 0, nullptr) == 0) {
    throw std::runtime_error("cannot save " + file.string() + ": " + image.message);
  }
}

}  // namespace vistrel::testbed
