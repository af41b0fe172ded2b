#include "platform/linux/x11/server/PictureFormats.h"

#include <algorithm>
#include <vector>

namespace vistrel::platform::linux_desktop {
namespace {

using Format = xcb_render_pictforminfo_t;

std::vector<Format> directFormats(const xcb_render_query_pict_formats_reply_t& reply) {
  const auto* first = xcb_render_query_pict_formats_formats(&reply);
  std::vector<Format> formats(first, first + reply.num_formats);
  std::erase_if(formats,
                [](const Format& each) { return each.type != XCB_RENDER_PICT_TYPE_DIRECT; });
  return formats;
}

bool sameColors(const Format& a, const Format& b) {
  return a.depth == b.depth && a.direct.red_shift == b.direct.red_shift &&
         a.direct.red_mask == b.direct.red_mask && a.direct.green_shift == b.direct.green_shift &&
         a.direct.green_mask == b.direct.green_mask && a.direct.blue_shift == b.direct.blue_shift &&
         a.direct.blue_mask == b.direct.blue_mask;
}

bool hasEightBitColors(const Format& each) {
  const auto& direct = each.direct;
  return direct.red_shift == 16 && direct.red_mask == 0xff && direct.green_shift == 8 &&
         direct.green_mask == 0xff && direct.blue_shift == 0 && direct.blue_mask == 0xff;
}

template <class Predicate>
xcb_render_pictformat_t idOfFirst(const std::vector<Format>& formats, Predicate matches) {
  const auto found = std::find_if(formats.begin(), formats.end(), matches);
  return found == formats.end() ? static_cast<xcb_render_pictformat_t>(XCB_NONE) : found->id;
}

xcb_render_pictformat_t withoutAlpha(const std::vector<Format>& formats,
                                     xcb_render_pictformat_t id) {
  const auto with = std::find_if(formats.begin(), formats.end(),
                                 [&](const Format& each) { return each.id == id; });
  if (with == formats.end() || with->direct.alpha_mask == 0) return id;
  const auto without = idOfFirst(formats, [&](const Format& each) {
    return each.direct.alpha_mask == 0 && sameColors(each, *with);
  });
  return without == XCB_NONE ? id : without;
}

template <class Visit>
void forEachVisual(const xcb_render_query_pict_formats_reply_t& reply, Visit visit) {
  for (auto screen = xcb_render_query_pict_formats_screens_iterator(&reply); screen.rem;
       xcb_render_pictscreen_next(&screen)) {
    for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem;
         xcb_render_pictdepth_next(&depth)) {
      const auto* visuals = xcb_render_pictdepth_visuals(depth.data);
      std::for_each(visuals, visuals + depth.data->num_visuals, visit);
    }
  }
}

}  // namespace

PictureFormats pictureFormats(const xcb_render_query_pict_formats_reply_t& reply) {
  const auto formats = directFormats(reply);
  PictureFormats result;
  result.alphaMask = idOfFirst(formats, [](const Format& each) {
    return each.depth == 8 && each.direct.alpha_mask == 0xff && each.direct.red_mask == 0;
  });
  result.opaque = idOfFirst(formats, [](const Format& each) {
    return each.depth == 24 && hasEightBitColors(each) && each.direct.alpha_mask == 0;
  });
  result.translucent = idOfFirst(formats, [](const Format& each) {
    return each.depth == 32 && hasEightBitColors(each) && each.direct.alpha_mask == 0xff &&
           each.direct.alpha_shift == 24;
  });
  forEachVisual(reply, [&](const xcb_render_pictvisual_t& visual) {
    result.ofVisual[visual.visual] = visual.format;
    result.opaqueOfVisual[visual.visual] = withoutAlpha(formats, visual.format);
  });
  return result;
}

}  // namespace vistrel::platform::linux_desktop
