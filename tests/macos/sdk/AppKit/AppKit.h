#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>
#import <QuartzCore/QuartzCore.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;
@class NSView;

typedef NSString* NSAppearanceName;
typedef NSString* NSWindowFrameAutosaveName;
typedef CGFloat NSFontWeight;
typedef NSInteger NSWindowLevel;

extern "C" {
extern NSAppearanceName const NSAppearanceNameDarkAqua;
extern NSAttributedStringKey const NSFontAttributeName;
extern NSAttributedStringKey const NSForegroundColorAttributeName;
extern NSAttributedStringKey const NSParagraphStyleAttributeName;
extern const NSFontWeight NSFontWeightRegular;
extern const NSFontWeight NSFontWeightSemibold;
extern const NSFontWeight NSFontWeightBold;
}

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskBorderless = 0,
  NSWindowStyleMaskTitled = 1,
  NSWindowStyleMaskClosable = 2,
  NSWindowStyleMaskMiniaturizable = 4,
  NSWindowStyleMaskResizable = 8,
  NSWindowStyleMaskNonactivatingPanel = 128,
};

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
  NSWindowCollectionBehaviorDefault = 0,
  NSWindowCollectionBehaviorCanJoinAllSpaces = 1,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 256,
};

typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
  NSEventModifierFlagShift = 131072,
  NSEventModifierFlagControl = 262144,
  NSEventModifierFlagOption = 524288,
  NSEventModifierFlagCommand = 1048576,
};

typedef NS_OPTIONS(unsigned long long, NSEventMask) { NSEventMaskAny = 0xFFFFFFFFFFFFFFFF };

typedef NS_ENUM(NSUInteger, NSBackingStoreType) { NSBackingStoreBuffered = 2 };

typedef NS_ENUM(NSUInteger, NSBezelStyle) { NSBezelStyleRounded = 1 };

typedef NS_ENUM(NSUInteger, NSImageScaling) { NSImageScaleProportionallyDown = 0 };

typedef NS_ENUM(NSUInteger, NSLineBreakMode) {
  NSLineBreakByWordWrapping = 0,
  NSLineBreakByTruncatingTail = 4,
};

typedef NS_ENUM(NSInteger, NSTextAlignment) {
  NSTextAlignmentLeft = 0,
  NSTextAlignmentCenter = 1,
};

typedef NS_OPTIONS(NSInteger, NSStringDrawingOptions) {
  NSStringDrawingUsesLineFragmentOrigin = 1,
  NSStringDrawingTruncatesLastVisibleLine = 32,
};

typedef NS_ENUM(NSUInteger, NSCompositingOperation) { NSCompositingOperationSourceOver = 2 };

@interface NSColor : NSObject
+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha;
@property(class, strong, readonly) NSColor* labelColor;
@property(class, strong, readonly) NSColor* secondaryLabelColor;
@property(class, strong, readonly) NSColor* systemRedColor;
@property(class, strong, readonly) NSColor* systemGreenColor;
@property(readonly) CGColorRef CGColor;
- (void)setStroke;
@end

@interface NSFont : NSObject
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
@end

@interface NSParagraphStyle : NSObject
@end

@interface NSMutableParagraphStyle : NSParagraphStyle
@property NSTextAlignment alignment;
@property NSLineBreakMode lineBreakMode;
@end

@interface NSAttributedString (NSStringDrawing)
- (NSSize)size;
- (NSRect)boundingRectWithSize:(NSSize)size options:(NSStringDrawingOptions)options;
- (void)drawWithRect:(NSRect)rect options:(NSStringDrawingOptions)options;
@end

@interface NSBezierPath : NSObject
+ (NSBezierPath*)bezierPath;
@property CGFloat lineWidth;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)stroke;
@end

@interface NSCursor : NSObject
@property(class, readonly, strong) NSCursor* arrowCursor;
@property(class, readonly, strong) NSCursor* crosshairCursor;
@end

@interface NSAppearance : NSObject
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end

@interface NSEvent : NSObject
@property(class, readonly) NSPoint mouseLocation;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) NSPoint locationInWindow;
@property(readonly) NSInteger clickCount;
@end

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
+ (instancetype)configurationWithPaletteColors:(NSArray<NSColor*>*)paletteColors;
@end

typedef NSString* NSImageHintKey;

@interface NSImage : NSObject
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@property(readonly) NSSize size;
- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)fromRect
         operation:(NSCompositingOperation)operation
          fraction:(CGFloat)fraction
    respectFlipped:(BOOL)respectFlipped
             hints:(nullable NSDictionary<NSImageHintKey, id>*)hints;
@end

typedef NSString* NSAccessibilityRole;

extern "C" {
extern NSAccessibilityRole const NSAccessibilityImageRole;
extern NSAccessibilityRole const NSAccessibilityGrowAreaRole;
}

