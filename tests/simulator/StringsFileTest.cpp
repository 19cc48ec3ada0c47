#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Simulator/PropertyListFile.h"
#include "Simulator/StringsFile.h"

namespace vantro::sim {
namespace {

TEST(StringsFile, ReadsClassicTables) {
    auto table = StringsFile::parse(
        "/* A comment */\n"
        "\"Grant Permission\" = \"Grant Permission\";\n"
        "// line comment\n"
        "\"quote\" = \"say \\\"hi\\\"\\n\";\n"
        "unquoted = word;\n"
        "\"alone\";\n"
        "\"unicode\" = \"\\U00e9t\\u00E9\";\n"
        "\"CFBundleName\" = \"Sécurité\";");
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->at("Grant Permission").string(), "Grant Permission");
    EXPECT_EQ(table->at("quote").string(), "say \"hi\"\n");
    EXPECT_EQ(table->at("unquoted").string(), "word");
    EXPECT_EQ(table->at("alone").string(), "alone");
    EXPECT_EQ(table->at("unicode").string(), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(table->at("CFBundleName").string(), "Sécurité");
}

TEST(StringsFile, RejectsMalformedTablesWhole) {
    for (const char* text : {"\"a\" = \"b\"", "\"a\" = ;", "\"a\" \"b\";", "/* open", "\"a\" = \"unterminated;",
                             "\"a\" = \"\\U12\";", "= \"b\";"}) {
        EXPECT_FALSE(StringsFile::parse(text).has_value()) << text;
    }
    EXPECT_TRUE(StringsFile::parse("").has_value());
    EXPECT_TRUE(StringsFile::parse("  /* only a comment */ ").has_value());
}

TEST(StringsFile, ReadsUTF16WithAByteOrderMark) {
    std::string little("\xFF\xFE", 2), big("\xFE\xFF", 2);
    for (char c : std::string("\"k\" = \"\xE4\";")) {
        // Latin-1 0xE4 is "ä": write each character as one UTF-16 unit.
        unsigned char u = static_cast<unsigned char>(c);
        little += static_cast<char>(u), little += '\0';
        big += '\0', big += static_cast<char>(u);
    }
    for (const auto& bytes : {little, big}) {
        auto table = StringsFile::parse(bytes);
        ASSERT_TRUE(table.has_value());
        EXPECT_EQ(table->at("k").string(), "\xC3\xA4");
    }
}

TEST(PropertyListFile, ReadsXMLPlistsAndFallsBackToStrings) {
    auto plist = PropertyListFile::parse(
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>n</key><integer>-1</integer>"
        "<key>s</key><string>x</string><key>d</key><data>AQI=</data></dict></plist>");
    ASSERT_TRUE(plist.has_value());
    EXPECT_EQ(plist->find("n")->integerValue(), -1);
    EXPECT_EQ(plist->find("s")->string(), "x");
    EXPECT_TRUE(plist->find("d")->isData());
    EXPECT_TRUE(PropertyListFile::parse("\"a\" = \"b\";").has_value());
    EXPECT_FALSE(PropertyListFile::parse("<?xml version=\"1.0\"?><plist><dict><key>").has_value());
    EXPECT_FALSE(PropertyListFile::parse("not a plist").has_value());
}

TEST(PropertyListFile, RefusesWhatWouldStopTheProcess) {
    using namespace std::string_view_literals;
    // Binary lists whose strings or keys hold a NUL character.
    struct Case {
        const char* name;
        std::string_view bytes;
        bool refused;
    } cases[] = {
        {"UTF-16 value",
         "\x62\x70\x6c\x69\x73\x74\x30\x30\xd1\x01\x02\x51\x6b\x63\x00\xe9\x00\x00\x00\x79\x08\x0b\x0d\x00\x00\x00\x00\x00\x00"
         "\x01\x01\x00\x00\x00\x00\x00\x00\x00\x03\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x14"sv,
         true},
        {"UTF-16 key",
         "\x62\x70\x6c\x69\x73\x74\x30\x30\xd1\x01\x02\x63\x00\xe9\x00\x00\x00\x62\x51\x76\x08\x0b\x12\x00\x00\x00\x00\x00\x00"
         "\x01\x01\x00\x00\x00\x00\x00\x00\x00\x03\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x14"sv,
         true},
        // libplist cuts an ASCII string at its NUL: what is left is read.
        {"ASCII key",
         "\x62\x70\x6c\x69\x73\x74\x30\x30\xd1\x01\x02\x53\x61\x00\x62\x51\x76\x08\x0b\x0f\x00\x00\x00\x00\x00\x00\x01\x01\x00"
         "\x00\x00\x00\x00\x00\x00\x03\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x11"sv,
         false},
    };
    for (const auto& c : cases) EXPECT_EQ(!PropertyListFile::parse(c.bytes).has_value(), c.refused) << c.name;

    // Nesting: the innermost of n arrays lies n - 1 levels below the root.
    auto nested = [](int n) {
        std::string xml = "<?xml version=\"1.0\"?><plist version=\"1.0\">";
        for (int i = 0; i < n; ++i) xml += "<array>";
        for (int i = 0; i < n; ++i) xml += "</array>";
        return xml + "</plist>";
    };
    EXPECT_TRUE(PropertyListFile::parse(nested(513)).has_value());
    EXPECT_FALSE(PropertyListFile::parse(nested(514)).has_value());
    EXPECT_FALSE(PropertyListFile::parse(nested(27000)).has_value());
}

}  // namespace
}  // namespace vantro::sim
