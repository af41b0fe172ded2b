#pragma once

#include <cstdint>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// A window manager that does nothing until it is asked whether it has, by
/// _NET_REQUEST_FRAME_EXTENTS (EWMH) or for a window's place: then it moves the windows that it was
/// told to move (_NET_MOVERESIZE_WINDOW). It takes notice of the screen's size at every third
/// question only. It draws no frames, and windows are to be on the screen before it comes.
class LazyManager {
 public:
  explicit LazyManager(const std::string& display);

 private:
  void announce();
  void noticeScreen();
  void answerUntil(const std::stop_token& stop);
  void take(const xcb_client_message_event_t& message);
  void answer(const xcb_configure_request_event_t& request);
  void catchUp();

  XConnection connection_;
  const xcb_window_t window_;
  const xcb_atom_t question_;
  const xcb_atom_t move_;
  // On the thread alone.
  std::vector<xcb_client_message_event_t> moves_;
  int timesAsked_ = 0;
  std::jthread thread_;  // ends before the rest goes
};

}  // namespace vistrel::testbed
