#include "tests/hostile/Fuzzer.h"
#include "tests/hostile/HostileTest.h"

namespace vistrel::hostile {
namespace {

class Fuzz : public HostileTest {};

TEST_F(Fuzz, AHundredThousandRoundsLeaveNoTrace) {
  constexpr int rounds = 100000;
  constexpr std::uint64_t seed = 20260;
  Fuzzer fuzzer(display_, seed);
  ASSERT_EQ(fuzzer.run(rounds), "") << "round " << fuzzer.rounds();
  ASSERT_EQ(fuzzer.finish(), "");
  // It cannot have been a quiet time.
  EXPECT_GT(fuzzer.listings(), 500);
  EXPECT_GT(fuzzer.samples(), 50);
}

}  // namespace
}  // namespace vistrel::hostile
