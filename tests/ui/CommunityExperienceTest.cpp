#include "CommunityScene.h"

using namespace zorva::test;

namespace
{
using Style = ActionButton::Style;
constexpr auto strong = Style::strong, quiet = Style::quiet, library = Style::library;

struct ButtonRow
{
    juce::String path, text;
    Style style;
    juce::String title, description;
    juce::String tooltip = description;
};

const ButtonRow buttonRows[] {
    { "hero/createYourProfileButton", "Create Your Profile", strong, "Create your ZORVA profile",
      "Open the optional private creator-profile editor." },
    { "hero/submitYourMusicButton", "Submit Your Music", quiet, "Submit your music",
      "Open an email draft to submit music you own or control for review." },
    { "hero/heroPrimaryButton", "GET ZORVA DAW", library, "Get ZORVA DAW",
      "Open Library to download or install ZORVA DAW." },
    { "featuredTrack/playButton", utf8 ("\xe2\x96\xb6"), quiet, "Demo player unavailable",
      "Decorative preview control. No audio is loaded and playback is disabled.",
      "Demo player - no audio loaded" },
    { "featuredTrack/submitATrackButton", "Submit a Track", strong, "Submit a track for review",
      "Open an email draft to submit a track you own or control." },
    { "producerSpotlight/spotlightButton", "Submit for a Premiere", quiet, "Future producer spotlight",
      "Open an email draft to submit an owned portrait, story, and track for consideration." },
    { "artistSpotlight/spotlightButton", "Send Your Story + Track", quiet, "Future artist spotlight",
      "Open an email draft to submit an owned portrait, story, and track for consideration." },
    { "participation/createEditProfileButton", "Create / Edit Profile", strong, "Create or edit your profile",
      "Open the private local creator-profile editor." },
    { "participation/reviewLocalDraftsButton", "Review Local Drafts", quiet, "Review local preview drafts",
      "Review private preview-draft references stored on this computer." },
    { "participation/submitMusicButton", "Submit Music", quiet, "Submit owned music",
      "Open an email draft to submit music you own or control." },
};

struct ResourceRow
{
    const char *category, *title, *body, *tag, *button, *description;
};

const ResourceRow resourceRows[] {
    { "Templates", "16-Channel Multitimbral Recording",
      "Assign MIDI channels 1-16 and capture each part as editable MIDI.",
      "ZORVA Starter", "View Setup Guide",
      "Open the local multitimbral setup guide." },
    { "Scripts", "Purpose-Built ZORVA Workflows",
      "A safe JavaScript starter for transport, track, mixer, and console calls.",
      "Built-in Guide", "Open Script Guide",
      "Open the local ZORVA Script Engine starter guide." },
    { "Sounds", "Shape Future Community Packs",
      "Suggest professional drums, keys, basses, pads, textures, and presets.",
      "Community Preview", "Suggest a Sound",
      "Open an email draft with a sound suggestion template." },
    { "Tips + Mixing", "A Clean Starting Point",
      "Start with healthy gain and headroom; add processing only when it supports the music.",
      "ZORVA Tip 001", "Read Starter Tip",
      "Open the local headroom and gain-staging tip." },
    { "Issues + Bugs", "Report a Problem Directly",
      "Send a reproducible DAW, Hub, installation, or accessibility issue straight to ZORVA.",
      "Direct Contact", "Report a Bug / Issue",
      "Open a structured ZORVA issue-report email draft." },
    { "Feature Requests", "Help Shape the Next Release",
      "Describe a focused music-production workflow improvement directly to the creator.",
      "Direct Contact", "Request a Feature",
      "Open a structured ZORVA feature-request email draft." },
    { "Build With Us", "Help Build the ZORVA Team",
      "Introduce yourself across DSP, engineering, QA, accessibility, sound design, or community.",
      "Interest Call", "Join the Interest List",
      "Open a ZORVA Team introduction email draft." },
};

struct GuideRow
{
    const char *title, *text;
};

/** The guides, by the resource that shows each. */
const std::pair<const char*, GuideRow> guideRows[] {
    { "resource0",
      { "16-Channel Multitimbral Recording",
        "ZORVA starter workflow\n\n1. Choose Add Track > Multitimbral MIDI Group.\n2. Load the ZORVA instrument, AU, or "
        "VST3 on the parent group track.\n3. Select a child track; channels 1-16 map to the matching module parts.\n4. "
        "Arm the child tracks you want to capture.\n5. Record. Each child retains its own MIDI notes and channel "
        "assignment, and its MIDI activity indicator follows the addressed part.\n\nAudio meters and per-part audio "
        "effects require the instrument to expose separate stereo output pairs and those returns to be assigned. "
        "Instruments with one stereo output remain correctly metered and processed on the parent return.\n\nThis bundled "
        "guide is local content; it does not download or install files." } },
    { "resource1",
      { "ZORVA Script Starter",
        "Open the ZORVA Script Engine, paste or type JavaScript, then Run. ZORVA uses ES3, so use var instead of "
        "let/const and function() instead of arrow functions.\n\n// Read session state without changing it\nvar bpm = "
        "ZORVA.getBpm();\nvar tracks = ZORVA.getTrackCount();\nZORVA.print('BPM: ' + bpm);\nZORVA.print('Tracks: ' + "
        "tracks);\n\nSupported starters include ZORVA.play(), ZORVA.stop(), ZORVA.record(), ZORVA.setBpm(bpm), "
        "ZORVA.setVolume(track, dB), ZORVA.setPan(track, -1..1), ZORVA.setMute(track, bool), ZORVA.getMeter(track), and "
        "ZORVA.wait(ms)." } },
    { "resource3",
      { "ZORVA Tip 001 - Preserve Headroom",
        "Set input gain before reaching for processors. Keep individual tracks out of the red and leave comfortable "
        "headroom on the master bus. Make level decisions at a consistent monitoring volume, then add processing only "
        "when each move supports the music." } },
};

void expectStyle (juce::TextButton& button, Style style)
{
    const auto fill = style == strong ? HubPalette::accent.darker (0.52f) : style == quiet ? HubPalette::panel : HubPalette::action.darker (0.48f);
    const auto on = style == strong ? HubPalette::accent.darker (0.65f) : style == quiet ? HubPalette::inverseText : HubPalette::action.darker (0.62f);

    EXPECT_EQ (hex (button.findColour (juce::TextButton::buttonColourId)), hex (fill));
    EXPECT_EQ (hex (button.findColour (juce::TextButton::buttonOnColourId)), hex (on));
    EXPECT_EQ (hex (button.findColour (juce::TextButton::textColourOffId)), hex (style == quiet ? HubPalette::accent : HubPalette::textPrimary));
}

void expectWords (juce::TextButton& button, const juce::String& text, const juce::String& title, const juce::String& description,
                  const juce::String& tooltip)
{
    EXPECT_EQ (button.getButtonText(), text);
    EXPECT_EQ (button.getTitle(), title);
    EXPECT_EQ (button.getDescription(), description);
    EXPECT_EQ (button.getTooltip(), tooltip);
    EXPECT_NE (dynamic_cast<ActionButton*> (&button), nullptr);
}
}

