#include "tests/linux/MirrorInPanel.h"

#include <future>
#include <stdexcept>
#include <utility>

#include "platform/linux/x11/WindowFrames.h"
#include "tests/support/Poll.h"

namespace vistrel::platform::linux_desktop {
namespace {

PanelChrome nothingButThePicture(testbed::Rect area) {
  return {.width = area.width,
          .height = area.height,
          .pixels = std::vector<std::uint32_t>(static_cast<std::size_t>(area.width * area.height)),
          .contents = PixelRect{0, 0, area.width, area.height},
          .contentsBackground = Color::black()};
}

}  // namespace

void MirrorInPanel::Output::streamDidOutputSampleBuffer(Stream&, const SampleBuffer& sample,
                                                        StreamOutputType) {
  auto image = WindowImageContext().createImage(sample.imageBuffer());
  const std::scoped_lock lock(mutex_);
  image_ = std::move(image);
  frames_.push_back(monotonicNow());
}

std::vector<double> MirrorInPanel::Output::frames() const {
  const std::scoped_lock lock(mutex_);
  return frames_;
}

std::shared_ptr<const Image> MirrorInPanel::Output::takeImage() {
  const std::scoped_lock lock(mutex_);
  return std::exchange(image_, nullptr);
}

MirrorInPanel::MirrorInPanel(const testbed::PrivateDisplay& display, const Options& options)
    : area_(options.panel),
      eyes_(display.name()),
      panel_(display.name(), {.title = "Panel", .area = options.panel, .managed = false}),
      surface_(panel_.id(), queue_),
      stream_(std::make_shared<CaptureStream>(
          options.source,
          StreamConfiguration{.minimumFrameInterval = options.interval,
                              .showsCursor = options.showsCursor},
          std::weak_ptr<StreamDelegate>())) {
  surface_.setChrome(nothingButThePicture(area_), nullptr);
  stream_->addStreamOutput(output_, StreamOutputType::screen, queue_);
  std::promise<std::optional<Error>> started;
  stream_->startCapture([&](std::optional<Error> error) { started.set_value(std::move(error)); });
  if (started.get_future().get()) throw std::runtime_error("the stream did not start");
  if (!testbed::eventually([&] { return !frames().empty(); })) {
    throw std::runtime_error("the stream hands out nothing");
  }
}

MirrorInPanel::~MirrorInPanel() {
  // Nothing draws the panel's window when it goes.
  surface_.detach();
}

Bitmap MirrorInPanel::shown() {
  if (auto image = output_->takeImage()) surface_.setContents(std::move(image));
  return testbed::ScreenReader(eyes_).read(area_);
}

}  // namespace vistrel::platform::linux_desktop
