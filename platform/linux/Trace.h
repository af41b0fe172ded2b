#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/PixelRect.h"

namespace vistrel::platform::linux_desktop {

// For reports from the field: a line on standard error for each decision about a subject that a
// person has asked about (VISTREL_TRACE). It changes nothing else. Titles of windows stay out.

enum class TraceTopic : std::uint8_t { capture, errors, manager, monitors, start, tray };

/// What a person asks for by names of topics between commas or blanks, or by "all".
struct TraceRequest {
  std::set<TraceTopic> topics;
  std::vector<std::string> unknown;
};
TraceRequest parseTraceRequest(std::string_view text);

/// From now on traces what `request` asks for and nothing else, and says in one line which names in
/// it are unknown. Until then nothing is traced; but debug builds trace errors always, since each
/// is a defect. Main thread.
void beginTrace(std::string_view request);

/// Any thread.
bool isTraced(TraceTopic topic);
/// Writes "vistrel: TOPIC: TEXT" in one piece, at most as long as a pipe takes without mixing it
/// with others; control characters, which other programs may have put into a text, as "?". Left out
/// where standard error does not take it in a tenth of a second. Any thread.
void writeTrace(TraceTopic topic, std::string_view text);

/// Writes what `makeText` gives, which is called where the topic is traced only. Any thread.
template <class MakeText>
void trace(TraceTopic topic, const MakeText& makeText) {
  if (isTraced(topic)) writeTrace(topic, makeText());
}

// How traces write what they are about.

/// "window 0x1400007"
std::string windowText(std::uint32_t window);
/// "800x600+10-20", as X writes geometries.
std::string areaText(const PixelRect& area);

}  // namespace vistrel::platform::linux_desktop
