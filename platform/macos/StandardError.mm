#include "platform/macos/StandardError.h"

#import <Foundation/Foundation.h>

#include <csignal>

namespace vistrel::platform::macos {

void StandardError::write(const std::string& text) {
  @autoreleasepool {
    NSData* bytes = [NSData dataWithBytes:text.data() length:text.size()];
    // Writing to a pipe that nobody reads would end the process.
    const auto former = std::signal(SIGPIPE, SIG_IGN);
    [NSFileHandle.fileHandleWithStandardError writeData:bytes error:nil];
    std::signal(SIGPIPE, former);
  }
}

}  // namespace vistrel::platform::macos
