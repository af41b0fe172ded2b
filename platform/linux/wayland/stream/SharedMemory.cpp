#include "platform/linux/wayland/stream/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vistrel::platform::linux_desktop {
namespace {

bool keepsItsSize(int descriptor) {
  const int seals = fcntl(descriptor, F_GET_SEALS);
  return seals >= 0 && (seals & F_SEAL_SHRINK) != 0;
}

bool has(int descriptor, std::uint64_t bytes) {
  struct stat file {};
  return fstat(descriptor, &file) == 0 && static_cast<std::uint64_t>(file.st_size) >= bytes;
}

}  // namespace

std::shared_ptr<const SharedMemory> SharedMemory::map(int descriptor, std::uint64_t bytes) {
  // The seal first: what the size is before may not be what it is after.
  if (bytes == 0 || !keepsItsSize(descriptor) || !has(descriptor, bytes)) return nullptr;
  const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (own < 0) return nullptr;
  void* const mapped = mmap(nullptr, bytes, PROT_READ, MAP_SHARED, own, 0);
  if (mapped == MAP_FAILED) {
    close(own);
    return nullptr;
  }
  return std::shared_ptr<const SharedMemory>(
      new SharedMemory(own, static_cast<const std::uint8_t*>(mapped), bytes));
}

SharedMemory::~SharedMemory() {
  munmap(const_cast<std::uint8_t*>(bytes_), size_);
  close(descriptor_);
}

}  // namespace vistrel::platform::linux_desktop
