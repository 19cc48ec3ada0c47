#include "Vocabulary/PrivacyCategoryRecord.h"

namespace vantro {

void PrivacyCategoryRecord::setValueForKey(std::string_view key, Value value) {
    contents_.insert_or_assign(std::string(key), std::move(value));
    didChangeValueForKey(key);
}

const Value* PrivacyCategoryRecord::valueForKey(std::string_view key) const {
    auto it = contents_.find(key);
    return it == contents_.end() ? nullptr : &it->second;
}

}  // namespace vantro