//==============================================================================
TEST (CommunityExperience, ButtonsReadAsTheTableSays)
{
    ExperienceScene scene;

    for (const auto& row : buttonRows)
    {
        SCOPED_TRACE (row.path.toStdString());
        auto& button = scene.button (row.path);
        expectWords (button, row.text, row.title, row.description, row.tooltip);
        expectStyle (button, row.style);
        EXPECT_EQ (button.isEnabled(), row.path != "featuredTrack/playButton");
        EXPECT_TRUE (button.isVisible());
    }
}

TEST (CommunityExperience, ResourcesReadAsTheTableSays)
{
    ExperienceScene scene;

    for (size_t i = 0; i < std::size (resourceRows); ++i)
    {
        const auto& row = resourceRows[i];
        const auto id = "resource" + juce::String (i);
        SCOPED_TRACE (row.title);
        EXPECT_EQ (scene.child (id).getTitle(), row.title);
        EXPECT_EQ (scene.child (id).getDescription(), row.body);

        auto& button = scene.button (id + "/resourceButton");
        expectWords (button, row.button, row.button, row.description, row.description);
        expectStyle (button, quiet);
    }

    EXPECT_EQ (allBelow<juce::Button> (*scene.experience).size(), std::size (buttonRows) + std::size (resourceRows)) << "and no others";
}

