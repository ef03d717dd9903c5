#pragma once

#include "catalogue/ProductCardModel.h"
#include "ui/CardShadow.h"
#include "ui/FocusRing.h"
#include "ui/SplashLogo.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <functional>

/** One product of the library with its picture, its state and its one primary action. Knows no service: it reports what the user
    wants. A click anywhere else on the card, or Return or Space while it has the focus, selects it. Message thread.

    Either callback may delete the card. */
class ProductCard final : public juce::Component,
                          public juce::SettableTooltipClient
{
public:
    class OverflowButton;

    ProductCard (ProductCardModel, bool online);
    ~ProductCard() override;

    /** Does nothing when unchanged. */
    void setOnline (bool);

    void setModel (ProductCardModel);
    const ProductCardModel& getModel() const { return model; }

    /** Gets "download", "update", "install", "open", "reveal", "cancel" or "delete-vault". May be empty. */
    std::function<void (const juce::String& actionWord)> onAction;

    /** May be empty. */
    std::function<void()> onSelected;

    void paint (juce::Graphics&) override;
    void paintOverChildren (juce::Graphics&) override;
    void resized() override;
    void mouseExit (const juce::MouseEvent&) override;
    void mouseUp (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;
    void focusGained (FocusChangeType) override;
    void focusLost (FocusChangeType) override;
    void focusOfChildComponentChanged (FocusChangeType) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void showModel();
    void refreshPrimaryAction();
    void select();
    void sendAction (juce::String word);
    void showOverflowMenu();
    bool isHovered() const;
    void paintBody (juce::Graphics&, juce::Rectangle<float> body);
    void paintPicture (juce::Graphics&, juce::Rectangle<float> body);
    void paintTexts (juce::Graphics&) const;
    void paintStateChip (juce::Graphics&) const;

    ProductCardModel model;
    bool online;
    juce::String actionWord;
    ScaledPicture productPicture;
    juce::SharedResourcePointer<SplashLogo> fallbackPicture;
    juce::SharedResourcePointer<CardShadow> hoverShadow;
    juce::TextButton primaryButton;
    std::unique_ptr<OverflowButton> overflowButton;
    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ProductCard)
};

/** The three dots in the corner of a card. */
class ProductCard::OverflowButton final : public juce::Button
{
public:
    OverflowButton();

private:
    void paintButton (juce::Graphics&, bool isOver, bool isDown) override;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OverflowButton)
};
