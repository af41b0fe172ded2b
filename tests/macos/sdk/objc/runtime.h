#pragma once

#import <Foundation/Foundation.h>

typedef struct objc_property* objc_property_t;
typedef struct objc_method* Method;

typedef unsigned long objc_AssociationPolicy;
enum : objc_AssociationPolicy {
  OBJC_ASSOCIATION_RETAIN_NONATOMIC = 1,
};

extern "C" {
void objc_setAssociatedObject(id _Nonnull object, const void* _Nonnull key, id _Nullable value,
                              objc_AssociationPolicy policy);
id _Nullable objc_getAssociatedObject(id _Nonnull object, const void* _Nonnull key);
Class _Nullable object_getClass(id _Nullable object);
objc_property_t _Nonnull* _Nullable class_copyPropertyList(Class _Nullable itsClass,
                                                           unsigned int* _Nullable count);
const char* _Nonnull property_getName(objc_property_t _Nonnull property);
const char* _Nullable property_getAttributes(objc_property_t _Nonnull property);
Method _Nonnull* _Nullable class_copyMethodList(Class _Nullable itsClass,
                                                unsigned int* _Nullable count);
SEL _Nonnull method_getName(Method _Nonnull method);
const char* _Nonnull sel_getName(SEL _Nonnull selector);
}
