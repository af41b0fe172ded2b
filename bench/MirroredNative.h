#pragma once

#include <memory>
#include <optional>

#include "bench/DrawnFrames.h"
#include "tests/desktop/RunningVistrel.h"
#include "tests/support/FakeInput.h"
#include "tests/support/HandOnX.h"
#include "tests/support/KWinScreen.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"

namespace vistrel::bench {

/// A private session of KWin in which the built program mirrors a large native window. As root, the
/// process becomes an ordinary user for good.
class MirroredNative {
 public:
  enum class Panel { none, open, rolledUp };

  /// Returns once the mirror shows its source, where there is one.
  explicit MirroredNative(Panel panel);

  testbed::NativeWindow& source() { return source_; }
  /// How often the panel has been drawn so far.
  int drawnFrames() { return frames_ ? frames_->count() : 0; }

  /// Seconds that the program, the X server of X's programs and the compositor have used so far.
  struct ProcessorTime {
    double client = 0;
    double xwayland = 0;
    double kwin = 0;
  };
  ProcessorTime processorTime() const;

  static constexpr testbed::Rect sourceArea{10, 30, 1900, 1020};

 private:
  void awaitRest();

  struct AdoptedSession : testbed::KWinSession {
    explicit AdoptedSession(const Options& options) : KWinSession(options) { adoptEnvironment(); }
  };

  AdoptedSession desktop_{{.width = 1920, .height = 1080, .granted = {VISTREL_PROGRAM}}};
  const pid_t xwayland_ = desktop_.xwaylandPid();
  testbed::XConnection connection_{desktop_.xName()};
  std::shared_ptr<const testbed::ScreenReader> screen_ =
      std::make_shared<testbed::KWinScreen>(connection_, desktop_.busAddress());
  testbed::NativeWindow source_{
      desktop_.environment(),
      {.title = "Source", .width = sourceArea.width, .height = sourceArea.height}};
  std::unique_ptr<testbed::RunningVistrel> vistrel_;
  std::optional<DrawnFrames> frames_;
};

}  // namespace vistrel::bench
