#include "tests/linux/pictures/TestMirror.h"

#include <array>
#include <future>
#include <utility>

#include "platform/linux/x11/picture/MipLevels.h"
#include "platform/linux/x11/source/SourceWindow.h"
#include "platform/linux/x11/stream/MirrorWorker.h"
#include "platform/linux/x11/stream/WindowFrames.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::platform::linux_desktop {

using testbed::Rect;
using testbed::Rgb;

namespace {

constexpr int gridSide = 24;
constexpr int tolerance = 8;

xcb_window_t openPanel(const testbed::XConnection& connection, Rect area) {
  const xcb_window_t window = xcb_generate_id(connection.get());
  const std::uint32_t overrideRedirect = 1;
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(),
                    static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                    static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height),
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
  xcb_map_window(connection.get(), window);
  connection.sync();
  return window;
}

PanelChrome clearChrome(int width, int height) {
  PanelChrome chrome;
  chrome.width = width;
  chrome.height = height;
  chrome.pixels = {width, std::vector<std::uint32_t>(static_cast<std::size_t>(width * height))};
  chrome.contents = PixelRect{0, 0, width, height};
  chrome.contentsBackground = Color::black();
  return chrome;
}

}  // namespace

void TestMirror::Events::streamDidOutputSampleBuffer(Stream& /*stream*/, const SampleBuffer& sample,
                                                     StreamOutputType /*type*/) {
  beforeTaking();
  const auto buffer = sample.imageBuffer();
  std::vector<PixelBGRA> pixels;
  buffer->visitSampleGrid(gridSide, gridSide, [&pixels](PixelBGRA pixel) {
    pixels.push_back(pixel);
    return true;
  });
  auto image = accepts ? WindowImageContext().createImage(buffer) : nullptr;
  const std::lock_guard lock(mutex);
  frames.push_back(monotonicNow());
  if (image) latest = std::move(image);
  grid = std::move(pixels);
}

void TestMirror::Events::streamDidStopWithError(Stream& /*stream*/, const Error& /*error*/) {
  ++ends;
}

TestMirror::TestMirror(const testbed::XConnection& connection, Rect panel, Panels panels)
    : connection_(connection),
      panel_(openPanel(connection, panel)),
      area_(panel),
      panels_(panels),
      queue_(SerialQueue::make("mirror", QualityOfService::userInteractive)),
      events_(std::make_shared<Events>()) {
  surface_.emplace(panel_, queue_);
  surface_->setChrome(clearChrome(area_.width, area_.height), nullptr);
  surface_->setContents(nullptr);
}

TestMirror::~TestMirror() {
  stop();
  surface_->detach();
  xcb_destroy_window(connection_.get(), panel_);
  connection_.sync();
}

StreamConfiguration TestMirror::usualConfiguration() {
  return {.width = 400,
          .height = 300,
          .minimumFrameInterval = {1, 30},
          .queueDepth = 6,
          .showsCursor = true,
          .scalesToFit = true};
}

StreamCompletion TestMirror::counted() {
  ++asked_;
  return [events = events_](const auto& /*error*/) { ++events->answered; };
}

void TestMirror::start(xcb_window_t source, const StreamConfiguration& configuration) {
  start(source, openSourceWindow, configuration);
}

void TestMirror::start(WindowID source, OpenSource open) {
  start(source, std::move(open), usualConfiguration());
}

void TestMirror::start(WindowID source, OpenSource open, const StreamConfiguration& configuration) {
  stop();
  stream_ = std::make_shared<CaptureStream>(source, std::move(open), configuration, events_);
  stream_->addStreamOutput(events_, StreamOutputType::screen, queue_);
  stream_->startCapture([events = events_, count = counted()](const auto& error) {
    {
      const std::lock_guard lock(events->mutex);
      events->startFailure = error ? error->localizedDescription : "";
    }
    count(error);
  });
}

void TestMirror::stop() {
  if (const auto stream = std::exchange(stream_, nullptr)) stream->stopCapture(counted());
}

void TestMirror::configure(const StreamConfiguration& configuration) {
  if (stream_) stream_->updateConfiguration(configuration, counted());
}

