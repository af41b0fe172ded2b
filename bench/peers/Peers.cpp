#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <string>

#include "bench/peers/CostsInTurns.h"
#include "bench/peers/ManyMirrors.h"
#include "bench/peers/OpeningTimes.h"
#include "bench/peers/PictureQuality.h"

namespace {

int usage() {
  std::cerr << "usage: vistrel-peers FOLDER [ROUNDS [SECONDS]]\n";
  return EXIT_FAILURE;
}

}  // namespace

/// Measures the program beside its peers and writes the figures into a folder.
int main(int count, char** values) try {
  const std::span arguments(values, static_cast<std::size_t>(count));
  if (arguments.size() < 2 || arguments.size() > 4) return usage();
  const std::filesystem::path folder = arguments[1];
  vistrel::bench::Thoroughness thoroughness;
  if (arguments.size() > 2) thoroughness.rounds = std::stoi(arguments[2]);
  if (arguments.size() > 3) {
    thoroughness.span = std::chrono::duration<double>(std::stod(arguments[3]));
  }
  constexpr int openingsPerRound = 3;
  vistrel::bench::measureOpeningTimes(folder, openingsPerRound * thoroughness.rounds);
  vistrel::bench::measurePictureQuality(folder);
  vistrel::bench::measureManyMirrors(folder, thoroughness.span);
  vistrel::bench::measureCostsInTurns(folder, thoroughness);
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
