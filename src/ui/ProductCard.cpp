#include "ui/ProductCard.h"

#include "ui/ConnectionPill.h"
#include "ui/HubPalette.h"
#include "ui/OverflowMenu.h"
#include "ui/PrimaryButton.h"
#include "ui/ScrollIntoView.h"
#include "ui/SpaceKey.h"
#include "ui/TextPainting.h"

#include <algorithm>

namespace
{
constexpr float cornerRadius = 4.0f;
constexpr int pictureHeight = 160;

struct ChipColours
{
    juce::Colour fill, outline, text;   ///< transparent: not drawn
};

ChipColours chipColoursFor (ProductCardState state)
{
    using namespace HubPalette;

    switch (state)
    {
        case ProductCardState::downloading:
        case ProductCardState::installing:
        case ProductCardState::updateAvailable:  return { warning, {}, inverseText };
        case ProductCardState::cached:           return { {}, border, textSecondary };
        case ProductCardState::installed:        return { success, {}, inverseText };
        case ProductCardState::notInstalled:     break;
    }

    return { {}, accent, accent };
}
}

ProductCard::ProductCard (ProductCardModel modelToShow, bool isOnline)
    : model (std::move (modelToShow)), online (isOnline), overflowButton (std::make_unique<OverflowButton>())
{
    setRepaintsOnMouseActivity (true);
    setWantsKeyboardFocus (true);

    primaryButton.setComponentID ("primaryButton");
    primaryButton.onClick = [this] { sendAction (actionWord); };
    overflowButton->setComponentID ("overflowButton");
    overflowButton->onClick = [this] { showOverflowMenu(); };

    for (auto* button : { static_cast<juce::Button*> (&primaryButton), static_cast<juce::Button*> (overflowButton.get()) })
    {
        button->setMouseClickGrabsKeyboardFocus (false);
        button->addMouseListener (this, false);
        focusRing.watch (*button);
        addAndMakeVisible (button);
    }

    // A click leaves no ring behind: it would look like a selection, and cards show none.
    setMouseClickGrabsKeyboardFocus (false);
    showModel();
}

ProductCard::~ProductCard() = default;

void ProductCard::setOnline (bool shouldBeOnline)
{
    if (online == shouldBeOnline)
        return;

    online = shouldBeOnline;
    refreshPrimaryAction();
    repaint();
}

void ProductCard::setModel (ProductCardModel newModel)
{
    model = std::move (newModel);
    showModel();
    repaint();
}

void ProductCard::showModel()
{
    const auto& product = model.product;

    if (! productPicture.shows (product.image))
        productPicture = ScaledPicture (product.image);

    juce::StringArray description { product.vendor, "version " + product.version, stateChipTextFor (model) };
    description.removeEmptyStrings();

    setTitle (product.name);
    setDescription (description.joinIntoString (", "));
    setTooltip ("Show details of " + product.name);
    overflowButton->setTitle ("More options for " + product.name);
    refreshPrimaryAction();
}

void ProductCard::refreshPrimaryAction()
{
    const auto action = primaryActionFor (model, online);
    actionWord = action.action;
    showAction (primaryButton, action, model.product.name);
}

//==============================================================================
void ProductCard::select()
{
    if (const auto callback = onSelected)
        callback();
}

/** By value: the callback may delete the card that the word came from. */
void ProductCard::sendAction (juce::String word)
{
    if (word.isEmpty())
        return;

    if (const auto callback = onAction)
        callback (word);
}

void ProductCard::showOverflowMenu()
{
    const juce::Component::SafePointer<ProductCard> card (this);

    overflowMenuFor (model).showMenuAsync (juce::PopupMenu::Options().withTargetComponent (*overflowButton), [card] (int result)
    {
        if (card != nullptr)
            card->sendAction (overflowActionFor (result));
    });
}

/** Comes from the buttons too: a fast mouse leaves the card from one of them, and the card must lose its hovered look. */
void ProductCard::mouseExit (const juce::MouseEvent&) { repaint(); }

void ProductCard::mouseUp (const juce::MouseEvent& event)
{
    if (event.eventComponent == this && getLocalBounds().contains (event.getPosition()))
        select();
}

bool ProductCard::keyPressed (const juce::KeyPress& key)
{
    if (! hasKeyboardFocus (false))
        return clickFocusedButtonOnSpace (key);

    if (! key.isKeyCode (juce::KeyPress::returnKey) && ! key.isKeyCode (juce::KeyPress::spaceKey))
        return false;

    select();
    return true;
}

void ProductCard::focusGained (FocusChangeType) { repaint(); }

void ProductCard::focusLost (FocusChangeType) { repaint(); }

void ProductCard::focusOfChildComponentChanged (FocusChangeType cause)
{
    if (cause == focusChangedByTabKey && hasKeyboardFocus (true))
        scrollIntoView (*this);
}

std::unique_ptr<juce::AccessibilityHandler> ProductCard::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (
        *this, juce::AccessibilityRole::group,
        juce::AccessibilityActions().addAction (juce::AccessibilityActionType::press, [this] { select(); }));
}

