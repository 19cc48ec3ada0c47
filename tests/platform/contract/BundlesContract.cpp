#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

namespace fs = std::filesystem;

std::string strings(const std::string& key, const std::string& value) {
    return "\"" + key + "\" = \"" + value + "\";\n";
}

// The bundles' contract: a bundle's localizations and resources, its strings
// tables, reading property lists, and matching localizations to the user's
// languages as the pane title needs it.
class BundlesContract : public ::testing::Test {
protected:
    void SetUp() override {
        panePath = put->makeBundle(
            "Pane", {
                        {"Flat.plist", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                                       "<key>kind</key><string>global</string></dict></plist>\n"},
                        {"Both.txt", "global"},
                        {"en.lproj/Both.txt", "english"},
                        {"en.lproj/OnlyEnglish.txt", "english"},
                        {"en.lproj/Localizable.strings",
                         "/* The default table. */\n" + strings("Greeting", "Hello") + strings("Percent", "100% of %@")},
                        {"en.lproj/Labels.strings", strings("Privacy_Photos", "Photos")},
                        {"en.lproj/InfoPlist.strings", strings("CFBundleName", "Security & Privacy")},
                        {"de.lproj/InfoPlist.strings", strings("CFBundleName", "Sicherheit & Datenschutz")},
                        {"zh-Hans.lproj/InfoPlist.strings", strings("CFBundleName", "安全性与隐私")},
                    });
        pane = bundles.bundleWithPath(panePath);
        ASSERT_NE(pane, nullptr);
    }

    std::string write(const std::string& name, const std::string& contents) {
        std::string path = put->scratchDirectory() + "/" + name;
        std::ofstream(path, std::ios::binary) << contents;
        return path;
    }

    std::optional<std::string> nameIn(const std::optional<std::string>& stringsPath) {
        if (!stringsPath) return std::nullopt;
        auto table = bundles.propertyListWithContentsOfFile(*stringsPath);
        const Value* name = table ? table->find("CFBundleName") : nullptr;
        return name ? name->string() : std::nullopt;
    }

    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
    Bundles& bundles = put->platform().bundles();
    std::string panePath;
    std::shared_ptr<Bundle> pane;
};

TEST_F(BundlesContract, ABundleIsAFolderWithItsLocalizationsInLprojFolders) {
    auto localizations = pane->localizations();
    std::sort(localizations.begin(), localizations.end());
    EXPECT_EQ(localizations, (std::vector<std::string>{"de", "en", "zh-Hans"}));
    EXPECT_TRUE(pane->bundlePath().ends_with("/Pane.bundle")) << pane->bundlePath();
    EXPECT_TRUE(pane->bundleURL().starts_with("file://")) << pane->bundleURL();
    EXPECT_TRUE(pane->bundleURL().ends_with("/Pane.bundle/")) << pane->bundleURL();
    // The URL is a URL: what a path may hold and a URL may not is percent-encoded.
    auto spaced = bundles.bundleWithPath(put->makeBundle("Pane 100% #1", {}));
    ASSERT_NE(spaced, nullptr);
    EXPECT_TRUE(spaced->bundleURL().ends_with("/Pane%20100%25%20%231.bundle/")) << spaced->bundleURL();

    EXPECT_EQ(bundles.bundleWithPath(put->scratchDirectory() + "/Missing.bundle"), nullptr);
    EXPECT_EQ(bundles.bundleWithPath(write("plain", "not a bundle")), nullptr);
}

