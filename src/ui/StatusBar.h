#pragma once

#include <juce_gui_basics/juce_gui_basics.h>
#include <functional>

/** The strip along the bottom of the window: the Vault's folder as a link, the free disk space, and the running download or a
    short message. Reaches no service; every value is pushed into it. The link is opened by mouse, or by Return or Space while
    the bar has the focus. Message thread. */
class StatusBar final : public juce::Component,
                        public juce::SettableTooltipClient
{
public:
    StatusBar();

    /** The full path of the Vault's folder; a long one is shown by its end. */
    void setVaultPath (const juce::String& path);

    /** 0 or less means unknown. */
    void setFreeBytes (juce::int64 bytes);

    /** A fraction from 0.0 to 1.0, and the product's name. Hides the status message. */
    void setDownloadProgress (double fraction, const juce::String& name);
    void clearDownloadProgress();

    void setStatusMessage (const juce::String& text);
    void clearStatusMessage();

    /** May be empty. */
    std::function<void()> onVaultClicked;

    void paint (juce::Graphics&) override;
    void mouseMove (const juce::MouseEvent&) override;
    void mouseExit (const juce::MouseEvent&) override;
    void mouseUp (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;
    void focusGained (FocusChangeType) override;
    void focusLost (FocusChangeType) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void paintVaultLink (juce::Graphics&, juce::Rectangle<int> row);
    void paintFreeSpace (juce::Graphics&, juce::Rectangle<int> row) const;
    void paintDownload (juce::Graphics&) const;
    void setHovering (bool overLink);
    void openVault();

    juce::String vaultPath;
    juce::int64 freeBytes = 0;
    double downloadProgress = -1.0;   ///< below 0: no download is shown
    juce::String downloadName;
    juce::String statusMessage;
    juce::Rectangle<int> vaultLinkBounds;   ///< empty until the first paint
    bool hoveringVaultLink = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (StatusBar)
};
