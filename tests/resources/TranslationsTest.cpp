#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/StringsFile.h"
#include "support/TemporaryResources.h"

namespace vantro::test {
namespace {

namespace fs = std::filesystem;

// The format specifiers of a text, sorted: "%@", "%1$@", "%d", "%%"… The
// guide replaces "%@" textually, so a translation must keep each one exactly,
// in any order.
std::vector<std::string> formatSpecifiers(const std::string& text) {
    std::vector<std::string> out;
    for (std::size_t i = text.find('%'); i != std::string::npos; i = text.find('%', i)) {
        std::size_t end = i + 1;
        auto skip = [&](std::string_view set) {
            while (end < text.size() && set.find(text[end]) != std::string_view::npos) ++end;
        };
        skip("0123456789$");  // position and width
        skip("-+ #0'");
        skip("0123456789.*");
        skip("hlqLzjt");
        if (end < text.size()) ++end;  // the conversion, or the second "%" of "%%"
        out.push_back(text.substr(i, end - i));
        i = end;
    }
    std::sort(out.begin(), out.end());
    return out;
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::set<std::string> folderNames(const fs::path& folder, std::string_view suffix) {
    std::set<std::string> out;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec); !ec && it != fs::directory_iterator(); it.increment(ec)) {
        auto name = it->path().filename().string();
        if (name.ends_with(suffix)) out.insert(name.substr(0, name.size() - suffix.size()));
    }
    return out;
}

// What is wrong with the translations in a resources folder: every
// language's tables against English's, key by key and specifier by
// specifier. Empty when every language says everything English says.
std::vector<std::string> translationProblems(const fs::path& resources) {
    std::vector<std::string> problems;
    auto tables = folderNames(resources / "en.lproj", ".strings");
    if (tables.empty()) problems.push_back("en.lproj holds no strings tables");
    auto read = [&](const std::string& language, const std::string& table) -> std::optional<Value::Dictionary> {
        fs::path path = resources / (language + ".lproj") / (table + ".strings");
        if (!fs::exists(path)) {
            problems.push_back(language + ": " + table + ".strings is missing");
            return std::nullopt;
        }
        auto parsed = sim::StringsFile::parse(readFile(path));
        if (!parsed) problems.push_back(language + ": " + table + ".strings cannot be read");
        return parsed;
    };
    for (const auto& language : folderNames(resources, ".lproj")) {
        for (const auto& extra : folderNames(resources / (language + ".lproj"), ".strings"))
            if (!tables.contains(extra)) problems.push_back(language + ": " + extra + ".strings has no English table");
        if (language == "en") continue;
        for (const auto& table : tables) {
            auto english = read("en", table);
            auto translated = read(language, table);
            if (!english || !translated) continue;
            for (const auto& [key, text] : *english) {
                auto found = translated->find(key);
                if (found == translated->end()) {
                    problems.push_back(language + ": " + table + " lacks \"" + key + "\"");
                } else if (formatSpecifiers(*found->second.string()) != formatSpecifiers(*text.string())) {
                    problems.push_back(language + ": " + table + " \"" + key + "\" changes the format specifiers");
                }
            }
            for (const auto& [key, text] : *translated)
                if (!english->contains(key)) problems.push_back(language + ": " + table + " has the unknown key \"" + key + "\"");
        }
    }
    return problems;
}

std::string joined(const std::vector<std::string>& lines) {
    std::ostringstream out;
    for (const auto& line : lines) out << line << "\n";
    return out.str();
}

TEST(Translations, EveryShippedLanguageSaysEverythingEnglishSays) {
    auto problems = translationProblems(VANTRO_TEST_RESOURCES_DIR);
    EXPECT_TRUE(problems.empty()) << joined(problems);
    auto languages = folderNames(VANTRO_TEST_RESOURCES_DIR, ".lproj");
    for (const char* language : {"en", "de", "fr", "ja"}) EXPECT_TRUE(languages.contains(language)) << language;
}

// Each damage done to a copy of the shipped resources is reported.
TEST(Translations, ABrokenTranslationIsReported) {
    auto replaced = [](std::string text, const std::string& from, const std::string& to) {
        auto at = text.find(from);
        return at == std::string::npos ? std::string("(not found: " + from + ")") : text.replace(at, from.size(), to);
    };
    const std::string frPrompts = "fr.lproj/Localizable.strings", jaLabels = "ja.lproj/PrivacyCategoryLabels.strings";
    // from empty: the file is removed
    // nullptr: nothing is wrong
    struct Case { const char* damage; std::string file; std::string from, to; const char* reported; } cases[] = {
        {"a new wording", frPrompts, "cochez sa case", "cochez la case", nullptr},
        {"a key left out", jaLabels, "\"Privacy_Photos\" = \"写真\";", "", "ja: PrivacyCategoryLabels lacks \"Privacy_Photos\""},
        {"a misspelt key", jaLabels, "\"Privacy_Photos\"", "\"Privacy_Foto\"", "unknown key \"Privacy_Foto\""},
        {"the name dropped", frPrompts, "Faites glisser %@", "Faites-le glisser", "\"PROMPT_DRAG_TO_LIST\" changes"},
        {"one of two names dropped", frPrompts, "Si %@ n’y", "S’il n’y", "\"PROMPT_CHECK_FOR_ACCESS\" changes"},
        {"a numbered specifier", frPrompts, "Trouvez %@ dans la liste ci-dessus et cochez sa", "Trouvez %1$@ dans la liste ci-dessus et cochez sa",
         "\"PROMPT_TICK_THE_BOX\" changes"},
        {"a lost semicolon", jaLabels, "\"写真\";", "\"写真\"", "ja: PrivacyCategoryLabels.strings cannot be read"},
        {"a whole table", frPrompts, "", "", "fr: Localizable.strings is missing"},
    };
    for (const auto& c : cases) {
        TemporaryResources resources;
        if (c.from.empty()) {
            resources.remove(c.file);
        } else {
            resources.write(c.file, replaced(readFile(resources.path() + "/" + c.file), c.from, c.to));
        }
        auto problems = translationProblems(resources.path());
        if (!c.reported) {
            EXPECT_TRUE(problems.empty()) << c.damage << "\n" << joined(problems);
            continue;
        }
        EXPECT_NE(joined(problems).find(c.reported), std::string::npos) << c.damage << "\n" << joined(problems);
    }
    TemporaryResources resources;
    resources.write("ja.lproj/Extra.strings", "\"a\" = \"b\";\n");
    EXPECT_EQ(translationProblems(resources.path()), std::vector<std::string>{"ja: Extra.strings has no English table"});
}

// What the simulated Mac shows in one language: the list's row for Full
// Disk Access, the guide's prompt, the Security pane's title and the
// settings window's, and whether the overlay came up over that window.
TEST(Translations, TheSimulatedMacSpeaksTheUsersLanguage) {
    struct Case {
        std::string release;
        std::vector<std::string> languages;
        const char* label;
        const char* button;
        const char* prompt;
        const char* paneTitle;
        // The settings window's title where it is not the pane's: from 13 it
        // names the privacy sub-pane shown.
        const char* windowTitle = nullptr;
    } cases[] = {
        {"10.15", {"fr"}, "Accès complet au disque", "Accorder l’autorisation",
         "Cliquez sur le cadenas pour apporter des modifications, puis faites glisser Vantro Demo dans la liste ci-dessus "
         "pour lui accorder l’accès complet au disque.",
         "Sécurité et confidentialité"},
        {"10.15", {"ja"}, "フルディスクアクセス", "許可する",
         "変更するにはカギをクリックしてから、Vantro Demo を上のリストにドラッグしてフルディスクアクセスを許可してください。",
         "セキュリティとプライバシー"},
        // A region is served by its language; the first language served wins.
        {"10.15", {"fr-CA", "en"}, "Accès complet au disque", "Accorder l’autorisation", nullptr, "Sécurité et confidentialité"},
        {"10.15", {"ko", "ja"}, "フルディスクアクセス", "許可する", nullptr, "セキュリティとプライバシー"},
        {"13", {"fr"}, "Accès complet au disque", "Accorder l’autorisation",
         "Faites glisser Vantro Demo dans la liste ci-dessus, ou cliquez sur + sous la liste et choisissez Vantro Demo. "
         "Activez ensuite son interrupteur pour lui accorder l’accès complet au disque.",
         "Confidentialité et sécurité", "Accès complet au disque"},
        {"13", {"ja"}, "フルディスクアクセス", "許可する",
         "Vantro Demo を上のリストにドラッグするか、リストの下の + をクリックして Vantro Demo を選択してください。"
         "そのあと、スイッチをオンにしてフルディスクアクセスを許可してください。",
         "プライバシーとセキュリティ", "フルディスクアクセス"},
        // A language nothing is translated into: English, as on a Mac.
        {"10.15", {"xx"}, "Full Disk Access", "Grant Permission",
         "Click the lock to make changes, then drag Vantro Demo into the list above to give it Full Disk Access.",
         "Security & Privacy"},
    };
    for (const auto& c : cases) {
        std::string label = c.release + " " + c.languages.front();
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release, .languages = c.languages});
        auto controller = VantroViewController::create();
        sim::SimPermissionList list(mac, controller);
        list.show();
        ASSERT_EQ(list.rows().size(), 1u) << label;
        EXPECT_EQ(list.rows()[0].label, c.label) << label;
        EXPECT_EQ(list.rows()[0].buttonTitle, c.button) << label;

        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        if (c.prompt) {
            EXPECT_EQ(guide->message(), c.prompt) << label;
        }
        EXPECT_EQ(guide->privacyPanelName(), c.paneTitle) << label;
        mac.runFor(1.5);
        EXPECT_EQ(mac.systemPreferences().windowTitle(), c.windowTitle ? c.windowTitle : c.paneTitle) << label;
        EXPECT_TRUE(guide->isOverlayShown()) << label;
        ASSERT_NE(guide->windowController(), nullptr) << label;
        EXPECT_EQ(guide->windowController()->message(), guide->message()) << label;
    }
}

}  // namespace
}  // namespace vantro::test