void TestMirror::resizePanel(int width, int height) {
  area_.width = width;
  area_.height = height;
  const std::array<std::uint32_t, 2> values{static_cast<std::uint32_t>(width),
                                            static_cast<std::uint32_t>(height)};
  xcb_configure_window(connection_.get(), panel_,
                       XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
  connection_.sync();
  surface_->setChrome(clearChrome(width, height), nullptr);
}

void TestMirror::rollUp() {
  auto chrome = clearChrome(area_.width, area_.height);
  chrome.contents = std::nullopt;
  surface_->setChrome(std::move(chrome), nullptr);
}

void TestMirror::turn() {
  std::shared_ptr<const Image> image;
  {
    const std::lock_guard lock(events_->mutex);
    image = std::exchange(events_->latest, nullptr);
  }
  if (image) surface_->setContents(std::move(image));
}

void TestMirror::showPictureOf(const TestMirror& other) {
  std::shared_ptr<const Image> image;
  {
    const std::lock_guard lock(other.events_->mutex);
    image = other.events_->latest;
  }
  surface_->setContents(std::move(image));
}

void TestMirror::takePictureAway() { surface_->setContents(nullptr); }

testbed::Picture TestMirror::panelPicture() const {
  constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), panel_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  const testbed::ScreenReader reader(connection_);
  return panels_ == Panels::onScreen ? reader.read(area_)
                                     : reader.readWindow(panel_, area_.width, area_.height);
}

Rgb TestMirror::colourAt(double fractionX, double fractionY, Rect source) const {
  const auto place =
      aspectFit({source.width, source.height}, PixelRect{0, 0, area_.width, area_.height});
  const Rect picture{place.x, place.y, place.width, place.height};
  return panelPicture().at(picture.at(fractionX, fractionY));
}

bool TestMirror::shows(const testbed::Quadrants& expected, Rect source) {
  turn();
  const auto isAt = [&](double x, double y, Rgb colour) {
    return similar(colourAt(x, y, source), colour, tolerance);
  };
  return isAt(0.25, 0.25, expected.topLeft) && isAt(0.75, 0.25, expected.topRight) &&
         isAt(0.25, 0.75, expected.bottomLeft) && isAt(0.75, 0.75, expected.bottomRight);
}

bool TestMirror::wasGiven(const testbed::Quadrants& expected) const {
  const std::lock_guard lock(events_->mutex);
  if (events_->grid.empty()) return false;
  const auto isAt = [this](int column, int row, Rgb colour) {
    const auto& pixel = events_->grid.at(static_cast<std::size_t>(row * gridSide + column));
    return similar({pixel.red, pixel.green, pixel.blue}, colour, tolerance);
  };
  constexpr int near = gridSide / 4;
  constexpr int far = 3 * gridSide / 4;
  return isAt(near, near, expected.topLeft) && isAt(far, near, expected.topRight) &&
         isAt(near, far, expected.bottomLeft) && isAt(far, far, expected.bottomRight);
}

std::vector<double> TestMirror::frames() const {
  const std::lock_guard lock(events_->mutex);
  return events_->frames;
}

std::string TestMirror::startFailure() const {
  const std::lock_guard lock(events_->mutex);
  return events_->startFailure;
}

void TestMirror::whileQueueIsHeldUp(const std::function<void()>& action) const {
  std::promise<void> done;
  queue_->async([isDone = done.get_future().share()] { isDone.wait(); });
  action();
  done.set_value();
}

void TestMirror::settle() const {
  asyncAndWait(*queue_, [queue = queue_] {
    const auto worker = MirrorWorker::of(queue);
    worker->serve();
    worker->connection().sync();
    worker->serve();
  });
}

std::uint32_t TestMirror::idBase() const {
  std::uint32_t base = 0;
  asyncAndWait(*queue_, [queue = queue_, &base] {
    const auto worker = MirrorWorker::of(queue);
    base = xcb_get_setup(worker->connection().xcb())->resource_id_base;
  });
  return base;
}

void TestMirror::throwOut() {
  xcb_window_t window = XCB_WINDOW_NONE;
  asyncAndWait(*queue_, [&] {
    auto& connection = MirrorWorker::of(queue_)->connection();
    window = xcb_generate_id(connection.xcb());
    xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    connection.sync();
  });
  xcb_kill_client(connection_.get(), window);
  connection_.sync();
}

}  // namespace vistrel::platform::linux_desktop
