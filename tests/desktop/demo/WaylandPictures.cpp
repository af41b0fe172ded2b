// Takes the guide's pictures of Wayland sessions from the running program: a private session of
// KWin or of GNOME, native windows of ordinary programs, and a person at the pointer.

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/desktop/RunningVistrel.h"
#include "tests/support/AccessibilityBus.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FakeInput.h"
#include "tests/support/GnomeDialog.h"
#include "tests/support/GnomeShell.h"
#include "tests/support/HandOnX.h"
#include "tests/support/KWinScreen.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/MutterHand.h"
#include "tests/support/MutterSession.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindowScreen.h"

namespace vistrel::testbed {
namespace {

namespace fs = std::filesystem;

constexpr int width = 1280;
constexpr int height = 880;
constexpr const char* terminal = "Wayland Terminal";
constexpr Point terminalPlace{20, 410};
constexpr Point pickerPlace{776, 330};

bool isInPlace(Rect frame) {
  // It opens smaller than it then is.
  constexpr int leastWidth = 700;
  return frame.x == terminalPlace.x && frame.y == terminalPlace.y && frame.width > leastWidth;
}

template <class Condition>
void await(const std::string& complaint, const Condition& isThere) {
  if (!eventually(isThere)) throw std::runtime_error(complaint);
}

/// A build in a terminal, which is a native window.
class Build {
 public:
  explicit Build(const WaylandSession& session)
      : terminal_({.arguments = {"weston-terminal", "--shell=" + scriptIn(session.home())},
                   .environment = session.environment()}) {}

 private:
  static std::string scriptIn(const fs::path& home) {
    const fs::path script = home / "build";
    std::ofstream(script) << R"(#!/bin/sh
for step in $(seq 412 431); do printf '[%s/517] Building object parser/part_%s.o\n' $step $step; done
exec sleep 600
)";
    fs::permissions(script, fs::perms::owner_all);
    return script;
  }

  ChildProcess terminal_;
};

/// By which the terminal has a name that people know.
void installTerminal(const WaylandSession& session) {
  const fs::path entries = session.home() / "data/applications";
  fs::create_directories(entries);
  std::ofstream(entries / "org.freedesktop.weston.wayland-terminal.desktop")
      << "[Desktop Entry]\nType=Application\nName=Terminal\nExec=weston-terminal\n";
}

struct KWinDesktop : KWinSession {
  KWinDesktop() : KWinSession({.width = width, .height = height, .granted = {VISTREL_PROGRAM}}) {
    adoptEnvironment();
  }
};

/// A mirror of the terminal, beside the picker.
void takeKWinPicture(const fs::path& folder) {
  const KWinDesktop desktop;
  const XConnection connection(desktop.xName());
  const auto screen = std::make_shared<KWinScreen>(connection, desktop.busAddress());
  KWinScripts kwin(desktop.busAddress());
  const WaylandClient client;
  FakeInput hand(client);
  HandOnX handOnX(hand, connection);
  const AccessibilityBus reader(desktop.busAddress());
  installTerminal(desktop);
  const Build build(desktop);
  await("the terminal does not open", [&] {
    return kwin.run("tell(win('" + std::string(terminal) + "') ? 'open' : '')") == "open";
  });
  await("the terminal does not stay where it is put", [&] {
    kwin.moveTo(terminal, terminalPlace);
    return isInPlace(kwin.frameOf(terminal));
  });
  const RunningVistrel vistrel(connection, RunningVistrel::command({}, desktop.environment()), 1,
                               screen);
  vistrel.picker();
  kwin.moveTo("Vistrel", pickerPlace);
  Rect row;
  await("the picker does not list the terminal", [&] {
    for (const Accessible& each : reader.program(vistrel.process().pid()).all("list item")) {
      if (each.name().find(terminal) != std::string::npos) row = each.area();
    }
    return row.x > pickerPlace.x;
  });
  handOnX.clickAt(row.centre(), 2);
  const PanelOnScreen panel = vistrel.panels(1).back();
  kwin.raise(terminal);
  await("the mirror does not come to rest", [&] { return panel.dot() == Dot::stale; });
  screen->readAll().savePng(folder / "kwin-mirror.png");
}

struct GnomeDesktop : MutterSession {
  GnomeDesktop()
      : MutterSession({.width = width, .height = height, .isGnomeShell = true, .hasPortal = true}) {
    adoptEnvironment();
  }
};

void takeScreenshot(const WaylandSession& desktop, const fs::path& file) {
  const BusObject shell(connectToBus(desktop.busAddress()), "org.gnome.Shell.Screenshot",
                        "/org/gnome/Shell/Screenshot");
  BusMessage answer = shell.call("org.gnome.Shell.Screenshot", "Screenshot", "bbs", 0, 0,
                                 fs::absolute(file).c_str());
  if (!answer.truth()) throw std::runtime_error("gnome-shell takes no screenshot");
}

/// The dialog in which a person picks the terminal, and the mirror of that.
void takeGnomePictures(const fs::path& folder) {
  const GnomeDesktop desktop;
  const XConnection connection(desktop.xName());
  const GnomeShell shell(desktop);
  MutterHand hand(desktop);
  HandOnX handOnX(hand, connection);
  GnomeDialog dialog(desktop, hand);
  const AccessibilityBus reader(desktop.busAddress());
  const Build build(desktop);
  await("the terminal does not open", [&] { return shell.frameOf(terminal).has_value(); });
  await("the terminal does not stay where it is put", [&] {
    shell.moveTo(terminal, terminalPlace);
    return isInPlace(shell.frameOf(terminal).value_or(Rect{}));
  });
  const RunningVistrel vistrel(connection, RunningVistrel::command({}, desktop.environment()), 1,
                               std::make_shared<XWindowScreen>(connection));
  vistrel.picker();
  shell.moveTo("Vistrel", pickerPlace);
  const auto entry = [&] {
    return reader.program(vistrel.process().pid()).only("push button", "Choose Another Window…");
  };
  await("no window can be chosen",
        [&] { return entry().area().x > pickerPlace.x && entry().is(AccessibleState::sensitive); });
  shell.raise("Vistrel");
  handOnX.clickAt(entry().area().centre());
  await("the dialog does not list the terminal", [&] { return dialog.lists(terminal); });
  takeScreenshot(desktop, folder / "gnome-dialog.png");
  dialog.share(terminal);
  const PanelOnScreen panel = vistrel.panels(1).back();
  await("the mirror does not come to rest", [&] { return panel.dot() == Dot::stale; });
  takeScreenshot(desktop, folder / "gnome-mirror.png");
}

}  // namespace
}  // namespace vistrel::testbed

int main(int argc, char** argv) {
  const std::string_view desktop = argc == 3 ? argv[1] : "";
  if (desktop != "kwin" && desktop != "gnome") {
    std::cerr << "usage: vistrel-wayland-pictures kwin|gnome FOLDER\n";
    return EXIT_FAILURE;
  }
  try {
    using namespace vistrel::testbed;
    desktop == "kwin" ? takeKWinPicture(argv[2]) : takeGnomePictures(argv[2]);
    return EXIT_SUCCESS;
  } catch (const std::exception& failure) {
    std::cerr << "The pictures cannot be taken: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
}
