#pragma once

#include "Children.h"
#include "Painting.h"
#include "app/HubPaths.h"
#include "creator/CreatorProfileWizard.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "ui/HubPalette.h"

namespace zorva::test
{
/** A wizard with the real store, in a window, with the focus nowhere and the mouse away from everything. */
struct WizardScene
{
    static constexpr int width = 934, height = 574;     // the page in a window of 1100 x 720

    /** Opens the draft that is on disk, or none. */
    WizardScene()
    {
        wizard = std::make_unique<CreatorProfileWizard> (store);
        wizard->setSize (width, height);
        wizard->onClose = [this] { ++closed; };
        window = std::make_unique<HeadlessWindow> (*wizard);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 2.0f, 2.0f }, 0);
        pump();
    }

    ~WizardScene() { close(); }

    void close()
    {
        window.reset();
        wizard.reset();
    }

    static juce::File draftFile()    { return HubPaths::creatorDirectory().getChildFile ("profile-v1.json"); }

    /** Puts a draft on disk. */
    static void put (const CreatorProfile& profile)
    {
        juce::String error;
        EXPECT_TRUE (CreatorProfileStore().save (profile, error)) << error;
    }

    /** Puts a draft on disk that stands at this step, with name and role. */
    static void putAt (int step)
    {
        auto profile = named();
        profile.currentStep = step;
        put (profile);
    }

    static CreatorProfile named()
    {
        CreatorProfile profile;
        profile.displayName = "Ann";
        profile.primaryRole = "Artist";
        return profile;
    }

    /** The draft on disk as it is now. */
    static CreatorProfile saved()    { return CreatorProfileStore().load(); }

    template <typename Type = juce::Component>
    Type& child (const char* id)    { return below<Type> (*wizard, id); }

    juce::TextButton& button (const char* id)      { return child<juce::TextButton> (id); }
    juce::TextEditor& editor (const char* id)      { return child<juce::TextEditor> (id); }
    juce::TextEditor& primary()                    { return editor ("primaryEditor"); }
    std::string text (const char* labelId)         { return child<juce::Label> (labelId).getText().toStdString(); }

    /** The step that is shown, counted from 0. */
    int step()
    {
        const auto shown = child<juce::Label> ("stepLabel").getText();
        const int number = shown.fromLastOccurrenceOf ("Step ", false, false).getIntValue();
        EXPECT_EQ (shown, utf8 ("Create Your ZORVA Profile  ·  Step ") + juce::String (number) + " of 10");
        return number - 1;
    }

    void click (const char* id)    { window->click (child (id)); }

    /** Looks at the box that is open and presses one of its buttons. */
    void expectBox (juce::MessageBoxIconType icon, const char* title, const juce::String& message,
                    const juce::StringArray& buttons = { "OK" }, const char* press = "OK")
    {
        pumpUntil ([] { return currentAlert() != nullptr; });    // one that follows another may come a message later
        auto* const box = currentAlert();
        ASSERT_NE (box, nullptr) << "no box \"" << title << "\"";
        EXPECT_EQ (box->getAlertType(), icon);
        EXPECT_EQ (alertTitle (*box), title);
        EXPECT_EQ (alertMessage (*box), message);
        EXPECT_EQ (alertButtons (*box), buttons);
        EXPECT_TRUE (answerAlert (press));
    }

    void expectWarning (const char* title, const juce::String& message)    { expectBox (juce::MessageBoxIconType::WarningIcon, title, message); }
    void expectNews (const char* title, const juce::String& message)       { expectBox (juce::MessageBoxIconType::InfoIcon, title, message); }

    void expectSavedBox()
    {
        expectNews ("Local Draft Saved", "Your private creator profile draft was saved on this computer. Nothing was uploaded or published.");
    }

    void expectAttention (const juce::String& error)
    {
        expectWarning ("Profile Draft Needs Attention", error + "\n\nExisting recovery data was not overwritten.");
    }

    HubLook look;
    CreatorProfileStore store;
    int closed = 0;     ///< calls of onClose
    std::unique_ptr<CreatorProfileWizard> wizard;
    std::unique_ptr<HeadlessWindow> window;
};
}
