#include "platform/macos/capture/ShareableWindowRecord.h"

#include "platform/macos/Conversions.h"

namespace vistrel::platform::macos {

namespace {

std::shared_ptr<const SharedApplication> sharedApplication(SCRunningApplication* application) {
  if (application == nil) return nullptr;
  auto shared = std::make_shared<SharedApplication>();
  shared->applicationName = utf8(application.applicationName);
  shared->processID = application.processID;
  return shared;
}

WindowRecord windowRecord(SCWindow* window) {
  auto record = std::make_shared<ShareableWindowRecord>();
  record->windowID = window.windowID;
  if (NSString* title = window.title) record->title = utf8(title);
  record->frame = coreRect(window.frame);
  record->owningApplication = sharedApplication(window.owningApplication);
  record->isOnScreen = window.isOnScreen;
  record->windowLayer = window.windowLayer;
  record->window = window;
  return record;
}

}  // namespace

std::shared_ptr<const ShareableContent> shareableContent(SCShareableContent* content) {
  auto records = std::make_shared<ShareableContent>();
  for (SCWindow* window in content.windows) records->windows.push_back(windowRecord(window));
  return records;
}

SCWindow* serviceWindow(const ShareableWindow& record) {
  return static_cast<const ShareableWindowRecord&>(record).window;
}

}  // namespace vistrel::platform::macos
