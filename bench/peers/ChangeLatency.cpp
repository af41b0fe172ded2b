#include "bench/peers/ChangeLatency.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <thread>

#include "tests/support/Poll.h"

namespace vistrel::bench {
namespace {

using Clock = ChangingSource::Clock;

// What seems older is the colour of something else.
constexpr int believable = 64;

/// The change that the middle of the subject's picture shows.
std::optional<int> shownChange(const Bed& bed, const ChangingSource& source,
                               const Subject& subject) {
  const testbed::Point middle = subject.picture().centre();
  xcb_connection_t* const connection = bed.connection().get();
  constexpr std::uint32_t allPlanes = ~0U;
  const testbed::XReply<xcb_get_image_reply_t> image(
      xcb_get_image_reply(connection,
                          xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, subject.window(),
                                        static_cast<std::int16_t>(middle.x),
                                        static_cast<std::int16_t>(middle.y), 1, 1, allPlanes),
                          nullptr));
  if (!image || xcb_get_image_data_length(image.get()) < 4) return std::nullopt;
  const std::uint8_t* const bytes = xcb_get_image_data(image.get());
  const auto number = source.numberOf({bytes[2], bytes[1], bytes[0]});
  if (!number || *number <= source.changes() - believable) return std::nullopt;
  return number;
}

}  // namespace

double SeenChanges::percentile(double share) const {
  if (milliseconds.empty()) return 0;
  std::vector<double> sorted = milliseconds;
  std::ranges::sort(sorted);
  return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

SeenChanges seenChanges(const Bed& bed, const ChangingSource& source, const Subject& subject,
                        std::chrono::duration<double> howLong) {
  constexpr std::chrono::microseconds betweenLooks{300};
  SeenChanges seen;
  // What is there already may have come at any time.
  int newest = source.changes();
  const auto start = Clock::now();
  while (Clock::now() - start < howLong) {
    const auto shown = shownChange(bed, source, subject);
    const auto now = Clock::now();
    if (shown && *shown > newest) {
      newest = *shown;
      const std::chrono::duration<double, std::milli> age = now - source.changedAt(newest);
      seen.milliseconds.push_back(age.count());
    }
    std::this_thread::sleep_for(betweenLooks);
  }
  const std::chrono::duration<double> taken = Clock::now() - start;
  seen.perSecond = static_cast<double>(seen.milliseconds.size()) / taken.count();
  return seen;
}

void awaitLivePicture(const Bed& bed, const ChangingSource& source, const Subject& subject) {
  const int before = source.changes();
  if (!testbed::eventually([&] {
        const auto shown = shownChange(bed, source, subject);
        return shown && *shown > before;
      })) {
    throw std::runtime_error("a subject does not show the source");
  }
}

}  // namespace vistrel::bench
