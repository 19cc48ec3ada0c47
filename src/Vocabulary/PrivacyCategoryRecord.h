#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Platform/Observation.h"
#include "Platform/Value.h"

namespace vantro {

// The permission list's mutable, observable record of one category, keyed by
// PrivacyCategoryIdentifierKey, PrivacyCategoryLabelKey, PrivacyCategoryReasonKey
// and PrivacyCategoryStatusKey. Every set announces its key, even when the value
// is equal to the one it replaces: rows learn of each refresh that way.
class PrivacyCategoryRecord : public Observable {
public:
    PrivacyCategoryRecord() = default;
    explicit PrivacyCategoryRecord(Value::Dictionary contents) : contents_(std::move(contents)) {}

    void setValueForKey(std::string_view key, Value value);
    // The value under `key`, nullptr when the key is absent.
    const Value* valueForKey(std::string_view key) const;
    bool hasKey(std::string_view key) const { return valueForKey(key) != nullptr; }
    const Value::Dictionary& contents() const { return contents_; }

    std::string observableName() const override { return "NSMutableDictionary"; }

private:
    Value::Dictionary contents_;
};

using PrivacyCategoryRecordPtr = std::shared_ptr<PrivacyCategoryRecord>;

}  // namespace vantro