TEST_F(BundlesContract, ResourcesAreGlobalFirstThenOfTheLocalizationAsked) {
    struct Case {
        std::string name, type;
        std::optional<std::string> localization;
        std::optional<std::string> found;  // inside Contents/Resources
    } cases[] = {
        {"Flat", "plist", std::nullopt, "Flat.plist"},
        // A global resource serves every localization.
        {"Flat", "plist", "de", "Flat.plist"},
        {"Both", "txt", std::nullopt, "Both.txt"},
        {"Both", "txt", "en", "Both.txt"},
        {"InfoPlist", "strings", "de", "de.lproj/InfoPlist.strings"},
        {"InfoPlist", "strings", "zh-Hans", "zh-Hans.lproj/InfoPlist.strings"},
        {"OnlyEnglish", "txt", "en", "en.lproj/OnlyEnglish.txt"},
        // Exactly the localization asked: no fall back to another.
        {"OnlyEnglish", "txt", "de", std::nullopt},
        {"InfoPlist", "strings", "fr", std::nullopt},
        // The development region holds what the user's languages do not.
        {"OnlyEnglish", "txt", std::nullopt, "en.lproj/OnlyEnglish.txt"},
        {"Missing", "plist", std::nullopt, std::nullopt},
        {"Flat", "xml", std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        std::string label = c.name + "." + c.type + " for " + c.localization.value_or("no localization");
        auto path = c.localization ? pane->pathForResource(c.name, c.type, std::string_view(*c.localization))
                                   : pane->pathForResource(c.name, c.type);
        ASSERT_EQ(path.has_value(), c.found.has_value()) << label << ": " << path.value_or("nothing");
        if (c.found) {
            EXPECT_TRUE(path->ends_with("/Pane.bundle/Contents/Resources/" + *c.found)) << label << ": " << *path;
        }
    }

    // Without a localization, the bundle picks one that holds the resource.
    auto chosen = pane->pathForResource("InfoPlist", "strings");
    ASSERT_TRUE(chosen.has_value());
    std::optional<std::string> language;
    for (std::string candidate : {"de", "en", "zh-Hans"})
        if (chosen->ends_with("/" + candidate + ".lproj/InfoPlist.strings")) language = candidate;
    ASSERT_TRUE(language.has_value()) << *chosen;
    EXPECT_EQ(nameIn(chosen), nameIn(pane->pathForResource("InfoPlist", "strings", std::string_view(*language))));
}

TEST_F(BundlesContract, LocalizedStringsFallBackToTheValueThenTheKey) {
    struct Case {
        std::string key, value;
        std::optional<std::string> table;
        std::string expected;
    } cases[] = {
        {"Greeting", "", std::nullopt, "Hello"},
        {"Greeting", "Fallback", std::nullopt, "Hello"},
        {"Greeting", "", "Localizable", "Hello"},
        {"Greeting", "", "", "Hello"},
        {"Privacy_Photos", "Privacy_Photos", "Labels", "Photos"},
        // Each table holds its own keys.
        {"Privacy_Photos", "", std::nullopt, "Privacy_Photos"},
        {"Greeting", "", "NoSuchTable", "Greeting"},
        {"Missing", "Fallback", std::nullopt, "Fallback"},
        {"Missing", "", std::nullopt, "Missing"},
        {"Missing", "", "Labels", "Missing"},
        // A localized string is returned as written, not formatted.
        {"Percent", "", std::nullopt, "100% of %@"},
    };
    for (const auto& c : cases) {
        auto table = c.table ? std::optional<std::string_view>(*c.table) : std::nullopt;
        EXPECT_EQ(pane->localizedString(c.key, c.value, table), c.expected)
            << c.key << " / \"" << c.value << "\" / " << c.table.value_or("no table");
    }
}

TEST_F(BundlesContract, PreferredLocalizationsFollowThePreferencesInOrder) {
    const std::vector<std::string> three = {"en", "de", "ja"};
    struct Case {
        std::vector<std::string> localizations, preferences;
        std::string first;
    } cases[] = {
        {three, {"de"}, "de"},
        {three, {"ja"}, "ja"},
        // A regional preference is served by its language.
        {three, {"de-DE", "en"}, "de"},
        {three, {"de-CH"}, "de"},
        {three, {"en-GB"}, "en"},
        {{"zh-Hans", "en"}, {"zh-Hans-CN"}, "zh-Hans"},
        // ...but by the region itself where the bundle has it.
        {{"en", "en-GB", "de"}, {"en-GB"}, "en-GB"},
        // The first preference that a localization serves wins.
        {three, {"fr", "ja", "de"}, "ja"},
        {three, {"de", "ja"}, "de"},
        {three, {"ja", "de"}, "ja"},
    };
    for (const auto& c : cases) {
        std::string label = c.preferences.front() + " among " + std::to_string(c.localizations.size());
        auto preferred = bundles.preferredLocalizations(c.localizations, c.preferences);
        ASSERT_FALSE(preferred.empty()) << label;
        EXPECT_EQ(preferred.front(), c.first) << label;
        for (const auto& p : preferred)
            EXPECT_NE(std::find(c.localizations.begin(), c.localizations.end(), p), c.localizations.end()) << label;
    }

    // When no preference is served, Foundation still answers one of the
    // localizations offered (which one is its own choice).
    const std::vector<std::string> offered = {"de", "ja"};
    for (const auto& preferences : {std::vector<std::string>{"fr"}, std::vector<std::string>{}}) {
        auto preferred = bundles.preferredLocalizations(offered, preferences);
        ASSERT_FALSE(preferred.empty()) << preferences.size();
        for (const auto& p : preferred)
            EXPECT_NE(std::find(offered.begin(), offered.end(), p), offered.end()) << p;
    }
}

TEST_F(BundlesContract, PropertyListsAreReadFromXMLBinaryAndStringsFiles) {
    const std::string xml = write(
        "types.plist",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\"><dict>"
        "<key>string</key><string>Datenschutz &amp; Sicherheit</string>"
        "<key>integer</key><integer>-3</integer>"
        "<key>real</key><real>2.5</real>"
        "<key>yes</key><true/><key>no</key><false/>"
        "<key>data</key><data>AAEC/w==</data>"
        "<key>array</key><array><string>a</string><integer>1</integer></array>"
        "<key>dict</key><dict><key>nested</key><string>n</string></dict>"
        "</dict></plist>\n");
    const Value expected(Value::Dictionary{
        {"string", Value("Datenschutz & Sicherheit")},
        {"integer", Value(-3)},
        {"real", Value(2.5)},
        {"yes", Value(true)},
        {"no", Value(false)},
        {"data", Value(Data{{0x00, 0x01, 0x02, 0xff}})},
        {"array", Value(Value::Array{Value("a"), Value(1)})},
        {"dict", Value(Value::Dictionary{{"nested", Value("n")}})},
    });
    auto read = bundles.propertyListWithContentsOfFile(xml);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(*read, expected) << read->description();
    // Booleans, integers and reals stay apart.
    EXPECT_EQ(read->find("yes")->type(), Value::Type::Boolean);
    EXPECT_EQ(read->find("integer")->type(), Value::Type::Integer);
    EXPECT_EQ(read->find("real")->type(), Value::Type::Real);

    const unsigned char binaryBytes[] = {
        0x62, 0x70, 0x6c, 0x69, 0x73, 0x74, 0x30, 0x30, 0xd4, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07,
        0x08, 0x5c, 0x43, 0x46, 0x42, 0x75, 0x6e, 0x64, 0x6c, 0x65, 0x4e, 0x61, 0x6d, 0x65, 0x55, 0x63,
        0x6f, 0x75, 0x6e, 0x74, 0x52, 0x6f, 0x6e, 0x55, 0x72, 0x61, 0x74, 0x69, 0x6f, 0x5f, 0x10, 0x18,
        0x53, 0x69, 0x63, 0x68, 0x65, 0x72, 0x68, 0x65, 0x69, 0x74, 0x20, 0x26, 0x20, 0x44, 0x61, 0x74,
        0x65, 0x6e, 0x73, 0x63, 0x68, 0x75, 0x74, 0x7a, 0x10, 0x07, 0x09, 0x23, 0x3f, 0xe0, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x08, 0x11, 0x1e, 0x24, 0x27, 0x2d, 0x48, 0x4a, 0x4b, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x09, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x54,
    };
    const std::string binary = write("compiled.strings", std::string(std::begin(binaryBytes), std::end(binaryBytes)));
    EXPECT_EQ(bundles.propertyListWithContentsOfFile(binary),
              Value(Value::Dictionary{{"CFBundleName", Value("Sicherheit & Datenschutz")},
                                      {"count", Value(7)},
                                      {"on", Value(true)},
                                      {"ratio", Value(0.5)}}));

    const std::string text = "/* InfoPlist.strings */\n\"CFBundleName\" = \"Security & Privacy\";\n"
                             "\"quoted\" = \"say \\\"hi\\\"\";\n";
    EXPECT_EQ(bundles.propertyListWithContentsOfFile(write("utf8.strings", text)),
              Value(Value::Dictionary{{"CFBundleName", Value("Security & Privacy")}, {"quoted", Value("say \"hi\"")}}));
    std::string utf16 = "\xff\xfe";
    for (char c : text) utf16 += std::string{c, '\0'};
    EXPECT_EQ(bundles.propertyListWithContentsOfFile(write("utf16.strings", utf16)),
              bundles.propertyListWithContentsOfFile(write("utf8-again.strings", text)));

    const std::string array =
        write("array.plist", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><array>"
                             "<string>Privacy_AllFiles</string><string>Privacy_Photos</string></array></plist>\n");
    EXPECT_EQ(bundles.propertyListWithContentsOfFile(array),
              Value(Value::Array{Value("Privacy_AllFiles"), Value("Privacy_Photos")}));

    EXPECT_EQ(bundles.propertyListWithContentsOfFile(put->scratchDirectory() + "/missing.plist"), std::nullopt);
    EXPECT_EQ(bundles.propertyListWithContentsOfFile(
                  write("broken.plist", "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict><key>a</key></plist>\n")),
              std::nullopt);
    EXPECT_EQ(bundles.propertyListWithContentsOfFile(put->scratchDirectory()), std::nullopt) << "a folder";
}

}  // namespace
}  // namespace vantro::test
