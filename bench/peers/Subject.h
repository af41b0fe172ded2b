#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/peers/Bed.h"
#include "bench/peers/ChangingSource.h"
#include "tests/support/Rect.h"

namespace vistrel::bench {

/// Something that shows the source smaller, live, in a window of its own, while this object lives.
class Subject {
 public:
  virtual ~Subject() = default;
  Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  /// Seconds of processor time that its process has used so far. None for what has none.
  virtual double clientSeconds() const = 0;
  virtual xcb_window_t window() const = 0;
  /// Where in that window the source's picture is.
  virtual testbed::Rect picture() const = 0;
};

/// A size in pixels.
struct Extent {
  int width = 0;
  int height = 0;
};

/// One of those that are measured in turns.
struct Contestant {
  std::string name;
  /// Starts it on the source of that bed with a picture about that large. Returns once the picture
  /// is on the screen. Throws std::runtime_error when it does not come.
  std::function<std::unique_ptr<Subject>(Bed&, const ChangingSource&, Extent)> start;
};

/// What people would use instead.
std::vector<Contestant> peers();

}  // namespace vistrel::bench
