#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "Platform/Value.h"

namespace vantro {
namespace {

TEST(Value, ReadsNumbersTheFoundationWay) {
    struct Case {
        Value value;
        std::int64_t integer;
    } cases[] = {
        {Value(2), 2},         {Value(-1), -1},         {Value(2.9), 2},      {Value(true), 1},
        {Value("1"), 1},       {Value(" 2"), 2},        {Value("12abc"), 12}, {Value("abc"), 0},
        {Value(""), 0},        {Value(), 0},            {Value(Value::Array{}), 0},
        // Reals outside the 64-bit range are clamped, NaN is 0.
        {Value(-2.9), -2},
        {Value(1e300), INT64_MAX},
        {Value(-1e300), INT64_MIN},
        {Value(9223372036854775808.0), INT64_MAX},
        {Value(-9223372036854775808.0), INT64_MIN},
        {Value(9223372036854774784.0), 9223372036854774784},
        {Value(std::numeric_limits<double>::infinity()), INT64_MAX},
        {Value(-std::numeric_limits<double>::infinity()), INT64_MIN},
        {Value(std::numeric_limits<double>::quiet_NaN()), 0},
        {Value("99999999999999999999"), INT64_MAX},
    };
    for (const auto& c : cases) EXPECT_EQ(c.value.integerValue(), c.integer) << c.value.description();
}

TEST(Value, FollowsKeyPathsThroughDictionaries) {
    Value window(Value::Dictionary{{"kCGWindowBounds", Value(Value::Dictionary{{"Height", Value(580)}})}});
    ASSERT_NE(window.findKeyPath("kCGWindowBounds.Height"), nullptr);
    EXPECT_EQ(window.findKeyPath("kCGWindowBounds.Height")->integerValue(), 580);
    EXPECT_EQ(window.findKeyPath("kCGWindowBounds.Width"), nullptr);
    EXPECT_EQ(window.findKeyPath("kCGWindowName.Height"), nullptr);
    EXPECT_EQ(Value("text").find("key"), nullptr);
}

TEST(Value, DataIsNotAString) {
    Value data(Data{{1, 2, 3}});
    EXPECT_TRUE(data.isData());
    EXPECT_FALSE(data.string().has_value());
    EXPECT_FALSE(Value("bytes").isData());
}

}  // namespace
}  // namespace vantro
