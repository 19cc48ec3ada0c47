#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vantro::sim
