#include "bench/peers/Bed.h"

#include "bench/ProcessorTime.h"

namespace vistrel::bench {
namespace {

/// Whether a compositing manager has said that it is there (EWMH 1.5, _NET_WM_CM_Sn).
bool isComposited(const testbed::XConnection& connection) {
  const testbed::XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
      connection.get(), xcb_get_selection_owner(connection.get(), connection.atom("_NET_WM_CM_S0")),
      nullptr));
  return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace

Bed::Bed(Compositing compositing) {
  if (compositing == Compositing::none) return;
  manager_ = std::make_unique<testbed::ChildProcess>(testbed::ChildProcess::Command{
      .arguments = {"picom", "--config", "/dev/null", "--backend", "xrender"},
      .environment = display_.environment()});
  testbed::awaitStart(*manager_, "picom", [this] { return isComposited(connection_); });
}

double Bed::serverSeconds() const { return processorSeconds(display_.serverPid()); }

double Bed::managerSeconds() const { return manager_ ? processorSeconds(manager_->pid()) : 0; }

}  // namespace vistrel::bench
