#pragma once

// Crossing between Foundation objects and the seam's values: strings, property
// list values and errors. Every crossing of the Mac shell goes through here.

#import <Foundation/Foundation.h>

#if !__has_feature(objc_arc)
#error "The Mac shell is built with automatic reference counting (-fobjc-arc)"
#endif

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/FileSystem.h"
#include "Platform/Value.h"

NS_ASSUME_NONNULL_BEGIN

namespace vantro::mac {

// An NSString of UTF-8 text; text that is not valid UTF-8 gives the empty
// string, never nil.
NSString* toNSString(std::string_view text);
// The UTF-8 text of a string; nil gives the empty string.
std::string toString(NSString* _Nullable text);
std::optional<std::string> toOptionalString(NSString* _Nullable text);
std::optional<std::string_view> toOptionalView(NSString* _Nullable text, std::string& storage);
std::vector<std::string> toStrings(NSArray* _Nullable strings);
NSArray<NSString*>* toNSArray(const std::vector<std::string>& strings);

// A property-list object (NSString, NSNumber, NSData, NSArray, NSDictionary,
// NSNull, NSDate as its seconds since 2001) as a Value; anything else, and
// nil, as null. Dictionary keys that are not strings are left out.
Value toValue(id _Nullable object);
// A Value as a property-list object; null gives nil.
id _Nullable toFoundation(const Value& value);

// An NSError with the error under NSUnderlyingErrorKey beneath it.
PlatformError toPlatformError(NSError* error);

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
