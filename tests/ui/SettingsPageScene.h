#pragma once

#include "Children.h"
#include "Painting.h"
#include "app/HubSettings.h"
#include "support/FakeCredentialStore.h"
#include "support/GuiHarness.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/SettingsPage.h"

namespace zorva::test
{
/** A settings page with a credential store in memory and a real client, at first in no window and not visible. */
struct SettingsScene
{
    static constexpr int width = 940, height = 574;     // the page in a window of 1100 x 720

    /** The client asks a port where nobody listens, unless another address is given. */
    explicit SettingsScene (const juce::String& key = {}, const juce::String& endpoint = "https://127.0.0.1:1/v1/responses",
                            const juce::var& initialSettings = HubSettings::load())
        : settings (initialSettings), client (store, { .endpoint = endpoint })
    {
        if (key.isNotEmpty())
            store.hold (key);

        page = std::make_unique<SettingsPage> (settings, store, client);
        page->setSize (width, height);
        page->onOpenVault = [this] { notes.add ("open vault"); };
        page->onClearCache = [this] { notes.add ("clear cache"); };
        page->onCheckForUpdates = [this] { notes.add ("check for updates"); };
        page->onSettingsChanged = [this] { notes.add ("settings changed"); };
    }

    ~SettingsScene()
    {
        window.reset();
        page.reset();
    }

    /** Opens the tab: the page becomes visible in a window, with no focus anywhere and the mouse away from everything. */
    void show()
    {
        window = std::make_unique<HeadlessWindow> (*page);
        juce::Component::unfocusAllComponents();
        window->mouse ({ 2.0f, 2.0f }, 0);
        pump();
    }

    template <typename Type = juce::Component>
    Type& child (const char* id)    { return below<Type> (*page, id); }

    juce::TextButton& button (const char* id)     { return child<juce::TextButton> (id); }
    juce::TextEditor& editor (const char* id)     { return child<juce::TextEditor> (id); }
    juce::String status()                         { return child<juce::Label> ("keyStatusLabel").getText(); }

    void click (const char* id)    { window->click (child (id)); }

    /** Puts a text into the field for the key and presses a button. */
    void enterKeyAndClick (const juce::String& text, const char* buttonId)
    {
        editor ("apiKeyEditor").setText (text);
        click (buttonId);
    }

    /** Puts a text into the manifest's field and presses return there. */
    void enterManifestUrl (const juce::String& text)
    {
        editor ("manifestUrlEditor").grabKeyboardFocus();
        editor ("manifestUrlEditor").setText (text);
        window->key (juce::KeyPress::returnKey);
    }

    std::string noted() const    { return notes.joinIntoString (", ").toStdString(); }

    HubLook look;
    juce::var settings;
    FakeCredentialStore store;
    HubOpenAiClient client;
    juce::StringArray notes;        ///< the callbacks so far
    std::unique_ptr<SettingsPage> page;
    std::unique_ptr<HeadlessWindow> window;
};
}
