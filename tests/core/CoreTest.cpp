#include "tests/core/CoreTest.h"

namespace vistrel {

WindowRecord CoreTest::openSource(const std::function<void(ShareableWindow&)>& change) {
  static WindowID nextID = 1;
  ShareableWindow window{.windowID = nextID++,
                         .title = "Title",
                         .frame = rect(10, 20, 1000, 500),
                         .owningApplication = std::make_shared<platform::SharedApplication>(
                             platform::SharedApplication{"App", 99}),
                         .isOnScreen = true,
                         .windowLayer = 0};
  if (change) change(window);
  capture().openWindow(window);
  return std::make_shared<const ShareableWindow>(std::move(window));
}

WindowRecord CoreTest::openSource(const std::string& application, const std::string& title) {
  return openSource([&](ShareableWindow& window) {
    window.title = title;
    window.owningApplication =
        std::make_shared<platform::SharedApplication>(platform::SharedApplication{application, 99});
  });
}

Pixels CoreTest::brightPixels(std::int64_t width, std::int64_t height) {
  return platform::simulated::solidPixels(width, height,
                                          {.blue = 40, .green = 80, .red = 200, .alpha = 255});
}

void MirrorTest::makeMirror(const WindowRecord& source, int cascade) {
  mirror_ = WindowMirrorHUDController::make(
      source, cascade, [this](WindowID id) { closed_.push_back(id); }, host_);
}

void MirrorTest::showMirror() {
  makeMirror(openSource());
  mirror_->show();
  desktop_.turnMainQueue();
}

platform::StreamConfiguration MirrorTest::configurationOf(std::int64_t width, std::int64_t height) {
  return {.width = width,
          .height = height,
          .minimumFrameInterval = {1, 30},
          .queueDepth = 6,
          .showsCursor = true,
          .scalesToFit = true,
          .pixelFormat = 0x42475241};
}

void MirrorTest::deliver(Frame frame) {
  stream()->deliver(std::move(frame));
  desktop_.turnMainQueue();
}

}  // namespace vistrel
