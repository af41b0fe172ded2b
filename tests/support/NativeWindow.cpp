#include "tests/support/NativeWindow.h"

#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <utility>

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
    : NativeWindow(environment, options, Pipe::open(), Pipe::open()) {}

NativeWindow::NativeWindow(const std::vector<std::string>& environment, const Options& options,
                           Pipe commands, Pipe answers)
    : commands_(std::move(commands.writeEnd)),
      answers_(std::move(answers.readEnd)),
      program_({.arguments = {VISTREL_NATIVE_WINDOW, std::to_string(commands.readEnd.get()),
                              std::to_string(answers.writeEnd.get()), options.applicationId,
                              options.isDecorated ? "decorated" : "bare"},
                .environment = environment,
                .inherited = {commands.readEnd.get(), answers.writeEnd.get()}}) {
  commands.readEnd.close();
  answers.writeEnd.close();
  setTitle(options.title);
  resize(options.width, options.height);
  show(options.picture);
}

void NativeWindow::show(const Quadrants& picture) { tell("show " + textOf(picture)); }

void NativeWindow::paint(Rect part, Rgb colour) {
  tell("paint " + textOf(part.x, part.y) + ' ' + textOf(part.width, part.height) + ' ' +
       textOf(colour));
}

void NativeWindow::resize(int width, int height) { tell("resize " + textOf(width, height)); }

void NativeWindow::setTitle(const std::string& title) { tell("title " + title); }

void NativeWindow::minimise() { tell("minimise"); }

void NativeWindow::maximise(bool isMaximised) { tell(isMaximised ? "maximise" : "unmaximise"); }

void NativeWindow::fillScreen(bool isFullScreen) { tell(isFullScreen ? "fill" : "unfill"); }

int NativeWindow::pressedButtons() { return std::stoi(tell("buttons")); }

int NativeWindow::typedKeys() { return std::stoi(tell("keys")); }

void NativeWindow::close() {
  tell("close");
  static_cast<void>(program_.waitForEnd());
}

std::string NativeWindow::tell(const std::string& command) {
  const std::string line = command + '\n';
  if (::write(commands_.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
    throw std::runtime_error("a native window is gone");
  }
  const std::string answer = readLine(answers_);
  if (answer.empty()) {
    throw std::runtime_error("a native window does not " + command + ": " +
                             program_.standardError());
  }
  return answer;
}

}  // namespace vistrel::testbed