TEST (CommunityExperience, SectionsHaveTitlesAndDescriptions)
{
    ExperienceScene scene;
    const char* const spotlight = "Fictional demo artwork showing the future placement of an approved community creator feature.";
    const char* const rows[][3] {
        { "hero", "ZORVA Community preview", "A demo community hero inviting creators to build a private profile or submit owned music." },
        { "featuredTrack", "Community player preview", "A non-playing demonstration of how an approved creator track could be featured." },
        { "producerSpotlight", "Future producer spotlight", spotlight },
        { "artistSpotlight", "Future artist spotlight", spotlight },
        { "participation", "Build your place in ZORVA", "Private creator profile and local preview-draft actions, plus an email submission option." },
    };

    for (const auto& row : rows)
    {
        EXPECT_EQ (scene.child (row[0]).getTitle(), row[1]);
        EXPECT_EQ (scene.child (row[0]).getDescription(), row[2]);
    }
}

//==============================================================================
TEST (CommunityExperience, WhatItCannotDoItselfItAsksItsOwner)
{
    ExperienceScene scene;

    EXPECT_EQ (scene.click ("hero/createYourProfileButton"), "edit profile");
    EXPECT_EQ (scene.click ("hero/heroPrimaryButton"), "open library");
    EXPECT_EQ (scene.click ("participation/createEditProfileButton"), "edit profile");
    EXPECT_EQ (scene.click ("participation/reviewLocalDraftsButton"), "review drafts");
}

TEST (CommunityExperience, AnOwnerWhoHandlesNothingIsNoHarm)
{
    const HubLook look;
    CommunityExperience experience ({}, {}, {}, {});
    experience.setSize (934, experience.heightForWidth (934));

    for (auto* button : allBelow<juce::Button> (experience))
        button->triggerClick();

    pump();
    int boxes = 0;

    for (; currentAlert() != nullptr; ++boxes)
        ASSERT_TRUE (answerAlert ("OK"));

    EXPECT_EQ (boxes, 3) << "the guides need no owner";
}

TEST (CommunityExperience, TheGuidesAreShownInTheWindow)
{
    ExperienceScene scene;

    for (const auto& [id, guide] : guideRows)
    {
        EXPECT_EQ (scene.click (id + juce::String ("/resourceButton")), "");
        EXPECT_EQ (takeBox (juce::MessageBoxIconType::InfoIcon, "OK"), std::string (guide.title) + " | " + guide.text + " | OK");
    }
}

//==============================================================================
TEST (CommunityExperience, TheDemoPlayButtonCannotBeClickedButRead)
{
    CommunityScene scene;
    auto& button = below<juce::TextButton> (scene.child ("featuredTrack"), "playButton");
    int clicks = 0;
    button.onClick = [&clicks] { ++clicks; };
    scene.click ("featuredTrack/playButton");
    button.triggerClick();
    pump();

    EXPECT_EQ (clicks, 0);
    EXPECT_FALSE (button.isEnabled());
    auto* const handler = button.getAccessibilityHandler();
    ASSERT_NE (handler, nullptr);
    EXPECT_EQ (handler->getTitle(), "Demo player unavailable");
    EXPECT_EQ (handler->getDescription(), "Decorative preview control. No audio is loaded and playback is disabled.");
    EXPECT_FALSE (handler->isIgnored());
}

TEST (CommunityExperience, TheHerosThirdButtonTakesTheWordsAndATitleThatFollows)
{
    const char* const rows[][2] {
        { "GET ZORVA DAW", "Get ZORVA DAW" },       { "MANAGE ZORVA DAW", "Manage ZORVA DAW" }, { "UPDATE ZORVA DAW", "Update ZORVA DAW" },
        { "Manage the Update", "Update ZORVA DAW" }, { "manage", "Manage ZORVA DAW" },           { "", "Get ZORVA DAW" },
    };
    ExperienceScene scene;
    auto& button = scene.button ("hero/heroPrimaryButton");

    for (const auto& [text, title] : rows)
    {
        scene.experience->setHeroPrimary (text, juce::String ("What happens: ") + text);
        expectWords (button, text, title, juce::String ("What happens: ") + text, juce::String ("What happens: ") + text);
        EXPECT_EQ (scene.click ("hero/heroPrimaryButton"), "open library") << "whatever the words say";
    }
}