@protocol NSAccessibility <NSObject>
@property(getter=isAccessibilityElement) BOOL accessibilityElement;
@property(nullable, copy) NSAccessibilityRole accessibilityRole;
@property(nullable, copy) NSString* accessibilityLabel;
- (BOOL)accessibilityPerformIncrement;
- (BOOL)accessibilityPerformDecrement;
- (BOOL)isAccessibilitySelectorAllowed:(SEL)selector;
@end

typedef NSString* NSUserInterfaceItemIdentifier;

@protocol NSUserInterfaceItemIdentification <NSObject>
@property(nullable, copy) NSUserInterfaceItemIdentifier identifier;
@end

@interface NSResponder : NSObject
@property(nullable, assign) NSResponder* nextResponder;
- (void)mouseDown:(NSEvent*)event;
- (void)mouseDragged:(NSEvent*)event;
- (void)mouseUp:(NSEvent*)event;
@end

@interface NSView : NSResponder <NSAccessibility, NSUserInterfaceItemIdentification>
- (instancetype)initWithFrame:(NSRect)frameRect;
@property NSRect frame;
@property(getter=isHidden) BOOL hidden;
@property(readonly, getter=isFlipped) BOOL flipped;
@property BOOL needsDisplay;
@property(nullable, readonly, assign) NSView* superview;
@property(copy) NSArray<__kindof NSView*>* subviews;
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
@property(readonly) BOOL wantsUpdateLayer;
@property(nullable, copy) NSString* toolTip;
@property BOOL translatesAutoresizingMaskIntoConstraints;
@property(readonly) NSSize intrinsicContentSize;
- (void)layout;
- (void)updateLayer;
- (void)drawRect:(NSRect)dirtyRect;
- (CALayer*)makeBackingLayer;
- (void)resetCursorRects;
- (nullable NSMenu*)menuForEvent:(NSEvent*)event;
- (void)addCursorRect:(NSRect)rect cursor:(NSCursor*)object;
- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event;
@end

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property(copy) NSString* stringValue;
@property(nullable, strong) NSFont* font;
@property NSTextAlignment alignment;
@property NSLineBreakMode lineBreakMode;
@end

@interface NSTextField : NSControl
+ (instancetype)labelWithString:(NSString*)stringValue;
@property(nullable, copy) NSColor* textColor;
@property NSInteger maximumNumberOfLines;
@end

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action;
@property(copy) NSString* title;
@property(copy) NSAttributedString* attributedTitle;
@property(getter=isBordered) BOOL bordered;
@property NSBezelStyle bezelStyle;
@property(copy) NSString* keyEquivalent;
@end

@interface NSImageView : NSControl
@property(nullable, strong) NSImage* image;
@property(nullable, copy) NSColor* contentTintColor;
@property NSImageScaling imageScaling;
@end

@protocol NSWindowDelegate <NSObject>
@optional
- (void)windowDidMove:(NSNotification*)notification;
- (void)windowDidResize:(NSNotification*)notification;
- (void)windowDidChangeBackingProperties:(NSNotification*)notification;
- (void)windowWillClose:(NSNotification*)notification;
@end

@interface NSWindow : NSResponder <NSAccessibility>
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag;
- (NSRect)frameRectForContentRect:(NSRect)contentRect;
- (NSRect)contentRectForFrameRect:(NSRect)frameRect;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
- (void)setFrame:(NSRect)frameRect display:(BOOL)displayFlag animate:(BOOL)animateFlag;
- (void)setFrameOrigin:(NSPoint)point;
@property(readonly) NSRect frame;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(nullable, strong) __kindof NSView* contentView;
@property(copy) NSString* title;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property BOOL hidesOnDeactivate;
@property(getter=isOpaque) BOOL opaque;
@property(nullable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(nullable, strong) NSAppearance* appearance;
@property NSSize contentMinSize;
@property(readonly) BOOL canBecomeKeyWindow;
- (void)center;
- (BOOL)setFrameUsingName:(NSWindowFrameAutosaveName)name;
- (BOOL)setFrameAutosaveName:(NSWindowFrameAutosaveName)name;
- (void)orderFrontRegardless;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderOut:(nullable id)sender;
- (void)miniaturize:(nullable id)sender;
- (void)close;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@end

NS_ASSUME_NONNULL_END

#import <AppKit/NSAccessibilityConstants.h>
#import <AppKit/NSAlert.h>
#import <AppKit/NSApplication.h>
#import <AppKit/NSLayoutConstraint.h>
#import <AppKit/NSMenu.h>
#import <AppKit/NSMenuItem.h>
#import <AppKit/NSRunningApplication.h>
#import <AppKit/NSScreen.h>
#import <AppKit/NSScrollView.h>
#import <AppKit/NSTableView.h>
#import <AppKit/NSWorkspace.h>
