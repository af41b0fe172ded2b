#include "platform/linux/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace vistrel::platform::linux_desktop {
namespace {

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
  return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0;
}

/// What may follow a lead byte (Unicode, table 3-7): the range of the second byte keeps out
/// overlong forms, surrogates and values past U+10FFFF.
struct SequenceForm {
  std::size_t length = 0;  // 0: no character begins with such a byte
  std::uint8_t secondLowest = 0x80;
  std::uint8_t secondHighest = 0xBF;
};

SequenceForm formOf(std::uint8_t lead) {
  if (lead < 0x80) return {1};
  if (lead < 0xC2) return {};
  if (lead < 0xE0) return {2};
  if (lead < 0xF0) {
    return {3, std::uint8_t(lead == 0xE0 ? 0xA0 : 0x80), std::uint8_t(lead == 0xED ? 0x9F : 0xBF)};
  }
  if (lead > 0xF4) return {};
  return {4, std::uint8_t(lead == 0xF0 ? 0x90 : 0x80), std::uint8_t(lead == 0xF4 ? 0x8F : 0xBF)};
}

/// How many bytes at the start belong together: a whole character, or the longest part of one.
struct Prefix {
  std::size_t length;
  bool isWhole;
};

Prefix firstSequence(std::string_view bytes) {
  const auto form = formOf(byteAt(bytes, 0));
  if (form.length < 2) return {1, form.length == 1};
  const auto second = byteAt(bytes, 1);
  if (second < form.secondLowest || second > form.secondHighest) return {1, false};
  std::size_t length = 2;
  while (length < form.length && (byteAt(bytes, length) & 0xC0) == 0x80) ++length;
  return {length, length == form.length};
}

}  // namespace

std::string repairedUtf8(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const auto prefix = firstSequence(bytes);
    text += prefix.isWhole ? bytes.substr(0, prefix.length) : replacementCharacter;
    bytes.remove_prefix(prefix.length);
  }
  return text;
}

}  // namespace vistrel::platform::linux_desktop
