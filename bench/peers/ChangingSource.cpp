#include "bench/peers/ChangingSource.h"

#include <algorithm>
#include <random>

#include "bench/peers/SourcePictures.h"

namespace vistrel::bench {
namespace {

using testbed::Rgb;

// As large a part as an indicator or a line of text being typed.
constexpr int smallSide = 200;
constexpr int markSide = 128;

// Twelve bits of the number in the upper halves of the channels; the lower ones leave room for what
// scaling and other colour spaces add.
constexpr std::uint32_t pixelOf(int number) {
  const auto bits = static_cast<std::uint32_t>(number);
  return (bits >> 8 & 15) << 20 | (bits >> 4 & 15) << 12 | (bits & 15) << 4 | 0x080808;
}

}  // namespace

ChangingSource::ChangingSource(const std::string& display, testbed::Rect area)
    : area_(area),
      window_(display, {.title = "Source", .area = area, .decorated = false}),
      connection_(display),
      pen_(xcb_generate_id(connection_.get())) {
  const std::uint32_t noExposures = 0;
  xcb_create_gc(connection_.get(), pen_, id(), XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
  for (int i = 0; i < pictures; ++i) pictures_.push_back(upload(photo(area.width, area.height, i)));
  showAsBackground(pictures_.front());
  painter_ = std::thread([this] { run(); });
}

ChangingSource::~ChangingSource() {
  {
    const std::scoped_lock lock(mutex_);
    isEnding_ = true;
  }
  wake_.notify_all();
  painter_.join();
}

void ChangingSource::change(Change change, double perSecond) {
  {
    const std::scoped_lock lock(mutex_);
    change_ = change;
    period_ = std::chrono::duration<double>(1 / perSecond);
  }
  wake_.notify_all();
}

void ChangingSource::show(const testbed::Picture& picture) {
  change(Change::none, 1);
  const std::scoped_lock lock(mutex_);
  const xcb_pixmap_t pixmap = upload(picture);
  showAsBackground(pixmap);
  xcb_free_pixmap(connection_.get(), pixmap);
  connection_.sync();
}

std::optional<int> ChangingSource::numberOf(Rgb colour) const {
  const int code = colour.red >> 4 << 8 | colour.green >> 4 << 4 | colour.blue >> 4;
  const int newest = newest_.load();
  const int number = newest - ((newest - code) % numbers + numbers) % numbers;
  if (number <= 0) return std::nullopt;
  return number;
}

ChangingSource::Clock::time_point ChangingSource::changedAt(int number) const {
  const auto index = static_cast<std::size_t>(number % numbers);
  return Clock::time_point(Clock::duration(changedAt_.at(index).load()));
}

xcb_pixmap_t ChangingSource::upload(const testbed::Picture& picture) const {
  const xcb_pixmap_t pixmap = xcb_generate_id(connection_.get());
  const auto width = static_cast<std::uint16_t>(picture.width());
  xcb_create_pixmap(connection_.get(), connection_.screen().root_depth, pixmap, id(), width,
                    static_cast<std::uint16_t>(picture.height()));
  // A request has to stay below what every server takes.
  constexpr int rowsAtOnce = 16;
  for (int top = 0; top < picture.height(); top += rowsAtOnce) {
    const int rows = std::min(rowsAtOnce, picture.height() - top);
    std::vector<std::uint32_t> pixels;
    for (int y = top; y < top + rows; ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const Rgb colour = picture.at(x, y);
        pixels.push_back(std::uint32_t{colour.red} << 16 | std::uint32_t{colour.green} << 8 |
                         colour.blue);
      }
    }
    xcb_put_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, pen_, width,
                  static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(top), 0,
                  connection_.screen().root_depth, static_cast<std::uint32_t>(pixels.size() * 4),
                  reinterpret_cast<const std::uint8_t*>(pixels.data()));
  }
  return pixmap;
}

// So that it is right wherever another window has lain over it.
void ChangingSource::showAsBackground(xcb_pixmap_t pixmap) const {
  xcb_change_window_attributes(connection_.get(), id(), XCB_CW_BACK_PIXMAP, &pixmap);
  xcb_clear_area(connection_.get(), 0, id(), 0, 0, 0, 0);
  connection_.sync();
}

void ChangingSource::run() {
  std::minstd_rand random(1);
  std::uniform_real_distribution<double> lateness(0, 0.5);
  std::unique_lock lock(mutex_);
  auto due = Clock::now();
  while (!isEnding_) {
    if (change_ == Change::none) {
      wake_.wait(lock, [this] { return isEnding_ || change_ != Change::none; });
      due = Clock::now();
      continue;
    }
    due += std::chrono::duration_cast<Clock::duration>(period_);
    const auto late = std::chrono::duration_cast<Clock::duration>(period_ * lateness(random));
    const Change change = change_;
    if (wake_.wait_until(lock, due + late, [&] { return isEnding_ || change_ != change; })) {
      continue;
    }
    paint(change, newest_.load() + 1);
  }
}

void ChangingSource::paint(Change change, int number) {
  // The window gets the number in the same request as all else, so that nobody sees one without the
  // other.
  const xcb_pixmap_t picture = pictures_.at(
      change == Change::full ? static_cast<std::size_t>(number % pictures) : std::size_t{0});
  const std::uint32_t pixel = pixelOf(number % numbers);
  const xcb_rectangle_t mark{static_cast<std::int16_t>((area_.width - markSide) / 2),
                             static_cast<std::int16_t>((area_.height - markSide) / 2), markSide,
                             markSide};
  xcb_change_gc(connection_.get(), pen_, XCB_GC_FOREGROUND, &pixel);
  xcb_poly_fill_rectangle(connection_.get(), picture, pen_, 1, &mark);
  const int width = change == Change::full ? area_.width : smallSide;
  const int height = change == Change::full ? area_.height : smallSide;
  const auto x = static_cast<std::int16_t>((area_.width - width) / 2);
  const auto y = static_cast<std::int16_t>((area_.height - height) / 2);
  xcb_copy_area(connection_.get(), picture, id(), pen_, x, y, x, y,
                static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
  changedAt_.at(static_cast<std::size_t>(number % numbers)) =
      Clock::now().time_since_epoch().count();
  newest_ = number;
  xcb_flush(connection_.get());
}

}  // namespace vistrel::bench
