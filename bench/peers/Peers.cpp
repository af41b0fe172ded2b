#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "bench/peers/CostsInTurns.h"
#include "bench/peers/Crowd.h"
#include "bench/peers/ManyMirrors.h"
#include "bench/peers/OpeningTimes.h"
#include "bench/peers/PictureQuality.h"
#include "bench/peers/Soak.h"

namespace vistrel::bench {
namespace {

struct Part {
  std::string name;
  std::function<void(const std::filesystem::path&, const Thoroughness&)> measure;
};

const std::vector<Part>& parts() {
  static const std::vector<Part> all{
      {"opening",
       [](const auto& folder, const auto& thoroughness) {
         constexpr int openingsPerRound = 3;
         measureOpeningTimes(folder, openingsPerRound * thoroughness.rounds);
       }},
      {"quality", [](const auto& folder, const auto&) { measurePictureQuality(folder); }},
      {"many", [](const auto& folder,
                  const auto& thoroughness) { measureManyMirrors(folder, thoroughness.span); }},
      {"crowd", [](const auto& folder,
                   const auto& thoroughness) { measureCrowd(folder, thoroughness.span); }},
      {"soak",
       [](const auto& folder, const auto& thoroughness) {
         constexpr int spans = 200;  // ten minutes, unless asked for otherwise
         measureSoak(folder, spans * thoroughness.span);
       }},
      {"costs", measureCostsInTurns},
  };
  return all;
}

int usage() {
  std::cerr
      << "usage: vistrel-peers FOLDER ROUNDS SECONDS [opening] [quality] [many] [crowd] [soak] "
         "[costs]\n"
         "Measures Vistrel beside its peers, all of it or these parts, and writes the "
         "figures into the folder.\n";
  return EXIT_FAILURE;
}

int run(const std::vector<std::string>& arguments) {
  constexpr std::size_t always = 3;
  if (arguments.size() < always) return usage();
  const Thoroughness thoroughness{
      .rounds = std::stoi(arguments[1]),
      .span = std::chrono::duration<double>(std::stod(arguments[2])),
  };
  const std::vector<std::string> chosen(arguments.begin() + always, arguments.end());
  for (const Part& part : parts()) {
    if (!chosen.empty() && std::ranges::count(chosen, part.name) == 0) continue;
    part.measure(arguments.front(), thoroughness);
  }
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace vistrel::bench

int main(int count, char** values) {
  try {
    return vistrel::bench::run({values + 1, values + count});
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
