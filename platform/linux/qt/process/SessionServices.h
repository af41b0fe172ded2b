#pragma once

#include <optional>
#include <string>

namespace vistrel::platform::linux_desktop {

// Qt 6.4.2 makes the main thread wait for the services of a desktop's session bus, up to 25 s for
// each answer, and for its session manager without end. So they are asked before, and the toolkit
// goes without those that do not answer.

/// Whether a service answers, or is not there to be waited for.
struct SessionServices {
  bool manager = true;        // of the session (X Session Management Protocol)
  bool bus = true;            // the session's
  bool accessibility = true;  // org.a11y.Bus (AT-SPI 2)
  bool globalMenu = true;     // com.canonical.AppMenu.Registrar
};

/// Asks them, all at once, and gives them so many seconds. Any thread.
SessionServices askSessionServices(double seconds);

/// Keeps the toolkit off those that do not answer, and says so in the trace. The toolkit takes in
/// what the environment says when it starts: at the end of this the environment is as it was, for
/// the programs that are started from here. Before the application object is made; main thread.
class QtWithout {
 public:
  explicit QtWithout(const SessionServices& services);
  QtWithout(const QtWithout&) = delete;
  QtWithout& operator=(const QtWithout&) = delete;
  /// Has the toolkit, whose application object is there by then, take in the environment.
  ~QtWithout();

 private:
  class Variable {
   public:
    ~Variable();
    /// Null takes it out of the environment.
    void set(const char* name, const char* value);

   private:
    const char* name_ = nullptr;
    std::optional<std::string> former_;
  };

  Variable sessionManager_;
  Variable sessionBus_;
  Variable accessibilityBus_;
};

}  // namespace vistrel::platform::linux_desktop
