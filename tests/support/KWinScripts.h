#pragma once

#include <map>
#include <string>

#include "tests/support/DBus.h"
#include "tests/support/Rect.h"

namespace vistrel::testbed {

/// Scripts that run inside KWin, to look at what it knows of windows and to do with them what a
/// person does. Every call returns once that is done, and throws std::runtime_error when KWin does
/// not answer. KWin 5.27 mixes up scripts that two programs run at the same time: where the program
/// under test runs its own, one may be carried out twice; `frameOf` a window that was asked for
/// before needs none.
class KWinScripts {
 public:
  /// `busAddress` is that of KWin's session.
  explicit KWinScripts(const std::string& busAddress) : bus_(connectToBus(busAddress)) {}

  /// Runs JavaScript that calls `tell(text)` for its answer, once at most; gives the empty text
  /// without. In scope is `win(title)`, the window with that title.
  std::string run(const std::string& javaScript);

  /// Where the window with that title is, in logical pixels.
  Rect frameOf(const std::string& title);
  void moveTo(const std::string& title, Point origin);
  void raise(const std::string& title);
  /// 1 is the first one.
  void showDesktop(int number);

 private:
  BusConnection bus_;
  std::map<std::string, std::string> uuids_;  // by title
};

}  // namespace vistrel::testbed
