#pragma once

#include <memory>
#include <optional>
#include <string>

struct sd_bus;

namespace vistrel::platform::linux_desktop {

/// Has KWin run scripts, which may do with windows what a person may. One thread.
class KWinScripts {
 public:
  /// Runs JavaScript in KWin and waits until the monotonic clock reaches `deadline` for what it has
  /// told: the texts of its calls `tell(text)`, each ended by a newline. None where KWin does not
  /// answer, or refuses. In scope are `all()`, the windows; `find(uuid)`, one of them or nothing;
  /// `inside(window)`, a native one's frame without what KWin puts around it, which is what is
  /// streamed; `activate(window)`, which gives it the keyboard and raises it, and
  /// `isShown(window)`, whether it is on the desktop that is shown.
  std::optional<std::string> run(const std::string& javaScript, double deadline);

 private:
  struct Close {
    void operator()(sd_bus* bus) const;
  };

  bool connect();

  std::unique_ptr<sd_bus, Close> bus_;  // from the first use on
};

/// `text` as a script writes it.
std::string scriptLiteral(const std::string& text);

}  // namespace vistrel::platform::linux_desktop
