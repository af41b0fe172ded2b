#pragma once

#include <optional>

#include "bench/peers/Subject.h"
#include "tests/desktop/RunningVistrel.h"

namespace vistrel::bench {

/// The built program with one mirror, opened from its picker as a person does it.
class MirrorSubject : public Subject {
 public:
  /// Returns once the panel is beside where
  /// the bed's large source is; the picker is closed then. Throws std::runtime_error.
  explicit MirrorSubject(Bed& bed);

  double clientSeconds() const override;
  xcb_window_t window() const override { return panel_->id(); }
  testbed::Rect picture() const override;

  /// Drags the panel's grip until the picture is that large, as nearly as the program lets it be.
  void resizeTo(Extent extent);
  /// Rolls the panel up to its title bar. Returns once it is.
  void rollUp();

 private:
  void putBeside();

  Bed* bed_;
  testbed::RunningVistrel program_;
  std::optional<testbed::PanelOnScreen> panel_;
};

/// The built program, mirroring the bed's only source.
Contestant vistrel();

/// Nothing but the redirection of the source's drawing off the screen, which every live view of a
/// covered window takes: the server's own part of the cost.
Contestant redirection();

}  // namespace vistrel::bench
