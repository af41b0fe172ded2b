#include "platform/linux/x11/server/TextDecoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/linux/Utf8.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr char escape = '\x1b';

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
  return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0;
}

void appendLatin1(std::string& text, std::uint8_t byte) {
  if (byte < 0x80) {
    text += static_cast<char>(byte);
  } else {
    text += static_cast<char>(0xC0 | (byte >> 6));
    text += static_cast<char>(0x80 | (byte & 0x3F));
  }
}

/// Reads Compound Text segment by segment. Each half of the code table has a character set, which
/// an escape sequence designates: ESC, intermediate bytes 0x20–0x2F, a final byte.
class CompoundTextReader {
 public:
  explicit CompoundTextReader(std::string_view bytes) : rest_(bytes) {}

  std::string read() {
    while (!rest_.empty()) {
      if (rest_.front() == escape) {
        readEscape();
      } else {
        readCharacter();
      }
    }
    return text_;
  }

 private:
  struct CharacterSet {
    bool isKnown = true;
    std::size_t bytesPerCharacter = 1;
  };

  void readEscape() {
    std::size_t end = 1;
    while (byteAt(rest_, end) >= 0x20 && byteAt(rest_, end) <= 0x2F) ++end;
    const auto intermediate = rest_.substr(1, end - 1);
    const char final = static_cast<char>(byteAt(rest_, end));
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (intermediate == "%" && final == 'G') {
      readUtf8Segment();
    } else if (intermediate == "%/") {
      skipExtendedSegment();
    } else if (!intermediate.empty() && intermediate.front() == '$') {
      designate(intermediate.substr(1), {false, 2});
    } else if (intermediate == "(") {
      left_ = {final == 'B' || final == 'J'};
    } else if (intermediate == "-") {
      right_ = {final == 'A'};
    } else if (intermediate == ")") {
      right_ = {false};
    }
  }

  void designate(std::string_view half, CharacterSet set) { (half == ")" ? right_ : left_) = set; }

  void readUtf8Segment() {
    constexpr std::string_view endOfSegment = "\x1b%@";
    const auto end = std::min(rest_.find(endOfSegment), rest_.size());
    text_ += repairedUtf8(rest_.substr(0, end));
    rest_.remove_prefix(std::min(end + endOfSegment.size(), rest_.size()));
  }

  /// Text in an encoding of its own, after two bytes that carry seven bits each of its length.
  void skipExtendedSegment() {
    const std::size_t length = (byteAt(rest_, 0) & 0x7Fu) * 128 + (byteAt(rest_, 1) & 0x7Fu);
    text_ += replacementCharacter;
    rest_.remove_prefix(std::min(2 + length, rest_.size()));
  }

  void readCharacter() {
    const auto byte = byteAt(rest_, 0);
    const bool isControl = (byte & 0x7F) < 0x20;
    const auto& set = byte < 0x80 ? left_ : right_;
    if (set.isKnown || isControl || byte == ' ') {
      appendLatin1(text_, byte);
      rest_.remove_prefix(1);
    } else {
      text_ += replacementCharacter;
      rest_.remove_prefix(std::min(set.bytesPerCharacter, rest_.size()));
    }
  }

  std::string_view rest_;
  std::string text_;
  CharacterSet left_;   // ASCII at first
  CharacterSet right_;  // Latin-1 at first
};

}  // namespace

std::string utf8FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char each : bytes) appendLatin1(text, static_cast<std::uint8_t>(each));
  return text;
}

std::string utf8FromCompoundText(std::string_view bytes) {
  return CompoundTextReader(bytes).read();
}

std::string_view upToNull(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

}  // namespace vistrel::platform::linux_desktop
