#include "macOS/MacFoundation.h"

#import <CoreFoundation/CoreFoundation.h>

#include <cstring>

namespace vantro::mac {

NSString* toNSString(std::string_view text) {
    NSString* string = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
    return string ? string : @"";
}

std::string toString(NSString* _Nullable text) {
    if (!text) return {};
    const char* utf8 = text.UTF8String;
    return utf8 ? std::string(utf8) : std::string();
}

std::optional<std::string> toOptionalString(NSString* _Nullable text) {
    if (!text) return std::nullopt;
    return toString(text);
}

std::optional<std::string_view> toOptionalView(NSString* _Nullable text, std::string& storage) {
    if (!text) return std::nullopt;
    storage = toString(text);
    return std::string_view(storage);
}

std::vector<std::string> toStrings(NSArray* _Nullable strings) {
    std::vector<std::string> result;
    for (id item in strings)
        if ([item isKindOfClass:[NSString class]]) result.push_back(toString(item));
    return result;
}

NSArray<NSString*>* toNSArray(const std::vector<std::string>& strings) {
    NSMutableArray<NSString*>* array = [NSMutableArray arrayWithCapacity:strings.size()];
    for (const auto& string : strings) [array addObject:toNSString(string)];
    return array;
}

namespace {

bool isBoolean(NSNumber* number) {
    return CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID();
}

bool isReal(NSNumber* number) {
    const char* type = number.objCType;
    return std::strcmp(type, @encode(double)) == 0 || std::strcmp(type, @encode(float)) == 0;
}

}  // namespace

Value toValue(id _Nullable object) {
    if (!object || [object isKindOfClass:[NSNull class]]) return Value();
    if ([object isKindOfClass:[NSString class]]) return Value(toString(object));
    if ([object isKindOfClass:[NSNumber class]]) {
        NSNumber* number = object;
        if (isBoolean(number)) return Value(static_cast<bool>(number.boolValue));
        if (isReal(number)) return Value(number.doubleValue);
        return Value(static_cast<long long>(number.longLongValue));
    }
    if ([object isKindOfClass:[NSData class]]) {
        NSData* data = object;
        const auto* bytes = static_cast<const std::uint8_t*>(data.bytes);
        return Value(Data{std::vector<std::uint8_t>(bytes, bytes + data.length)});
    }
    if ([object isKindOfClass:[NSDate class]]) return Value(static_cast<NSDate*>(object).timeIntervalSinceReferenceDate);
    if ([object isKindOfClass:[NSArray class]]) {
        Value::Array array;
        for (id item in static_cast<NSArray*>(object)) array.push_back(toValue(item));
        return Value(std::move(array));
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        Value::Dictionary dictionary;
        NSDictionary* source = object;
        for (id key in source)
            if ([key isKindOfClass:[NSString class]]) dictionary.emplace(toString(key), toValue(source[key]));
        return Value(std::move(dictionary));
    }
    return Value();
}

id _Nullable toFoundation(const Value& value) {
    switch (value.type()) {
    case Value::Type::Null: return nil;
    case Value::Type::Boolean: return @(value.boolValue());
    case Value::Type::Integer: return @(static_cast<long long>(value.integerValue()));
    case Value::Type::Real: return @(value.doubleValue());
    case Value::Type::String: return toNSString(*value.stringPointer());
    case Value::Type::Data: {
        const auto& bytes = value.data()->bytes;
        return [NSData dataWithBytes:bytes.data() length:bytes.size()];
    }
    case Value::Type::Array: {
        NSMutableArray* array = [NSMutableArray array];
        for (const auto& item : *value.array()) {
            id object = toFoundation(item);
            [array addObject:object ? object : [NSNull null]];
        }
        return array;
    }
    case Value::Type::Dictionary: {
        NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
        for (const auto& [key, item] : *value.dictionary()) {
            id object = toFoundation(item);
            if (object) dictionary[toNSString(key)] = object;
        }
        return dictionary;
    }
    }
    return nil;
}

PlatformError toPlatformError(NSError* error) {
    PlatformError result;
    result.domain = toString(error.domain);
    result.code = error.code;
    id underlying = error.userInfo[NSUnderlyingErrorKey];
    if ([underlying isKindOfClass:[NSError class]])
        result.underlying = std::make_shared<const PlatformError>(toPlatformError(underlying));
    return result;
}

}  // namespace vantro::mac
