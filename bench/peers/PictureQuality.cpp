#include "bench/peers/PictureQuality.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/peers/AreaMean.h"
#include "bench/peers/Bed.h"
#include "bench/peers/ChangingSource.h"
#include "bench/peers/Figures.h"
#include "bench/peers/MirrorSubject.h"
#include "bench/peers/SourcePictures.h"
#include "bench/peers/Subject.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::bench {
namespace {

using testbed::Picture;

constexpr testbed::Rect sourceArea{0, 0, 960, 600};

struct NamedPicture {
  std::string name;
  Picture picture;
};

std::vector<NamedPicture> sources() {
  return {{"text", writing(sourceArea.width, sourceArea.height)},
          {"photo", photo(sourceArea.width, sourceArea.height)},
          {"grid", grid(sourceArea.width, sourceArea.height)}};
}

/// Of the source's shape; 1.5, 2, 2.5, 3.75 and 5 of its pixels to one.
constexpr std::array<Extent, 5> extents{
    {{640, 400}, {480, 300}, {384, 240}, {256, 160}, {192, 120}}};

/// A picture may lie half a pixel beside where another lies, which is no fault of either.
double bestSignalToNoise(const Picture& shown, const Picture& source) {
  // What a panel has at its edges: rounded corners, and the grip.
  constexpr int margin = 18;
  const testbed::Rect part{margin, margin, shown.width() - 2 * margin, shown.height() - 2 * margin};
  double best = 0;
  for (const double x : {0.0, -0.5, 0.5}) {
    for (const double y : {0.0, -0.5, 0.5}) {
      const Picture mean = areaMean(source, {shown.width(), shown.height()}, {x, y});
      best = std::max(best, signalToNoise(shown, mean, part));
    }
  }
  return best;
}

class Judgement {
 public:
  explicit Judgement(const std::filesystem::path& folder)
      : folder_(folder),
        figures_(folder / "quality.csv", {"subject", "source", "ratio", "decibels"}) {}

  void judgeMirror() {
    MirrorSubject mirror(bed_);
    for (const Extent extent : extents) {
      mirror.resizeTo(extent);
      judge(vistrel().name, mirror, extent);
    }
  }

  /// A peer that does not run here leaves the others' figures.
  void judge(const Contestant& contestant) try {
    for (const Extent extent : extents) {
      const auto subject = contestant.start(bed_, source_, extent);
      judge(contestant.name, *subject, extent);
    }
  } catch (const std::runtime_error& error) {
    std::cerr << contestant.name << ": " << error.what() << std::endl;
  }

 private:
  void judge(const std::string& name, const Subject& subject, Extent extent) {
    for (const auto& [sourceName, picture] : sources_) {
      source_.show(picture);
      const Picture shown = shownBy(subject);
      const std::string ratio =
          figure(static_cast<double>(sourceArea.width) / static_cast<double>(extent.width));
      figures_.add({name, sourceName, ratio, figure(bestSignalToNoise(shown, picture))});
      shown.savePng(folder_ / "pictures" / (name + "-" + sourceName + "-" + ratio + ".png"));
    }
  }

  /// Once it has had the time to show what the source shows now.
  Picture shownBy(const Subject& subject) const {
    constexpr std::chrono::milliseconds settling{1000};
    std::this_thread::sleep_for(settling);
    const testbed::Rect area = subject.picture();
    const Picture window =
        testbed::ScreenReader(bed_.connection())
            .readWindow(subject.window(), area.x + area.width, area.y + area.height);
    Picture result(area.width, area.height);
    for (int y = 0; y < area.height; ++y) {
      for (int x = 0; x < area.width; ++x) result.at(x, y) = window.at(area.x + x, area.y + y);
    }
    return result;
  }

  std::filesystem::path folder_;
  Figures figures_;
  Bed bed_{Bed::Compositing::none};
  const std::vector<NamedPicture> sources_ = sources();
  ChangingSource source_{bed_.display().name(), sourceArea};
};

}  // namespace

void measurePictureQuality(const std::filesystem::path& folder) {
  Judgement judgement(folder);
  judgement.judgeMirror();
  for (const Contestant& contestant : peers()) judgement.judge(contestant);
}

}  // namespace vistrel::bench
