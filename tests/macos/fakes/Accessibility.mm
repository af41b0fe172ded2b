#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/World.h"

using namespace vistrel;

extern "C" {

const CFStringRef kAXTrustedCheckOptionPrompt =
    (__bridge CFStringRef) @"AXTrustedCheckOptionPrompt";

Boolean AXIsProcessTrusted() { return fake::world().desktop().isAccessibilityAllowed; }

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const bool prompts =
      static_cast<NSNumber*>(((__bridge NSDictionary*)options)[@"AXTrustedCheckOptionPrompt"])
          .longLongValue != 0;
  fake::note(std::string("AXIsProcessTrustedWithOptions prompt:") + (prompts ? "1" : "0"));
  return AXIsProcessTrusted();
}
}
