#pragma once

#include <memory>

#include "platform/Alert.h"

class QMessageBox;

namespace vistrel::platform::linux_desktop {

/// Shows the alert and waits for its answer. Main thread.
int runAlertBox(const Alert& alert);

/// An alert that nobody waits for: a window among the program's others, until a person closes it.
/// Of several the last one is there. Main thread.
class Notice {
 public:
  Notice();
  ~Notice();

  void show(const Alert& alert);

 private:
  std::unique_ptr<QMessageBox> box_;
};

/// What closing the alert without choosing a button answers.
int answerOfClosing(const Alert& alert);

}  // namespace vistrel::platform::linux_desktop
