#pragma once

#import <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <type_traits>

namespace vistrel::platform::macos {

struct CFReleaser {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// One owned reference to a Core Foundation object, or to one that follows its rules (images, pixel
/// buffers). Constructing it takes over a reference that a "create" or "copy" function gave.
template <class Ref>
using CFOwned = std::unique_ptr<std::remove_pointer_t<Ref>, CFReleaser>;

/// A reference of our own to an object that somebody else holds.
template <class Ref>
CFOwned<Ref> cfRetained(Ref object) {
  if (object != nullptr) CFRetain(object);
  return CFOwned<Ref>(object);
}

}  // namespace vistrel::platform::macos
