#pragma once

namespace vistrel::platform::linux_desktop {

/// Makes windows and lists of ours readable where the toolkit's own way does not. What is read is
/// made when a screen reader first asks. Before any window is made.
void installAccessibles();

}  // namespace vistrel::platform::linux_desktop
