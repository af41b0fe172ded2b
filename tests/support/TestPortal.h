#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "tests/support/CommandedProgram.h"
#include "tests/support/WaylandSession.h"

namespace vistrel::testbed {

/// Stands in for org.freedesktop.portal.Desktop, of which it has the interface ScreenCast, version
/// 4, over mutter's own screen casts: without a dialog, so that a test says what the person does
/// who is asked. A process of its own.
/// All operations return once they hold, and throw std::runtime_error when the process is gone.
class TestPortal {
 public:
  /// What comes of the dialog that Start opens.
  enum class Answer {
    /// The person shares the window that has the keyboard; where none has it, as `refuse`.
    pick,
    /// The person dismisses it: response 1.
    cancel,
    /// The portal fails: response 2.
    refuse,
    /// It stays open.
    none,
  };

  /// What somebody asked for with the last Start, and the SelectSources before.
  struct Request {
    std::string parentWindow;
    std::uint32_t types = 0;
    std::uint32_t cursorMode = 0;
    std::uint32_t persistMode = 0;
    /// Whether there was a restore token, good or not.
    bool hasToken = false;
  };

  /// In a session of mutter's or gnome-shell's, which outlives this object. Returns once it
  /// answers, each Start by `Answer::pick`. Throws std::runtime_error when it does not start, also
  /// where another portal answers.
  explicit TestPortal(const WaylandSession& session);

  /// From now on, and of the dialogs that are open.
  void answer(Answer answer);
  /// Whether windows can be shared, beside monitors.
  void offerWindows(bool isOffered);
  /// Restore tokens given out so far are honoured no longer, as for a window that has another title
  /// now.
  void forgetTokens();
  /// Each open session ends (Session.Closed), as by the desktop's own button for that.
  void closeSessions();
  /// While it hangs it has its name and answers nobody; afterwards it answers what has come
  /// meanwhile.
  void hang(bool isHung);
  /// It ends at once, as in a crash, with its streams.
  void leave();
  /// Starts it anew: as at the beginning, with no token or session.
  void comeBack();

  /// How often a person was asked so far: by a Start without a token that is honoured.
  int timesAsked();
  /// How many dialogs are open at the moment.
  int openDialogs();
  /// How many dialogs were withdrawn while they were open (Request.Close, Session.Close or the end
  /// of who asked), under which the portal of GNOME 43 crashes.
  int withdrawnDialogs();
  /// How many sessions somebody has created that are not closed yet.
  int openSessions();
  /// How many streams have been started so far, asked for or by a token.
  int startedStreams();
  Request lastRequest();

 private:
  std::string tell(const std::string& command);
  int count(const std::string& what);

  const WaylandSession* session_;
  std::unique_ptr<CommandedProgram> program_;
};

}  // namespace vistrel::testbed
