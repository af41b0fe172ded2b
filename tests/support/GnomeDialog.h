#pragma once

#include <string>

#include "tests/support/AccessibilityBus.h"
#include "tests/support/GnomeShell.h"
#include "tests/support/MutterHand.h"

namespace vistrel::testbed {

/// The dialog of GNOME's own portal in which a person picks a window to share: what is where in it
/// is read as a screen reader does. All operations wait for what they need, and throw
/// std::runtime_error when it does not come by a generous deadline.
class GnomeDialog {
 public:
  /// In a session with `hasPortal`. `hand` outlives this object.
  GnomeDialog(const WaylandSession& session, MutterHand& hand)
      : shell_(session), reader_(session.busAddress()), hand_(&hand) {}

  bool isOpen() const;
  /// Whether it offers the window with that title.
  bool lists(const std::string& title) const;
  /// Waits for the dialog, picks the window with that title and shares it. Returns once the dialog
  /// is gone.
  void share(const std::string& title);
  /// Waits for the dialog and dismisses it. Returns once it is gone.
  void cancel();

 private:
  void awaitDialog() const;
  void awaitEnd() const;
  /// Once it is there and takes input.
  void click(const std::string& role, const std::string& name);

  GnomeShell shell_;
  AccessibilityBus reader_;
  MutterHand* hand_;
};

}  // namespace vistrel::testbed