//==============================================================================
void ProductCard::resized()
{
    primaryButton.setBounds (getLocalBounds().reduced (10).removeFromBottom (36));
    overflowButton->setBounds (getWidth() - 28, 4, 24, 24);
}

void ProductCard::paint (juce::Graphics& g)
{
    const auto body = getLocalBounds().toFloat().reduced (0.5f);

    paintBody (g, body);
    paintPicture (g, body);

    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (body, cornerRadius, 1.0f);

    paintTexts (g);
    paintStateChip (g);
}

void ProductCard::paintOverChildren (juce::Graphics& g)
{
    if (hasKeyboardFocus (false))
        drawFocusRing (g, getLocalBounds().reduced (2));

    focusRing.paint (g);
}

/** Goes by the mouse events that came, as the repaints do; isMouseOver() would ask the window system at every paint. */
bool ProductCard::isHovered() const
{
    const auto& mice = juce::Desktop::getInstance().getMouseSources();

    return std::any_of (mice.begin(), mice.end(), [this] (const juce::MouseInputSource& mouse)
    {
        const auto* under = mouse.getComponentUnderMouse();
        return mouse.canHover() && (under == this || isParentOf (under));
    });
}

void ProductCard::paintBody (juce::Graphics& g, juce::Rectangle<float> body)
{
    const auto pressed = isMouseButtonDown();
    const auto raised = isHovered() && ! pressed;

    if (raised)
    {
        // Only what the body will not cover.
        const juce::Graphics::ScopedSaveState clipped (g);
        g.excludeClipRegion (getLocalBounds().reduced ((int) cornerRadius));
        hoverShadow->draw (g, getLocalBounds());
    }

    g.setColour (pressed ? HubPalette::panel : (raised ? HubPalette::raised : HubPalette::surface));
    g.fillRoundedRectangle (body, cornerRadius);
}

void ProductCard::paintPicture (juce::Graphics& g, juce::Rectangle<float> body)
{
    juce::Path top;
    top.addRoundedRectangle (body.getX(), body.getY(), body.getWidth(), (float) pictureHeight, cornerRadius, cornerRadius,
                             true, true, false, false);

    const juce::Graphics::ScopedSaveState clipped (g);
    g.reduceClipRegion (top);

    const juce::Rectangle<int> area (0, 0, getWidth(), pictureHeight);
    g.setColour (HubPalette::panel);
    g.fillRect (area);

    auto& picture = productPicture.isValid() ? productPicture : fallbackPicture->picture;
    picture.draw (g, { 16, 16, juce::jmax (getWidth() - 32, 0), 128 });

    g.setGradientFill (juce::ColourGradient::vertical (juce::Colours::transparentBlack, 64.0f,
                                                       juce::Colours::black.withAlpha (0.4f), (float) pictureHeight));
    g.fillRect (area);
}

void ProductCard::paintTexts (juce::Graphics& g) const
{
    const auto line = [this] (int y, int height) { return juce::Rectangle<int> (12, y, juce::jmax (getWidth() - 24, 0), height); };
    const auto& product = model.product;

    drawTextLine (g, product.name, line (172, 18), boldFont (14.0f), HubPalette::textPrimary);
    drawTextLine (g, product.vendor, line (194, 14), plainFont (11.0f), HubPalette::textSecondary);
    drawTextLine (g, "Version " + product.version, line (210, 14), plainFont (11.0f), HubPalette::textSecondary);
}

void ProductCard::paintStateChip (juce::Graphics& g) const
{
    const auto text = stateChipTextFor (model);
    const auto font = boldFont (10.0f);
    const auto colours = chipColoursFor (model.state);
    const auto room = juce::jmax (getWidth() - 24, 0);
    const juce::Rectangle<int> chip (12, 232, juce::jmin (connectionPillTextWidth (font, text) + 16, room), 20);

    if (! colours.fill.isTransparent())
    {
        g.setColour (colours.fill);
        g.fillRoundedRectangle (chip.toFloat(), 3.0f);
    }

    if (! colours.outline.isTransparent())
    {
        g.setColour (colours.outline);
        g.drawRoundedRectangle (chip.toFloat().reduced (0.5f), 3.0f, 1.0f);
    }

    drawTextLine (g, text, chip.reduced (4, 0), font, colours.text, juce::Justification::centred);
}

//==============================================================================
ProductCard::OverflowButton::OverflowButton() : juce::Button ("More")
{
    setTooltip ("More options");
    setDescription ("Open a menu with more actions for this product.");
}

void ProductCard::OverflowButton::paintButton (juce::Graphics& g, bool isOver, bool isDown)
{
    constexpr float diameter = 3.0f;
    constexpr float pitch = 5.0f;

    if (isDown || isOver)
    {
        g.setColour (isDown ? HubPalette::panel : HubPalette::raised);
        g.fillRoundedRectangle (getLocalBounds().toFloat(), 3.0f);
    }

    g.setColour (isDown || isOver ? HubPalette::textPrimary : HubPalette::textSecondary);
    const auto centre = getLocalBounds().toFloat().getCentre();

    for (const auto offset : { -pitch, 0.0f, pitch })
        g.fillEllipse (juce::Rectangle<float> (diameter, diameter).withCentre (centre.translated (offset, 0.0f)));
}
