#include "platform/Backend.h"

#include <cstdlib>

#include "platform/Alert.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/Event.h"
#include "platform/StandardError.h"
#include "platform/Workspace.h"

namespace vistrel::platform {

namespace {

Backend* installed = nullptr;

}  // namespace

Backend& backend() {
  if (installed == nullptr) std::abort();
  return *installed;
}

BackendInstallation::BackendInstallation(Backend& backend) {
  if (installed != nullptr) std::abort();
  installed = &backend;
}

BackendInstallation::~BackendInstallation() { installed = nullptr; }

Date now() { return backend().dispatch().now(); }

DispatchQueue& mainQueue() { return backend().dispatch().mainQueue(); }

void mainAsyncAfter(double seconds, Block block) {
  backend().dispatch().mainAsyncAfter(seconds, std::move(block));
}

std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label, QualityOfService quality) {
  return backend().dispatch().makeSerialQueue(std::move(label), quality);
}

std::shared_ptr<Timer> scheduledTimer(double seconds, bool repeats, Block block) {
  return backend().dispatch().scheduledTimer(seconds, repeats, std::move(block));
}

std::shared_ptr<Semaphore> makeSemaphore(int value) {
  return backend().dispatch().makeSemaphore(value);
}

Point Event::mouseLocation() { return backend().windows().mouseLocation(); }

std::vector<Screen> screens() { return backend().windows().screens(); }

std::optional<Screen> mainScreen() { return backend().windows().mainScreen(); }

int Alert::runModal() const { return backend().windows().runModal(*this); }

bool preflightScreenCaptureAccess() {
  return backend().screenCapture().preflightScreenCaptureAccess();
}

bool requestScreenCaptureAccess() { return backend().screenCapture().requestScreenCaptureAccess(); }

void getShareableContent(DesktopWindows desktopWindows, ListedWindows listedWindows,
                         ShareableContentCompletion completion) {
  backend().screenCapture().getShareableContent(desktopWindows, listedWindows,
                                                std::move(completion));
}

std::shared_ptr<Stream> makeStream(const ContentFilter& filter,
                                   const StreamConfiguration& configuration,
                                   std::weak_ptr<StreamDelegate> delegate) {
  return backend().screenCapture().makeStream(filter, configuration, std::move(delegate));
}

std::shared_ptr<ImageContext> makeImageContext(const ImageContextOptions& options) {
  return backend().screenCapture().makeImageContext(options);
}

DisplayID mainDisplayID() { return backend().displays().mainDisplayID(); }

Rect displayBounds(DisplayID display) { return backend().displays().displayBounds(display); }

std::uint32_t onlineDisplayCount() { return backend().displays().onlineDisplayCount(); }

std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() {
  return backend().displays().beginDisplayConfiguration();
}

std::shared_ptr<RuntimeClass> classNamed(const std::string& name) {
  return backend().virtualDisplays().classNamed(name);
}

bool isProcessTrusted() { return backend().accessibility().isProcessTrusted(); }

bool isProcessTrustedWithOptions(bool prompt) {
  return backend().accessibility().isProcessTrustedWithOptions(prompt);
}

std::shared_ptr<AccessibilityElement> AccessibilityElement::forApplication(std::int32_t processID) {
  return backend().accessibility().applicationElement(processID);
}

std::optional<AccessibilityValue> makePointValue(Point point) {
  return backend().accessibility().makePointValue(point);
}

GetWindowNumber windowNumberFunctionNamed(const std::string& symbol) {
  return backend().accessibility().windowNumberFunctionNamed(symbol);
}

void writeToStandardError(const std::string& text) { backend().standardError().write(text); }

bool openURL(const std::string& url) { return backend().workspace().openURL(url); }

bool openNewInstance(const std::string& bundlePath) {
  return backend().workspace().openNewInstance(bundlePath);
}

std::int32_t processIdentifier() { return backend().workspace().processIdentifier(); }

std::shared_ptr<RunningApplication> RunningApplication::withProcessIdentifier(
    std::int32_t processID) {
  return backend().workspace().runningApplication(processID);
}

std::optional<std::string> bundleInfo(const std::string& key) {
  return backend().workspace().bundleInfo(key);
}

std::string mainBundlePath() { return backend().workspace().mainBundlePath(); }

ComparisonResult localizedCaseInsensitiveCompare(const std::string& a, const std::string& b) {
  return backend().workspace().localizedCaseInsensitiveCompare(a, b);
}

}  // namespace vistrel::platform
