#include "platform/linux/wayland/kwin/ParkedRecord.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <iomanip>
#include <limits>
#include <sstream>
#include <sys/file.h>
#include <unistd.h>

#include "platform/linux/Environment.h"

namespace vistrel::platform::linux_desktop {
namespace {

int openOwn(const std::string& path) {
  constexpr int forOneself = 0600;
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, forOneself);
  if (file < 0 || flock(file, LOCK_EX | LOCK_NB) == 0) return file;
  close(file);
  return -1;
}

}  // namespace

ParkedRecord::ParkedRecord() {
  const auto directory = environmentVariable("XDG_RUNTIME_DIR");
  if (directory.empty()) return;
  const std::filesystem::path session = environmentVariable("WAYLAND_DISPLAY");
  path_ = directory + "/vistrel-parked-" + session.filename().string();
  own();
}

ParkedRecord::~ParkedRecord() {
  if (file_ >= 0) close(file_);
}

ParkedWindowsByUuid ParkedRecord::read() const {
  // More windows than anybody parks.
  std::array<char, 65536> text{};
  const auto count = file_ < 0 ? 0 : pread(file_, text.data(), text.size(), 0);
  return count <= 0 ? ParkedWindowsByUuid()
                    : parseRecord(std::string(text.data(), static_cast<std::size_t>(count)));
}

bool ParkedRecord::own() {
  if (file_ < 0 && !path_.empty()) file_ = openOwn(path_);
  return file_ >= 0;
}

void ParkedRecord::write(const ParkedWindowsByUuid& windows) {
  if (!own()) return;
  const auto text = recordText(windows);
  // A record that cannot be written leaves no more than there would be without it.
  [[maybe_unused]] const auto written = pwrite(file_, text.data(), text.size(), 0);
  [[maybe_unused]] const int cut = ftruncate(file_, static_cast<off_t>(text.size()));
}

std::string recordText(const ParkedWindowsByUuid& windows) {
  std::ostringstream text;
  text << std::setprecision(std::numeric_limits<double>::max_digits10);
  for (const auto& [uuid, places] : windows) {
    text << uuid << ' ' << places.home.x << ' ' << places.home.y << ' ' << places.parked.x << ' '
         << places.parked.y << " .\n";
  }
  return text.str();
}

ParkedWindowsByUuid parseRecord(const std::string& text) {
  ParkedWindowsByUuid windows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string uuid;
    std::string end;
    ParkedPlaces places;
    words >> uuid >> places.home.x >> places.home.y >> places.parked.x >> places.parked.y >> end;
    if (end == ".") windows[uuid] = places;
  }
  return windows;
}

}  // namespace vistrel::platform::linux_desktop
