#include "bench/peers/CostsInTurns.h"

#include <array>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/peers/Bed.h"
#include "bench/peers/ChangeLatency.h"
#include "bench/peers/ChangingSource.h"
#include "bench/peers/Figures.h"
#include "bench/peers/MirrorSubject.h"
#include "bench/peers/Subject.h"

namespace vistrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

// As high as the panel that a person gets for such a source.
constexpr Extent extent{520, 279};
constexpr double usualRate = 30;

std::string nameOf(Change change) {
  switch (change) {
    case Change::none:
      return "static";
    case Change::small:
      return "small";
    case Change::full:
      return "full";
  }
  throw std::invalid_argument("no change");
}

/// One bed's part of both files.
class Turns {
 public:
  Turns(Bed::Compositing compositing, const Thoroughness& thoroughness, Figures& costs,
        Figures& latency)
      : bed_(compositing),
        isComposited_(compositing == Bed::Compositing::managed),
        bedName_(isComposited_ ? "composited" : "bare"),
        span_(thoroughness.span),
        costs_(&costs),
        latency_(&latency) {}

  void round(int number) {
    round_ = std::to_string(number);
    costsOfEachChange("source alone", nullptr);
    // A compositing manager has redirected every window already.
    if (!isComposited_) take(redirection());
    takeMirror();
    for (const Contestant& contestant : peers()) take(contestant);
  }

 private:
  /// A peer that does not run here leaves the others' figures.
  void take(const Contestant& contestant) try {
    source_.change(Change::full, usualRate);
    const auto subject = contestant.start(bed_, source_, extent);
    measure(contestant.name, *subject);
  } catch (const std::runtime_error& error) {
    std::cerr << contestant.name << ": " << error.what() << std::endl;
  }

  void takeMirror() {
    source_.change(Change::full, usualRate);
    MirrorSubject mirror(bed_);
    measure(vistrel().name, mirror);
    mirror.rollUp();
    costsOfEachChange("Vistrel rolled up", &mirror);
  }

  void measure(const std::string& name, const Subject& subject) {
    if (subject.window() != XCB_WINDOW_NONE) awaitLivePicture(bed_, source_, subject);
    costsOfEachChange(name, &subject);
    if (subject.window() != XCB_WINDOW_NONE) latencyAtEachRate(name, subject);
  }

  void costsOfEachChange(const std::string& name, const Subject* subject) {
    for (const Change change : {Change::full, Change::small, Change::none}) {
      begin(change, usualRate);
      const double client = subject == nullptr ? 0 : subject->clientSeconds();
      const double server = bed_.serverSeconds();
      const double manager = bed_.managerSeconds();
      const auto start = Clock::now();
      std::this_thread::sleep_for(span_);
      const double perSecond = 1000 / std::chrono::duration<double>(Clock::now() - start).count();
      const double clientAfter = subject == nullptr ? 0 : subject->clientSeconds();
      costs_->add({bedName_, nameOf(change), name, round_,
                   figure((clientAfter - client) * perSecond),
                   figure((bed_.serverSeconds() - server) * perSecond),
                   figure((bed_.managerSeconds() - manager) * perSecond)});
    }
  }

  void latencyAtEachRate(const std::string& name, const Subject& subject) {
    for (const Change change : {Change::full, Change::small}) {
      for (const double rate : rates()) {
        begin(change, rate);
        const SeenChanges seen = seenChanges(bed_, source_, subject, span_);
        latency_->add({bedName_, nameOf(change), figure(rate), name, round_,
                       figure(seen.percentile(0.5)), figure(seen.percentile(0.95)),
                       figure(seen.perSecond)});
      }
    }
  }

  std::vector<double> rates() const {
    if (isComposited_) return {usualRate};
    return {7, 24, usualRate, 60};
  }

  /// Lets what the change before has left come to its end; where nothing changes any more, also the
  /// signs that say so.
  void begin(Change change, double rate) {
    constexpr std::chrono::milliseconds settling{500};
    constexpr std::chrono::milliseconds comingToRest{4000};
    source_.change(change, rate);
    std::this_thread::sleep_for(change == Change::none ? comingToRest : settling);
  }

  Bed bed_;
  bool isComposited_;
  std::string bedName_;
  std::chrono::duration<double> span_;
  Figures* costs_;
  Figures* latency_;
  std::string round_;
  ChangingSource source_{bed_.display().name(), Bed::sourceArea};
};

}  // namespace

void measureCostsInTurns(const std::filesystem::path& folder, const Thoroughness& thoroughness) {
  Figures costs(folder / "costs.csv", {"bed", "change", "subject", "round", "client_ms_per_s",
                                       "server_ms_per_s", "manager_ms_per_s"});
  Figures latency(folder / "latency.csv", {"bed", "change", "rate", "subject", "round", "median_ms",
                                           "p95_ms", "seen_per_s"});
  std::array turns{
      std::make_unique<Turns>(Bed::Compositing::none, thoroughness, costs, latency),
      std::make_unique<Turns>(Bed::Compositing::managed, thoroughness, costs, latency)};
  for (int round = 1; round <= thoroughness.rounds; ++round) {
    for (const auto& bed : turns) bed->round(round);
  }
}

}  // namespace vistrel::bench
