#pragma once

#import <AppKit/AppKit.h>
#import <CoreImage/CoreImage.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

// What behaviours of the fakes keep in an object beside the properties that everybody sees, and
// which of those that everybody reads they write. "keep…" sets a property of the program's without
// being told of, as the framework does.

@interface NSDate ()
/// In seconds since the reference date.
@property NSTimeInterval moment;
@end

@interface NSError ()
@property(readwrite, copy) NSString* localizedDescription;
@end

@interface NSData ()
@property(copy) NSString* text;
@end

@interface NSMethodSignature ()
/// In the format of the runtime's method_getTypeEncoding.
- (instancetype)initWithTypes:(const char*)types;
- (NSUInteger)numberOfArguments;
@end

@interface NSURL ()
@property(copy) NSString* text;
@end

@interface NSTimer ()
@property(readwrite) NSTimeInterval timeInterval;
@property NSTimeInterval delay;
@property(copy) void (^block)(NSTimer*);
@property BOOL repeats;
@end

@interface NSColor ()
/// "label", "systemRed" or, of no theme, the parts in the order red, green, blue, alpha.
@property(copy) NSString* name;
@end

@interface NSImage ()
@property(copy) NSString* name;
@end

@interface NSEvent ()
@property(readwrite) NSEventModifierFlags modifierFlags;
@property(readwrite) NSPoint locationInWindow;
@property(readwrite) NSInteger clickCount;
@end

@interface NSScreen ()
@property(readwrite) NSRect frame;
@property(readwrite) NSRect visibleFrame;
@property(readwrite) CGFloat backingScaleFactor;
@end

@interface NSAttributedString ()
@property(copy) NSString* text;
@end

@interface CALayer ()
@property(strong) id background;
@property(strong) id border;
@end

@interface NSView ()
- (void)keepFrame:(NSRect)frame;
- (void)keepLayer:(CALayer*)layer;
- (void)keepNeedsDisplay:(BOOL)needsDisplay;
- (void)keepSubviews:(NSArray<NSView*>*)subviews;
@property(readwrite, assign) NSView* superview;
/// Of a content view alone.
@property(assign) NSWindow* windowShowingIt;
@property(strong) NSMutableArray<NSLayoutConstraint*>* activeConstraints;
@end

@interface NSLayoutConstraint ()
@property(weak) NSView* firstView;
@property(weak) NSView* secondView;
/// Nil while it is not active.
@property(weak) NSView* holder;
@end

@interface NSWindow ()
- (void)keepContentView:(NSView*)view;
- (void)keepLevel:(NSWindowLevel)level;
- (void)keepReleasedWhenClosed:(BOOL)released;
- (void)keepHidesOnDeactivate:(BOOL)hides;
@property(readwrite) NSRect frame;
@property NSWindowStyleMask styleMask;
@property BOOL isShown;
@property BOOL isKey;
@property BOOL isMiniaturized;
@end

@interface NSPanel ()
- (void)keepFloatingPanel:(BOOL)floating;
@end

@interface NSResponder ()
- (void)keepNextResponder:(NSResponder*)responder;
@end

@interface NSControl ()
- (void)keepTarget:(id)target;
- (void)keepAction:(SEL)action;
- (void)keepStringValue:(NSString*)text;
@end

@interface NSButton ()
- (void)keepTitle:(NSString*)title;
@end

@interface NSApplication ()
@property BOOL isFinishedLaunching;
@property BOOL isActive;
@property BOOL isHidden;
@end

@interface NSMenuItem ()
- (void)keepAction:(SEL)action;
- (void)keepEnabled:(BOOL)enabled;
@property(copy) NSString* title;
@property(copy) NSString* keyEquivalent;
@property BOOL isSeparator;
@property(assign) NSMenu* menu;
@end

@interface NSMenu ()
- (void)keepAutoenablesItems:(BOOL)autoenables;
@property(copy) NSString* title;
@property(strong) NSMutableArray<NSMenuItem*>* items;
@end

@interface NSTableColumn ()
@property(copy) NSString* identifier;
@end

@interface NSTableView ()
@property(readwrite) NSInteger selectedRow;
@property(strong) NSMutableArray<NSTableColumn*>* columns;
@property(strong) NSMutableArray<NSView*>* rowViews;
/// Of rows that have gone.
@property(strong) NSMutableArray<NSView*>* reusableViews;
@property BOOL isStale;
@end

@interface NSAlert ()
@property(strong) NSMutableArray<NSString*>* buttonTitles;
@end

@interface SCRunningApplication ()
@property(readwrite, copy) NSString* applicationName;
@property(readwrite) pid_t processID;
@end

@interface SCWindow ()
@property(readwrite) CGWindowID windowID;
@property(readwrite) CGRect frame;
@property(readwrite, copy) NSString* title;
@property(readwrite) NSInteger windowLayer;
@property(readwrite, strong) SCRunningApplication* owningApplication;
@property(readwrite, getter=isOnScreen) BOOL onScreen;
@end

@interface SCShareableContent ()
@property(readwrite, strong) NSArray<SCWindow*>* windows;
@end

@interface SCContentFilter ()
@property(strong) SCWindow* window;
@end

@interface SCStream ()
@property(strong) SCContentFilter* filter;
@property(strong) SCStreamConfiguration* configuration;
@property(weak) id<SCStreamDelegate> delegate;
@property(weak) id<SCStreamOutput> output;
@property(strong) dispatch_queue_t sampleHandlerQueue;
@property BOOL isCapturing;
@end

@interface CIImage ()
@property(readwrite) CGRect extent;
@property(strong) id buffer;
@end
