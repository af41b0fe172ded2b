#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "platform/linux/wayland/stream/SharedMemory.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::size_t size = 3 * 4096;

/// Shared memory as another process makes it, full of 7s.
class Shared {
 public:
  explicit Shared(unsigned seals)
      : descriptor_(memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING)) {
    const std::vector<char> bytes(size, 7);
    EXPECT_EQ(write(descriptor_, bytes.data(), bytes.size()), static_cast<ssize_t>(size));
    EXPECT_EQ(fcntl(descriptor_, F_ADD_SEALS, seals), 0);
  }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;
  ~Shared() { close(descriptor_); }

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

TEST(SharedMemory, IsReadWhereItCannotBeCut) {
  const Shared shared(F_SEAL_SHRINK);
  const auto memory = SharedMemory::map(shared.descriptor(), size);
  ASSERT_TRUE(memory);
  EXPECT_EQ(memory->size(), size);
  // Reading it to its end ends no process, whatever its owner does.
  EXPECT_NE(ftruncate(shared.descriptor(), 0), 0);
  EXPECT_EQ(memory->bytes()[size - 1], 7);
}

TEST(SharedMemory, IsRefusedWhereItCouldBeCutWhileItIsRead) {
  const Shared shared(F_SEAL_GROW);
  EXPECT_FALSE(SharedMemory::map(shared.descriptor(), size));
}

TEST(SharedMemory, IsRefusedWhereThereIsLessThanIsClaimed) {
  const Shared shared(F_SEAL_SHRINK);
  EXPECT_FALSE(SharedMemory::map(shared.descriptor(), size + 1));
  EXPECT_FALSE(SharedMemory::map(shared.descriptor(), ~std::uint64_t{0}));
  EXPECT_FALSE(SharedMemory::map(shared.descriptor(), 0));
}

TEST(SharedMemory, IsRefusedWhereThereIsNoMemory) {
  EXPECT_FALSE(SharedMemory::map(-1, size));
  const int file = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  EXPECT_FALSE(SharedMemory::map(file, 1));
  close(file);
}

TEST(SharedMemory, OutlivesTheDescriptorThatItCameWith) {
  std::shared_ptr<const SharedMemory> memory;
  {
    const Shared shared(F_SEAL_SHRINK);
    memory = SharedMemory::map(shared.descriptor(), size);
  }
  ASSERT_TRUE(memory);
  EXPECT_EQ(memory->bytes()[0], 7);
  EXPECT_GE(fcntl(memory->descriptor(), F_GETFD), 0);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
