#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimScreen.h"
#include "Simulator/SimScreenTexts.h"
#include "Simulator/SimText.h"
#include "Simulator/SimulatedMac.h"
#include "Simulator/StringsFile.h"
#include "overlay/Pixels.h"

namespace vantro::test {
namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

// One release of each generation of the settings, and 13 beside 15 where
// the two differ.
const char* const oneOfEachFamily[] = {"10.14", "10.15", "15", "26"};
const char* const languages[] = {"en", "de", "fr", "ja"};

// What a picture showed: its pixels and every text handed to the drawing.
struct Picture {
    Surface surface{nullptr, &cairo_surface_destroy};
    std::vector<sim::TextRecording::Shown> texts;

    bool shows(const std::string& text) const {
        return std::any_of(texts.begin(), texts.end(), [&](const auto& t) { return t.text == text; });
    }
    std::ptrdiff_t position(const std::string& text) const {
        auto it = std::find_if(texts.begin(), texts.end(), [&](const auto& t) { return t.text == text; });
        return it == texts.end() ? -1 : it - texts.begin();
    }
    Pixel at(Point p) const { return pixelAt(surface.get(), static_cast<int>(p.x), static_cast<int>(p.y)); }
};

// A Mac of a release in a language with the host's permission list for Full
// Disk Access; the user clicks its button and the guide's overlay appears.
struct Road {
    sim::SimulatedMac mac;
    std::shared_ptr<VantroViewController> controller = VantroViewController::create();
    sim::SimPermissionList list{mac, controller};
    std::shared_ptr<Vantro> guide;
    // Made before the overlay exists: the picture finds it when it shows.
    sim::ScreenContents contents;

    Road(const std::string& release, const std::string& language)
        : mac(sim::MacConfiguration{.release = release, .languages = {language}}) {
        controller->setRequestedPrivacyCategoryIdentifiers({std::string(VantroPrivacyFullDiskAccess)});
        list.show();
        guide = Vantro::sharedKit();
        contents = {.guide = guide.get(), .permissionList = &list};
    }

    // Runs until the overlay first shows, and not a step longer.
    void clickAndWaitForOverlay() {
        list.userClicks(0.1, 0);
        for (int i = 0; i < 100 && !guide->isOverlayShown(); ++i) mac.runFor(0.01);
        ASSERT_TRUE(guide->isOverlayShown());
    }

    Picture picture() {
        sim::TextRecording recording;
        Picture p;
        p.surface.reset(sim::drawScreen(mac, contents));
        p.texts = recording.texts();
        return p;
    }

    // A screen rectangle or point (origin bottom left) in the picture.
    Point inPicture(Point p) { return {p.x, mac.windows().mainScreenFrame().size.height - p.y}; }
    Rect inPicture(const Rect& r) {
        return {{r.origin.x, mac.windows().mainScreenFrame().size.height - r.maxY()}, r.size};
    }
    // A point of a view of the overlay, at fractions of its width from the
    // left and of its height from the top, in the picture.
    Point overlayViewPoint(std::string_view viewClass, double across, double down) {
        auto* window = sim::simOverlayWindow(*guide->windowController());
        auto view = window->firstViewOfClass(viewClass);
        const Rect w = window->frame(), v = view->frame;
        return inPicture(Point{w.origin.x + v.origin.x + v.size.width * across, w.origin.y + v.maxY() - v.size.height * down});
    }

