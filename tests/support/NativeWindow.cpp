#include "tests/support/NativeWindow.h"

#include <iomanip>
#include <sstream>

namespace vistrel::testbed {
namespace {

std::string textOf(Rgb colour) {
  std::ostringstream text;
  text << std::hex << std::setfill('0') << std::setw(6)
       << (colour.red << 16 | colour.green << 8 | colour.blue);
  return text.str();
}

std::string textOf(const Quadrants& picture) {
  return textOf(picture.topLeft) + ' ' + textOf(picture.topRight) + ' ' +
         textOf(picture.bottomLeft) + ' ' + textOf(picture.bottomRight);
}

std::string textOf(int a, int b) { return std::to_string(a) + ' ' + std::to_string(b); }

}  // namespace

NativeWindow::NativeWindow(const std::vector<std::string>& environment, const Options& options)
    : program_("a native window", VISTREL_NATIVE_WINDOW,
               {options.applicationId, options.isDecorated ? "decorated" : "bare"}, environment) {
  setTitle(options.title);
  resize(options.width, options.height);
  show(options.picture);
  program_.tell("appear");
}

void NativeWindow::show(const Quadrants& picture) { program_.tell("show " + textOf(picture)); }

void NativeWindow::paint(Rect part, Rgb colour) {
  program_.tell("paint " + textOf(part.x, part.y) + ' ' + textOf(part.width, part.height) + ' ' +
                textOf(colour));
}

void NativeWindow::resize(int width, int height) {
  program_.tell("resize " + textOf(width, height));
}

void NativeWindow::setTitle(const std::string& title) { program_.tell("title " + title); }

void NativeWindow::minimise() { program_.tell("minimise"); }

void NativeWindow::maximise(bool isMaximised) {
  program_.tell(isMaximised ? "maximise" : "unmaximise");
}

void NativeWindow::fillScreen(bool isFullScreen) {
  program_.tell(isFullScreen ? "fill" : "unfill");
}

bool NativeWindow::isActive() { return program_.tell("active") == "1"; }

bool NativeWindow::hasPointer() { return program_.tell("pointer") == "1"; }

int NativeWindow::pressedButtons() { return std::stoi(program_.tell("buttons")); }

int NativeWindow::typedKeys() { return std::stoi(program_.tell("keys")); }

void NativeWindow::close() {
  program_.tell("close");
  program_.waitForEnd();
}

}  // namespace vistrel::testbed
