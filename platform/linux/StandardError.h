#pragma once

#include <string_view>

#include "platform/Backend.h"

namespace vistrel::platform::linux_desktop {

/// Gives the standard streams that the process was started without a place where nothing is kept.
/// Otherwise the next descriptor to be opened would get the number of one, and the display server
/// would be sent what is meant for standard error. To be called before any is opened.
void openMissingStandardStreams();

/// Writes all of the text, with one call where the descriptor takes it so, waiting where it takes
/// no more for now. Ends early and silently where the text cannot be written. Main thread.
void writeWhole(int descriptor, std::string_view text);

/// The process's own.
class StandardError final : public StandardErrorBackend {
 public:
  void write(const std::string& text) override;
};

}  // namespace vistrel::platform::linux_desktop
