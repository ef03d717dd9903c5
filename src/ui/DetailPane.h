#pragma once

#include "catalogue/ProductCardModel.h"
#include "ui/DetailPaneLayout.h"
#include "ui/FocusRing.h"
#include "ui/SplashLogo.h"
#include "ui/WhatsIncludedGallery.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <functional>
#include <optional>

/** All that is known of the product selected in the library, with its actions. Works on a copy of the model: whoever shows it
    hands in a new one when something changed. Knows no service. Message thread. */
class DetailPane final : public juce::Component
{
public:
    class CloseButton;
    class LinkButton;

    DetailPane();
    ~DetailPane() override;

    void setModel (const ProductCardModel&);

    /** Shows no product. */
    void clear();

    /** Does nothing when unchanged. */
    void setOnline (bool);

    /** Empty when no product is shown. */
    juce::String selectedProductId() const;

    /** Gets the word of the primary action, "reinstall" or "reveal". May be empty. */
    std::function<void (const juce::String& actionWord)> onAction;

    /** May be empty. */
    std::function<void()> onClose;

    void paint (juce::Graphics&) override;
    void paintOverChildren (juce::Graphics&) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress&) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    bool showsGallery() const;
    void layoutGallery (const DetailPaneButtons& buttons);
    void showModel();
    void refreshButtons();
    void sendAction (juce::String word);
    void paintFacts (juce::Graphics&, const DetailPaneLayout&, int bottom) const;
    void paintPicture (juce::Graphics&, const DetailPaneLayout&);
    void paintReleaseNotes (juce::Graphics&, const DetailPaneLayout&, int bottom) const;

    std::optional<ProductCardModel> model;
    bool online = false;
    ScaledPicture productPicture;
    juce::SharedResourcePointer<SplashLogo> fallbackPicture;
    std::unique_ptr<CloseButton> closeButton;
    juce::TextButton primaryButton, reinstallButton;
    std::unique_ptr<LinkButton> revealLink;
    juce::String actionWord;
    std::unique_ptr<WhatsIncludedGallery> gallery;
    std::unique_ptr<juce::Viewport> galleryViewport;
    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (DetailPane)
};

/** The cross that closes the pane. */
class DetailPane::CloseButton final : public juce::Button
{
public:
    CloseButton();

private:
    void paintButton (juce::Graphics&, bool isOver, bool isDown) override;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CloseButton)
};

/** A line of text that acts when it is clicked. */
class DetailPane::LinkButton final : public juce::Button
{
public:
    explicit LinkButton (const juce::String& text);

private:
    void paintButton (juce::Graphics&, bool isOver, bool isDown) override;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LinkButton)
};
