#include "tests/macos/fakes/Displays.h"

#include <map>
#include <memory>
#include <vector>

#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

namespace {

fake::VirtualDisplayServer& server() { return fake::world().desktop().virtualDisplays; }

/// Without keeping them.
std::vector<CGVirtualDisplay * __unsafe_unretained>& liveDisplays() {
  static auto* const displays = new std::vector<CGVirtualDisplay * __unsafe_unretained>;
  return *displays;
}

void bringOnline(CGDirectDisplayID number, CGSize size) {
  server().displays[number] = {server().origin, size};
}

}  // namespace

@implementation CGVirtualDisplayDescriptor

- (void)setQueue:(dispatch_queue_t)queue {
  fake::record(self, _cmd, queue);
  _queue = queue;
}

- (void)setName:(NSString*)name {
  fake::record(self, _cmd, name);
  _name = [name copy];
}

- (void)setMaxPixelsWide:(unsigned int)pixels {
  fake::record(self, _cmd, pixels);
  _maxPixelsWide = pixels;
}

- (void)setMaxPixelsHigh:(unsigned int)pixels {
  fake::record(self, _cmd, pixels);
  _maxPixelsHigh = pixels;
}

- (void)setSizeInMillimeters:(CGSize)size {
  fake::record(self, _cmd, size);
  _sizeInMillimeters = size;
}

- (void)setProductID:(unsigned int)number {
  fake::record(self, _cmd, number);
  _productID = number;
}

- (void)setVendorID:(unsigned int)number {
  fake::record(self, _cmd, number);
  _vendorID = number;
}

- (void)setSerialNum:(unsigned int)number {
  fake::record(self, _cmd, number);
  _serialNum = number;
}

- (void)setTerminationHandler:(void (^)(void))handler {
  fake::record(self, _cmd, handler);
  _terminationHandler = handler;
}

@end

@implementation CGVirtualDisplayMode

- (instancetype)initWithWidth:(unsigned int)width
                       height:(unsigned int)height
                  refreshRate:(double)refreshRate {
  self = [super init];
  fake::record(self, _cmd, width, height, refreshRate);
  _width = width;
  _height = height;
  _refreshRate = refreshRate;
  return self;
}

@end

@implementation CGVirtualDisplaySettings

- (void)setHiDPI:(BOOL)hiDPI {
  fake::record(self, _cmd, hiDPI);
  _hiDPI = hiDPI;
}

- (void)setModes:(NSArray<CGVirtualDisplayMode*>*)modes {
  fake::record(self, _cmd, modes);
  _modes = [modes copy];
}

@end

@interface CGVirtualDisplay ()
@property(nonatomic, strong) CGVirtualDisplayDescriptor* descriptor;
@end

@implementation CGVirtualDisplay

- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)descriptor {
  self = [super init];
  fake::record(self, _cmd, descriptor);
  _descriptor = descriptor;
  _displayID = ++server().lastDisplayID;
  liveDisplays().push_back(self);
  return self;
}

- (BOOL)applySettings:(CGVirtualDisplaySettings*)settings {
  fake::record(self, _cmd, settings);
  CGVirtualDisplayMode* const mode = settings.modes.firstObject;
  if (mode == nil || mode.width > _descriptor.maxPixelsWide ||
      mode.height > _descriptor.maxPixelsHigh) {
    return NO;
  }
  if (!server().secondsUntilOnline) return YES;
  const double pixelsPerPoint = settings.hiDPI ? 2 : 1;
  const CGSize size = {mode.width / pixelsPerPoint, mode.height / pixelsPerPoint};
  const CGDirectDisplayID number = _displayID;
  if (*server().secondsUntilOnline == 0) {
    bringOnline(number, size);
    return YES;
  }
  __weak CGVirtualDisplay* const weak = self;
  fake::runLater(dispatch_get_main_queue(), *server().secondsUntilOnline, ^{
    if (weak != nil) bringOnline(number, size);
  });
  return YES;
}

