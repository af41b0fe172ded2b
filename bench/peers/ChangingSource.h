#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Picture.h"
#include "tests/support/TestWindow.h"
#include "tests/support/XConnection.h"

namespace vistrel::bench {

/// How much of the window changes at a time: nothing, 200 × 200 pixels in its middle, or all.
enum class Change { none, small, full };

/// A window that changes by itself, with jitter, on a thread and a connection of its own. Each
/// change has a number, which can be read from the colour of its middle also where the picture has
/// been made smaller.
class ChangingSource {
 public:
  using Clock = std::chrono::steady_clock;

  /// Without a frame of the manager's.
  ChangingSource(const std::string& display, testbed::Rect area);
  ~ChangingSource();
  ChangingSource(const ChangingSource&) = delete;
  ChangingSource& operator=(const ChangingSource&) = delete;

  xcb_window_t id() const { return window_.id(); }
  testbed::Rect area() const { return area_; }

  /// From now on it changes so, at `perSecond` on average; each change comes up to half a period
  /// late. Returns once the change before, if one was under way, has been sent.
  void change(Change change, double perSecond);
  /// It rests, and shows this, of its own size. No change has a number then.
  void show(const testbed::Picture& picture);

  /// How many changes there have been.
  int changes() const { return newest_.load(); }
  /// The number that a colour stands for, of the newest change that has it; none when it is none's.
  std::optional<int> numberOf(testbed::Rgb colour) const;
  /// When that change had been sent to the server; only for the last few thousand.
  Clock::time_point changedAt(int number) const;

 private:
  static constexpr int numbers = 4096;
  static constexpr int pictures = 4;

  xcb_pixmap_t upload(const testbed::Picture& picture) const;
  void showAsBackground(xcb_pixmap_t pixmap) const;
  void run();
  void paint(Change change, int number);

  const testbed::Rect area_;
  testbed::TestWindow window_;
  /// The painter's, and this object's while the painter rests.
  testbed::XConnection connection_;
  xcb_gcontext_t pen_;
  std::vector<xcb_pixmap_t> pictures_;

  std::atomic<int> newest_{0};
  std::array<std::atomic<Clock::rep>, numbers> changedAt_{};

  std::mutex mutex_;
  std::condition_variable wake_;
  // Under the mutex.
  Change change_ = Change::none;
  std::chrono::duration<double> period_{1};
  bool isEnding_ = false;
  std::thread painter_;
};

}  // namespace vistrel::bench
