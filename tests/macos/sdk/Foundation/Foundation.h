#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
// As in C++, where the values of an option set can be combined without a cast.
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type
// For what is newer than the deployment target, as in API_AVAILABLE(macos(14.0)).
#define API_AVAILABLE(system) __attribute__((availability(system)))
#define macos(version) macos, introduced = version
#define YES __objc_yes
#define NO __objc_no
#define nil __null
#define __unused __attribute__((unused))

// The Objective-C runtime's objc.h: a real boolean on arm64 alone.
#if defined(__arm64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef CGRect NSRect;
typedef CGPoint NSPoint;
typedef CGSize NSSize;

NS_ASSUME_NONNULL_BEGIN

@class NSMethodSignature;
@class NSString;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
+ (nullable NSMethodSignature*)instanceMethodSignatureForSelector:(SEL)selector;
- (instancetype)init;
@end

@protocol NSCopying
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

typedef NS_ENUM(NSInteger, NSComparisonResult) {
  NSOrderedAscending = -1,
  NSOrderedSame = 0,
  NSOrderedDescending = 1,
};

@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
@property(readonly, nullable) const char* UTF8String;
- (BOOL)isEqualToString:(NSString*)other;
- (NSComparisonResult)localizedCaseInsensitiveCompare:(NSString*)string;
@end

// The class of string literals.
@interface NSConstantString : NSString
@end

@interface NSValue : NSObject
@property(readonly) const char* objCType;
@end

@interface NSNumber : NSValue
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value;
@property(readonly) double doubleValue;
@property(readonly) long long longLongValue;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property(nullable, readonly) ObjectType firstObject;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nonnull])objects
                           count:(NSUInteger)count;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSFastEnumeration>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const id<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@end

@interface NSFileHandle : NSObject
@property(class, readonly) NSFileHandle* fileHandleWithStandardError;
- (BOOL)writeData:(NSData*)data error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSDate : NSObject
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)secs;
@property(class, readonly) NSTimeInterval timeIntervalSinceReferenceDate;
@end

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end

@interface NSTimer : NSObject
+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)interval
                                   repeats:(BOOL)repeats
                                     block:(void (^)(NSTimer* timer))block;
- (void)invalidate;
@property(readonly, getter=isValid) BOOL valid;
@property(readonly) NSTimeInterval timeInterval;
@end

@interface NSNotification : NSObject
@end

@interface NSMethodSignature : NSObject
- (const char*)getArgumentTypeAtIndex:(NSUInteger)index;
@property(readonly) const char* methodReturnType;
@end

@interface NSInvocation : NSObject
+ (NSInvocation*)invocationWithMethodSignature:(NSMethodSignature*)signature;
@property(readonly, retain) NSMethodSignature* methodSignature;
@property SEL selector;
- (void)retainArguments;
- (void)setArgument:(void*)argument atIndex:(NSInteger)index;
- (void)getReturnValue:(void*)result;
- (void)invokeWithTarget:(id)target;
@end

extern "C" {
Class _Nullable NSClassFromString(NSString* name);
SEL NSSelectorFromString(NSString* name);
}

typedef NSString* NSAttributedStringKey;

@interface NSAttributedString : NSObject
- (instancetype)initWithString:(NSString*)text
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
@end

NS_ASSUME_NONNULL_END

#import <Foundation/NSBundle.h>
#import <Foundation/NSIndexSet.h>
#import <Foundation/NSProcessInfo.h>
#import <Foundation/NSRunLoop.h>
#import <Foundation/NSTask.h>
#import <Foundation/NSURL.h>