    // The host in the list and the administrator's password asked for: to
    // turn its switch on in System Settings, to unlock System Preferences.
    void askForPassword() {
        auto& settings = mac.systemPreferences();
        settings.setUnlockAnswerDelay(-1);
        if (settings.isSystemSettings()) {
            ASSERT_TRUE(sim::userDragsIcon(mac, *guide->windowController(), settings.listPoint()));
            ASSERT_TRUE(settings.userSwitchesOnHost());
        } else {
            settings.authorize();
        }
        ASSERT_TRUE(settings.asksForPassword());
    }
};

bool isGreen(const Pixel& p) { return p.g > p.r + 60 && p.g > p.b + 60; }
bool isWhite(const Pixel& p) { return p.r > 245 && p.g > 245 && p.b > 245; }
bool isIconBlue(const Pixel& p) { return p.b > 180 && p.r < 150; }
bool isNeutral(const Pixel& p) { return std::abs(p.r - p.b) < 8 && std::abs(p.g - p.b) < 8; }

// The moment the guide shows its overlay, the picture has it: the arrow's
// tip green inside the privacy list, the list itself white around it (the
// overlay is clear there), and the host's icon inside the overlay's strip
// below the window; in every generation and language.
TEST(ScreenPictures, TheOverlayIsInThePictureOfTheMomentItShows) {
    for (const char* release : oneOfEachFamily) {
        for (const char* language : languages) {
            SCOPED_TRACE(std::string(release) + " " + language);
            Road road(release, language);
            road.clickAndWaitForOverlay();
            auto picture = road.picture();
            const Rect list = road.inPicture(road.mac.systemPreferences().listFrameOnScreen());
            const Point tip = road.overlayViewPoint("VantroArrowView", 0.5, 0);
            EXPECT_TRUE(list.contains(tip)) << tip.x << ", " << tip.y;
            EXPECT_TRUE(isGreen(picture.at({tip.x, tip.y + 8})));
            EXPECT_TRUE(isWhite(picture.at({list.origin.x + 30, list.maxY() - 30})));
            const Point icon = road.overlayViewPoint("ZVMainBundleIconImageView", 0.2, 0.3);
            EXPECT_GT(icon.y, road.mac.systemPreferences().windowFrame().maxY()) << "below the window";
            EXPECT_TRUE(isIconBlue(picture.at(icon)));
        }
    }
}

// Each generation draws what its settings show: System Preferences' tabs
// and padlock up to 12, Files and Folders from 10.15, System Settings'
// sidebar in Ventura's order from 13 and regrouped on 26, whose window is
// rounder and whose sidebar lets the desktop through.
TEST(ScreenPictures, EachGenerationHasItsOwnLook) {
    struct Case {
        const char* release;
        bool tabsAndLock;
        bool filesAndFolders;              // in the Privacy tab's column, beside Full Disk Access
        const char* sidebarBeforePrivacy;  // the sidebar's item just above "Privacy & Security"
        bool roundCorner;                  // the window's corner 5 points in is desktop
        bool translucentSidebar;
    } cases[] = {
        {"10.14", true, false, nullptr, false, false},
        {"10.15", true, true, nullptr, false, false},
        {"13", false, false, "Siri & Spotlight", false, false},
        {"15", false, false, "Siri & Spotlight", false, false},
        {"26", false, false, "Lock Screen", true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.release);
        Road road(c.release, "en");
        road.clickAndWaitForOverlay();
        auto picture = road.picture();
        EXPECT_EQ(picture.shows("Privacy"), c.tabsAndLock);
        EXPECT_EQ(picture.shows("FileVault"), c.tabsAndLock);
        EXPECT_EQ(picture.shows("Click the lock to make changes."), c.tabsAndLock);
        EXPECT_EQ(picture.shows("Files and Folders"), c.filesAndFolders);
        EXPECT_TRUE(picture.shows("+")) << "Full Disk Access takes applications";
        if (c.sidebarBeforePrivacy) {
            const auto privacy = picture.position("Privacy & Security");
            ASSERT_GE(privacy, 1);
            EXPECT_EQ(picture.texts[privacy - 1].text, c.sidebarBeforePrivacy);
        }
        const Rect window = road.mac.systemPreferences().windowFrame();
        const Pixel corner = picture.at({window.origin.x + 4, window.origin.y + 4});
        EXPECT_EQ(corner.r < 200, c.roundCorner) << corner.r << " " << corner.g << " " << corner.b;
        if (road.mac.systemPreferences().isSystemSettings()) {
            const Pixel sidebar = picture.at({window.origin.x + 100, window.maxY() - 12});
            EXPECT_EQ(!isNeutral(sidebar), c.translucentSidebar) << sidebar.r << " " << sidebar.g << " " << sidebar.b;
        }
    }
}

// The "Privacy & Security" page names Screen Recording as each release does.
TEST(ScreenPictures, ThePrivacyPageNamesScreenRecordingAsTheReleaseDoes) {
    const struct {
        const char* release;
        const char* name;
    } cases[] = {{"13", "Screen Recording"}, {"15", "Screen & System Audio Recording"}, {"26", "Screen & System Audio Recording"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.release);
        Road road(c.release, "en");
        road.clickAndWaitForOverlay();
        road.mac.systemPreferences().userOpensPrivacyList("");
        auto picture = road.picture();
        EXPECT_TRUE(picture.shows(c.name));
        EXPECT_TRUE(picture.shows("Full Disk Access"));
        EXPECT_TRUE(picture.shows("Files and Folders"));
    }
}

// The pictures a language is tested on: the overlay just shown, and the
// password dialog over the list with the host in it.
std::vector<Picture> picturesOfTheRoad(const char* release, const char* language) {
    std::vector<Picture> pictures;
    Road road(release, language);
    road.clickAndWaitForOverlay();
    pictures.push_back(road.picture());
    road.askForPassword();
    pictures.push_back(road.picture());
    return pictures;
}

// Every character of every text drawn has a glyph in the font it is set in:
// no empty boxes, in any language on any generation.
TEST(ScreenPictures, EveryDrawnCharacterHasAGlyph) {
    for (const char* release : oneOfEachFamily) {
        for (const char* language : languages) {
            SCOPED_TRACE(std::string(release) + " " + language);
            for (const auto& picture : picturesOfTheRoad(release, language)) {
                ASSERT_FALSE(picture.texts.empty());
                for (const auto& shown : picture.texts)
                    EXPECT_EQ(sim::charactersWithoutGlyph(shown.text, shown.bold), std::vector<std::string>{}) << shown.text;
            }
        }
    }
    // A character no font here has is told.
    EXPECT_EQ(sim::charactersWithoutGlyph("a\xF3\xB0\x80\x80" "b"), std::vector<std::string>{"\xF3\xB0\x80\x80"});
}

std::string resource(const std::string& language, const std::string& table) {
    std::ifstream file(std::string(VANTRO_TEST_RESOURCES_DIR) + "/" + language + ".lproj/" + table + ".strings");
    return {std::istreambuf_iterator<char>(file), {}};
}

Value::Dictionary stringsTable(const std::string& language, const std::string& table) {
    return sim::StringsFile::parse(resource(language, table)).value_or(Value::Dictionary{});
}

// The English texts a language's screen must not show: the simulated
// system's and Vantro's own, where the language says it otherwise (a
// prompt's pieces between its "%@").
std::vector<std::string> englishTextsTranslatedInto(const std::string& language) {
    std::vector<std::string> english;
    for (const auto& pair : sim::screenTextPairs(language))
        if (pair.translated != pair.english) english.push_back(pair.english);
    for (const char* table : {"Localizable", "PrivacyCategoryLabels"}) {
        const auto en = stringsTable("en", table), translated = stringsTable(language, table);
        for (const auto& [key, value] : en) {
            const auto text = value.string().value_or("");
            if (translated.count(key) && translated.at(key).string() == text) continue;
            for (std::size_t start = 0; start < text.size();) {
                std::size_t end = text.find("%@", start);
                if (end == std::string::npos) end = text.size();
                if (end - start >= 8) english.push_back(text.substr(start, end - start));
                start = end + 2;
            }
        }
    }
    return english;
}

// On a German, French or Japanese Mac no drawn text holds English the
// language translates: menu bar, sidebar, tabs, captions, lock text, the
// password dialog, the list and the overlay.
TEST(ScreenPictures, AScreenInAnotherLanguageHoldsNoEnglish) {
    for (const char* language : {"de", "fr", "ja"}) {
        const auto english = englishTextsTranslatedInto(language);
        ASSERT_GT(english.size(), 40u);
        for (const char* release : oneOfEachFamily) {
            SCOPED_TRACE(std::string(release) + " " + language);
            for (const auto& picture : picturesOfTheRoad(release, language))
                for (const auto& shown : picture.texts)
                    for (const auto& word : english)
                        EXPECT_EQ(shown.text.find(word), std::string::npos) << "\"" << word << "\" in \"" << shown.text << "\"";
        }
    }
}

std::string lowered(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// One term per category in each language: the simulated settings name a
// category as Vantro's list labels it, and a prompt that names a category in
// English names it with the label's term in its own language.
TEST(ScreenPictures, SettingsListAndPromptsShareOneTermPerCategory) {
    for (const char* language : languages) {
        SCOPED_TRACE(language);
        const auto labels = stringsTable(language, "PrivacyCategoryLabels");
        const auto englishLabels = stringsTable("en", "PrivacyCategoryLabels");
        ASSERT_FALSE(labels.empty());
        for (const auto& [identifier, label] : labels) {
            const std::string anchor = identifier == "Privacy_Diagnostics" ? "Privacy_Analytics" : identifier;
            // As System Settings of 13 and the Privacy tab before it name it.
            for (int major : {10, 13}) {
                auto name = sim::SimSystemPreferences::settingsSubPaneTitle(language, anchor, major);
                if (name) {
                    EXPECT_EQ(*name, label.string()) << anchor << " on " << major;
                }
            }
        }
        const auto prompts = stringsTable(language, "Localizable"), englishPrompts = stringsTable("en", "Localizable");
        for (const auto& [key, englishPrompt] : englishPrompts) {
            for (const auto& [identifier, englishLabel] : englishLabels) {
                const auto term = englishLabel.string().value_or("");
                if (term.size() < 6 || englishPrompt.string().value_or("").find(term) == std::string::npos) continue;
                ASSERT_TRUE(prompts.count(key)) << key;
                EXPECT_NE(lowered(prompts.at(key).string().value_or("")).find(lowered(labels.at(identifier).string().value_or(""))),
                          std::string::npos)
                    << key << " names " << identifier;
            }
        }
    }
}

}  // namespace
}  // namespace vantro::test
