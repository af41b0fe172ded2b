#include <cstdint>

// Objective-C++ names a personality of its own in its frames. Nothing here throws Objective-C
// objects, so that C++'s does for what is thrown.

extern "C" {

int __gxx_personality_v0(int version, int actions, std::uint64_t kind, void* exception,
                         void* context);

int __gnustep_objcxx_personality_v0(int version, int actions, std::uint64_t kind, void* exception,
                                    void* context) {
  return __gxx_personality_v0(version, actions, kind, exception, context);
}
}