- (void)dealloc {
  fake::note(fake::describe(self) + " goes");
  std::erase(liveDisplays(), self);
  const CGDirectDisplayID number = _displayID;
  fake::runLater(dispatch_get_main_queue(), 0, ^{
    server().displays.erase(number);
  });
}

@end

namespace {

/// The first of `screens` is the main one; further ones follow it in their order.
std::map<CGDirectDisplayID, CGRect> onlineDisplays() {
  std::map<CGDirectDisplayID, CGRect> displays = server().displays;
  CGDirectDisplayID number = 0;
  for (const fake::ScreenArea& screen : fake::world().desktop().screens) {
    displays[++number] = fake::flipped(screen.frame);
  }
  return displays;
}

using Configuration = std::map<CGDirectDisplayID, CGPoint>;

Configuration& of(CGDisplayConfigRef reference) {
  return *reinterpret_cast<Configuration*>(reference);
}

/// Completing and cancelling release it: CGBeginDisplayConfiguration.
std::unique_ptr<Configuration> taken(CGDisplayConfigRef reference) {
  return std::unique_ptr<Configuration>(&of(reference));
}

}  // namespace

namespace vistrel::fake {

CGRect flipped(const CGRect& rect) {
  const auto& screens = world().desktop().screens;
  const CGFloat height = screens.empty() ? 0 : screens.front().frame.size.height;
  return {{rect.origin.x, height - rect.origin.y - rect.size.height}, rect.size};
}

void endVirtualDisplays() {
  server().displays.clear();
  for (CGVirtualDisplay* display : liveDisplays()) {
    runLater(display.descriptor.queue, 0, display.descriptor.terminationHandler);
  }
  turn();
}

}  // namespace vistrel::fake

extern "C" {

CGDirectDisplayID CGMainDisplayID() { return 1; }

/// Empty for a display that there is not: where the program was tried.
CGRect CGDisplayBounds(CGDirectDisplayID display) {
  const auto displays = onlineDisplays();
  const auto found = displays.find(display);
  return found != displays.end() ? found->second : CGRect{};
}

CGError CGGetOnlineDisplayList(uint32_t capacity, CGDirectDisplayID* displays, uint32_t* count) {
  if (capacity != 0 || displays != nullptr) fake::fail("a list of displays has no behaviour here");
  *count = static_cast<uint32_t>(onlineDisplays().size());
  return kCGErrorSuccess;
}

CGError CGBeginDisplayConfiguration(CGDisplayConfigRef* configuration) {
  fake::note("CGBeginDisplayConfiguration");
  if (!fake::world().desktop().takesDisplayConfigurations) return 1000;  // kCGErrorFailure
  *configuration = reinterpret_cast<CGDisplayConfigRef>(new Configuration);
  return kCGErrorSuccess;
}

CGError CGConfigureDisplayOrigin(CGDisplayConfigRef configuration, CGDirectDisplayID display,
                                 int32_t x, int32_t y) {
  const CGPoint origin = {static_cast<CGFloat>(x), static_cast<CGFloat>(y)};
  fake::note("CGConfigureDisplayOrigin " + std::to_string(display) + ' ' + fake::describe(origin));
  of(configuration)[display] = origin;
  return kCGErrorSuccess;
}

CGError CGCancelDisplayConfiguration(CGDisplayConfigRef configuration) {
  fake::note("CGCancelDisplayConfiguration");
  taken(configuration);
  return kCGErrorSuccess;
}

CGError CGCompleteDisplayConfiguration(CGDisplayConfigRef configuration, CGConfigureOption option) {
  fake::note("CGCompleteDisplayConfiguration " + std::to_string(option));
  const auto wanted = taken(configuration);
  for (const auto& [display, origin] : *wanted) {
    const auto found = server().displays.find(display);
    if (found != server().displays.end()) found->second.origin = origin;
  }
  return kCGErrorSuccess;
}
}
