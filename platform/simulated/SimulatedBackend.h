#pragma once

#include <memory>

#include "platform/Backend.h"
#include "platform/simulated/CallJournal.h"
#include "platform/simulated/SimulatedAccessibility.h"
#include "platform/simulated/SimulatedApplication.h"
#include "platform/simulated/SimulatedCapture.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "platform/simulated/SimulatedDispatch.h"
#include "platform/simulated/SimulatedDisplays.h"
#include "platform/simulated/SimulatedStandardError.h"
#include "platform/simulated/SimulatedVirtualDisplays.h"
#include "platform/simulated/SimulatedWorkspace.h"
#include "platform/simulated/VirtualTimeDispatch.h"

namespace vistrel::platform::simulated {

enum class Mode {
  virtualTime,  // one thread, time moves when the test moves it
  threads,      // queues are threads, time is real
};

/// A desktop for tests, installed for as long as it lives. Main thread.
class SimulatedBackend : public Backend {
 public:
  explicit SimulatedBackend(Mode mode = Mode::virtualTime);
  /// Runs what is still queued, so that everything handed to the main queue for destruction goes.
  ~SimulatedBackend() override;

  SimulatedDispatch& dispatch() override { return *dispatch_; }
  SimulatedDesktop& windows() override { return desktop_; }
  SimulatedCapture& screenCapture() override { return capture_; }
  SimulatedWorkspace& workspace() override { return workspace_; }
  SimulatedDisplays& displays() override { return displays_; }
  SimulatedVirtualDisplays& virtualDisplays() override { return virtualDisplays_; }
  SimulatedAccessibility& accessibility() override { return accessibility_; }
  SimulatedStandardError& standardError() override { return standardError_; }
  SimulatedApplication& application() override { return application_; }

  /// The calls to the application, windows, streams, displays, virtual displays and Accessibility
  /// that other calls are to come before or after, in their order.
  CallJournal& journal() { return journal_; }

  /// Only in `Mode::virtualTime`.
  VirtualTimeDispatch& virtualTime();
  void turnMainQueue() { dispatch_->turnMainQueue(); }
  /// Only in `Mode::virtualTime`.
  void advance(double seconds) { virtualTime().advance(seconds); }
  /// Answers all that is held back, and runs everything.
  void drain();

 private:
  const BackendInstallation installation_{*this};
  const std::unique_ptr<SimulatedDispatch> dispatch_;
  CallJournal journal_;
  SimulatedDesktop desktop_{journal_};
  SimulatedCapture capture_;
  SimulatedWorkspace workspace_;
  SimulatedDisplays displays_{journal_};
  SimulatedVirtualDisplays virtualDisplays_{displays_, journal_};
  SimulatedAccessibility accessibility_{capture_, journal_};
  SimulatedStandardError standardError_;
  SimulatedApplication application_;
};

}  // namespace vistrel::platform::simulated
