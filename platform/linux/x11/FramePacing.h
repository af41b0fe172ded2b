#pragma once

namespace vistrel::platform::linux_desktop {

// Frames come at most once per `interval` on average. A grid of fixed moments would lock against a
// source of the same rate at some random phase and show every frame late; so a frame may come a
// little early, and the time that it saved is owed by the next ones. All times are seconds of one
// monotonic clock.

/// When the next frame may be taken, `pace` being the moment to which the frames so far reach.
double earliestNextFrame(double pace, double interval);

/// The pace once a frame has been taken at `now`.
double paceAfterFrame(double pace, double interval, double now);

}  // namespace vistrel::platform::linux_desktop
