#pragma once

#include "Children.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "ui/ActionButton.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunityPage.h"
#include "ui/HubPalette.h"

namespace zorva::test
{
/** The scrolling content alone, in no window; what it asks of its owner is noted. */
struct ExperienceScene
{
    explicit ExperienceScene (int width = 934)
    {
        experience = std::make_unique<CommunityExperience> (
            [this] { notes.add ("open library"); }, [this] { notes.add ("edit profile"); }, [this] { notes.add ("review drafts"); },
            [this] (const juce::String& subject, const juce::String& body) { notes.add (subject + "|" + body); });
        experience->setSize (width, experience->heightForWidth (width));
    }

    template <typename Type = juce::Component>
    Type& child (const juce::String& id)    { return below<Type> (*experience, id); }

    /** A button by its section's id and its own: "hero/heroPrimaryButton". */
    juce::TextButton& button (const juce::String& path)
    {
        return below<juce::TextButton> (child (path.upToFirstOccurrenceOf ("/", false, false)), path.fromFirstOccurrenceOf ("/", false, false));
    }

    /** What one click of a button asked for. */
    std::string click (const juce::String& path)
    {
        notes.clear();
        button (path).triggerClick();
        pump();
        return notes.joinIntoString (" AND ").toStdString();
    }

    HubLook look;
    juce::StringArray notes;
    std::unique_ptr<CommunityExperience> experience;
};

/** Waits for a message box, answers it by a button and tells what it said: "Title | Text | OK, Cancel". Fails for another icon. */
inline std::string takeBox (juce::MessageBoxIconType icon, const juce::String& button)
{
    if (! pumpUntil ([] { return currentAlert() != nullptr; }))
        return "(no box)";

    auto& box = *currentAlert();
    EXPECT_EQ (box.getAlertType(), icon);
    const auto text = alertTitle (box) + " | " + alertMessage (box) + " | " + alertButtons (box).joinIntoString (", ");
    EXPECT_TRUE (answerAlert (button)) << text;
    pump();
    return text.toStdString();
}

/** The whole tab on real stores, in a window in memory. */
struct CommunityScene
{
    static constexpr int width = 940, height = 574;     // the page in a window of 1100 x 720

    explicit CommunityScene (int pageWidth = width, int pageHeight = height)
    {
        page = std::make_unique<CommunityPage> (profiles, drafts, [this] { notes.add ("open library"); });
        page->setSize (pageWidth, pageHeight);
        window = std::make_unique<HeadlessWindow> (*page);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 2.0f, 2.0f }, 0);
        pump();
    }

    ~CommunityScene()
    {
        window.reset();
        page.reset();
    }

    template <typename Type = juce::Component>
    Type& child (const juce::String& id)    { return below<Type> (*page, id); }

    juce::Viewport& viewport()    { return child<juce::Viewport> ("viewport"); }

    /** Scrolls to a button, given by its section's id and its own, and clicks it as a user does. */
    void click (const juce::String& path)
    {
        auto& button = below<juce::TextButton> (child (path.upToFirstOccurrenceOf ("/", false, false)),
                                                path.fromFirstOccurrenceOf ("/", false, false));
        auto& content = *viewport().getViewedComponent();
        viewport().setViewPosition (0, content.getLocalPoint (&button, juce::Point<int>()).y - 100);
        window->click (button);
    }

    HubLook look;
    CreatorProfileStore profiles;
    PreviewDraftStore drafts;
    juce::StringArray notes;
    std::unique_ptr<CommunityPage> page;
    std::unique_ptr<HeadlessWindow> window;
};
}
