// Stand-in used only by the Mac shell type-check. GNUstep's headers include
// <objc/runtime.h>; the one GCC ships does not parse under ARC, so this file
// declares the few runtime types and functions that GNUstep's headers and the
// shell's sources use, with the signatures of Apple's <objc/runtime.h>.
//
// Checked against developer.apple.com/documentation/objectivec/objective-c-runtime
// (each function's own page) and the objc4 open-source runtime.h for
// nullability. objc_getClass returns `Class _Nullable` in objc4's header; its
// documentation page still shows the older unannotated `id` form.
#ifndef VANTRO_MACSHELL_OBJC_RUNTIME_H
#define VANTRO_MACSHELL_OBJC_RUNTIME_H

#include <objc/objc.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct objc_ivar *Ivar;
typedef struct objc_method *Method;
typedef struct objc_property *objc_property_t;
typedef struct objc_category *Category;

struct objc_method_description {
    SEL _Nullable name;
    char *_Nullable types;
};

#pragma clang assume_nonnull begin

Class _Nullable object_getClass(id _Nullable obj);
const char *object_getClassName(id _Nullable obj);

const char *sel_getName(SEL sel);
SEL sel_registerName(const char *str);
SEL sel_getUid(const char *str);
BOOL sel_isEqual(SEL lhs, SEL rhs);

const char *class_getName(Class _Nullable cls);
Class _Nullable class_getSuperclass(Class _Nullable cls);
BOOL class_isMetaClass(Class _Nullable cls);
BOOL class_respondsToSelector(Class _Nullable cls, SEL sel);
IMP _Nullable class_getMethodImplementation(Class _Nullable cls, SEL name);
size_t class_getInstanceSize(Class _Nullable cls);

Class _Nullable objc_getClass(const char *name);
Class _Nullable objc_lookUpClass(const char *name);

// Associated objects (10.6). Checked against
// developer.apple.com/documentation/objectivec/objc_setassociatedobject(_:_:_:_:)
// (`(Any, UnsafeRawPointer, Any?, objc_AssociationPolicy)`: the object and key
// non-null, the value nullable), .../objc_getassociatedobject(_:_:) and
// .../objc_associationpolicy (ASSIGN, RETAIN_NONATOMIC, COPY_NONATOMIC, RETAIN,
// COPY); the values 0, 1, 3, 01401 and 01403 and the uintptr_t underlying type
// from docs.rs objc-sys (OBJC_ASSOCIATION_RETAIN_NONATOMIC = 1) and the objc4
// runtime.h text quoted in public write-ups (unconfirmed against an Apple page).
typedef enum objc_AssociationPolicy : uintptr_t {
    OBJC_ASSOCIATION_ASSIGN = 0,
    OBJC_ASSOCIATION_RETAIN_NONATOMIC = 1,
    OBJC_ASSOCIATION_COPY_NONATOMIC = 3,
    OBJC_ASSOCIATION_RETAIN = 01401,
    OBJC_ASSOCIATION_COPY = 01403
} objc_AssociationPolicy;

void objc_setAssociatedObject(id object, const void *key, id _Nullable value, objc_AssociationPolicy policy);
id _Nullable objc_getAssociatedObject(id object, const void *key);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif

#endif
