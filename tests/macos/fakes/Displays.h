#pragma once

#import <Foundation/Foundation.h>

#import <CoreGraphics/CoreGraphics.h>
#import <dispatch/dispatch.h>

// Displays, and the classes for further ones that no header of the system declares: as they are
// where the program was tried. An object of theirs says what it is told.

@interface CGVirtualDisplayDescriptor : NSObject
@property(nonatomic, strong) dispatch_queue_t queue;
@property(nonatomic, copy) NSString* name;
@property(nonatomic) unsigned int maxPixelsWide;
@property(nonatomic) unsigned int maxPixelsHigh;
@property(nonatomic) CGSize sizeInMillimeters;
@property(nonatomic) unsigned int productID;
@property(nonatomic) unsigned int vendorID;
@property(nonatomic) unsigned int serialNum;
@property(nonatomic, copy) void (^terminationHandler)(void);
@end

@interface CGVirtualDisplayMode : NSObject
@property(nonatomic, readonly) unsigned int width;
@property(nonatomic, readonly) unsigned int height;
@property(nonatomic, readonly) double refreshRate;
- (instancetype)initWithWidth:(unsigned int)width
                       height:(unsigned int)height
                  refreshRate:(double)refreshRate;
@end

@interface CGVirtualDisplaySettings : NSObject
@property(nonatomic) BOOL hiDPI;
@property(nonatomic, copy) NSArray<CGVirtualDisplayMode*>* modes;
@end

/// Takes its display down at a turn of the main loop after its last reference has gone.
@interface CGVirtualDisplay : NSObject
@property(nonatomic, readonly) unsigned int displayID;
- (instancetype)initWithDescriptor:(CGVirtualDisplayDescriptor*)descriptor;
- (BOOL)applySettings:(CGVirtualDisplaySettings*)settings;
@end

namespace vistrel::fake {

/// Between global display space and AppKit's screen space: either way.
CGRect flipped(const CGRect& rect);

/// Takes the displays that programs asked for from them, as the window server does when it ends.
void endVirtualDisplays();

}  // namespace vistrel::fake
