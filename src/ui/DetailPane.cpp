#include "ui/DetailPane.h"

#include "support/Text.h"
#include "ui/ConnectionPill.h"
#include "ui/HubPalette.h"
#include "ui/KeepingFocus.h"
#include "ui/PrimaryButton.h"
#include "ui/SpaceKey.h"
#include "ui/TextPainting.h"

namespace
{
/** Less height than this shows no row of the gallery. */
constexpr int smallestGallery = 41;

constexpr int galleryScrollBar = 6;

/** All that the pane paints, for those who cannot see it. */
juce::String describe (const ProductCardModel& model)
{
    juce::StringArray texts { model.product.vendor, stateChipTextFor (model), model.product.description };

    for (const auto& line : factLinesFor (model))
        texts.add (line);

    for (const auto& note : model.product.releaseNotes)
        texts.add (note.title + ": " + note.summary);

    texts.removeEmptyStrings();
    return texts.joinIntoString ("\n");
}
}

DetailPane::DetailPane()
    : closeButton (std::make_unique<CloseButton>()), revealLink (std::make_unique<LinkButton> ("Show in Explorer"))
{
    setOpaque (true);

    closeButton->setComponentID ("closeButton");
    primaryButton.setComponentID ("primaryButton");
    reinstallButton.setComponentID ("reinstallButton");
    revealLink->setComponentID ("revealLink");

    reinstallButton.setButtonText ("REINSTALL");
    reinstallButton.setColour (juce::TextButton::buttonColourId, HubPalette::action);
    reinstallButton.setColour (juce::TextButton::textColourOffId, HubPalette::textPrimary);

    closeButton->onClick = [this]
    {
        if (const auto callback = onClose)
            callback();
    };
    primaryButton.onClick = [this] { sendAction (actionWord); };
    reinstallButton.onClick = [this] { sendAction ("reinstall"); };
    revealLink->onClick = [this] { sendAction ("reveal"); };

    const std::initializer_list<juce::Button*> buttons { closeButton.get(), &primaryButton, &reinstallButton, revealLink.get() };

    for (auto* button : buttons)
    {
        button->setMouseClickGrabsKeyboardFocus (false);
        focusRing.watch (*button, button == revealLink.get() ? 4 : 2);   // the link's text begins at its edge
        addChildComponent (button);
    }

    closeButton->setVisible (true);

    gallery = std::make_unique<WhatsIncludedGallery>();
    gallery->setComponentID ("gallery");
    galleryViewport = std::make_unique<juce::Viewport>();
    galleryViewport->setComponentID ("galleryViewport");
    galleryViewport->setTitle ("What's Included");
    galleryViewport->setDescription ("Instrument engines and effects of ZORVA DAW. Scroll with the arrow keys.");
    galleryViewport->setViewedComponent (gallery.get(), false);
    galleryViewport->setScrollBarsShown (true, false);
    galleryViewport->setScrollBarThickness (galleryScrollBar);

    // What it shows ignores the mouse, and a viewport by itself does too: the wheel would find nothing to scroll here.
    galleryViewport->setInterceptsMouseClicks (true, true);
    galleryViewport->setMouseClickGrabsKeyboardFocus (false);
    focusRing.watch (*galleryViewport);
    addChildComponent (*galleryViewport);

    showModel();
}

DetailPane::~DetailPane() = default;

void DetailPane::setModel (const ProductCardModel& newModel)
{
    model = newModel;
    showModel();
}

void DetailPane::clear()
{
    model.reset();
    showModel();
}

void DetailPane::setOnline (bool shouldBeOnline)
{
    if (online == shouldBeOnline)
        return;

    online = shouldBeOnline;
    refreshButtons();
    repaint();
}

juce::String DetailPane::selectedProductId() const { return model.has_value() ? model->product.id : juce::String(); }

bool DetailPane::showsGallery() const { return selectedProductId() == "zorva-daw"; }

void DetailPane::showModel()
{
    const auto picture = model.has_value() ? model->product.image : juce::Image();

    if (! productPicture.shows (picture))
        productPicture = ScaledPicture (picture);

    setTitle (model.has_value() ? model->product.name : juce::String ("Product details"));
    setDescription (model.has_value() ? describe (*model) : juce::String());
    refreshButtons();
    resized();
    repaint();
}

void DetailPane::refreshButtons()
{
    const auto isInstalled = model.has_value()
                             && (model->state == ProductCardState::installed || model->state == ProductCardState::updateAvailable);

    primaryButton.setVisible (model.has_value());
    revealLink->setVisible (model.has_value());
    reinstallButton.setVisible (isInstalled);

    const auto action = model.has_value() ? primaryActionFor (*model, online) : ProductCardAction();
    actionWord = action.action;

    if (! model.has_value())
        return;

    const auto& name = model->product.name;
    showAction (primaryButton, action, name);

    const auto inVault = model->vaultFile.existsAsFile();
    const auto tooltip = inVault ? juce::String ("Reinstall from the Vault (no download needed)")
                                 : utf8 ("Installer not in the Vault — download it once to enable offline reinstall");
    setEnabledKeepingFocus (reinstallButton, inVault);
    reinstallButton.setTooltip (tooltip);
    reinstallButton.setTitle ("REINSTALL " + name);
    reinstallButton.setDescription (tooltip);

    revealLink->setTitle ("Show " + name + " in Explorer");
}

/** By value: the callback may replace the model that the word came from. */
void DetailPane::sendAction (juce::String word)
{
    if (word.isEmpty())
        return;

    if (const auto callback = onAction)
        callback (word);
}

bool DetailPane::keyPressed (const juce::KeyPress& key) { return clickFocusedButtonOnSpace (key); }

std::unique_ptr<juce::AccessibilityHandler> DetailPane::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (*this, juce::AccessibilityRole::group);
}

//==============================================================================
void DetailPane::resized()
{
    const DetailPaneButtons buttons (getLocalBounds(), reinstallButton.isVisible());

    closeButton->setBounds (buttons.close);
    primaryButton.setBounds (buttons.primary);
    reinstallButton.setBounds (buttons.reinstall);
    revealLink->setBounds (buttons.reveal);
    layoutGallery (buttons);
}

void DetailPane::layoutGallery (const DetailPaneButtons& buttons)
{
    const int top = showsGallery() ? DetailPaneLayout (*model, getWidth()).galleryTop : 0;
    const int height = buttons.detailsBottom - top;
    const bool fits = showsGallery() && height >= smallestGallery;

    if (fits)
    {
        const int width = juce::jmax (getWidth() - 32, 0);
        galleryViewport->setBounds (16, top, width, height);
        gallery->setSize (juce::jmax (width - galleryScrollBar, 0), gallery->heightForWidth (width - galleryScrollBar));
    }

    galleryViewport->setVisible (fits);
}

void DetailPane::paint (juce::Graphics& g)
{
    g.fillAll (HubPalette::surface);
    g.setColour (HubPalette::border);
    g.fillRect (0, 0, 1, getHeight());

    if (! model.has_value())
    {
        drawTextLine (g, "Select a product to see details.", getLocalBounds(), plainFont (12.0f), HubPalette::textSecondary,
                      juce::Justification::centred);
        return;
    }

    // Nothing shows through a disabled button, which has no fill, or in the gaps between the buttons.
    const auto bottom = DetailPaneButtons (getLocalBounds(), reinstallButton.isVisible()).detailsBottom;
    g.reduceClipRegion (0, 0, getWidth(), juce::jmax (bottom, 0));

    const DetailPaneLayout layout (*model, getWidth());
    paintPicture (g, layout);
    paintFacts (g, layout, bottom);
    paintReleaseNotes (g, layout, bottom);

    g.setColour (HubPalette::border);
    g.fillRect (layout.lowerRule);

    if (showsGallery() && layout.galleryHeading.getBottom() <= bottom)
        drawTextLine (g, "What's Included", layout.galleryHeading, boldFont (11.0f), HubPalette::textPrimary,
                      juce::Justification::centredLeft, Overflow::clip);
}

void DetailPane::paintOverChildren (juce::Graphics& g) { focusRing.paint (g); }

void DetailPane::paintPicture (juce::Graphics& g, const DetailPaneLayout& layout)
{
    g.setColour (HubPalette::panel);
    g.fillRoundedRectangle (layout.pictureWell.toFloat(), 4.0f);

    auto& picture = productPicture.isValid() ? productPicture : fallbackPicture->picture;
    picture.draw (g, layout.picture);

    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (layout.pictureWell.toFloat().reduced (0.5f), 4.0f, 1.0f);
}

void DetailPane::paintFacts (juce::Graphics& g, const DetailPaneLayout& layout, int bottom) const
{
    const auto& product = model->product;

    drawTextLine (g, product.name, layout.name, boldFont (16.0f), HubPalette::textPrimary);
    drawTextLine (g, product.vendor, layout.vendor, plainFont (11.0f), HubPalette::textSecondary);

    g.setColour (HubPalette::border);
    g.fillRect (layout.upperRule);

    g.setColour (HubPalette::textPrimary);
    g.setFont (plainFont (12.0f));
    g.drawFittedText (product.description, layout.description, juce::Justification::topLeft, 4, 0.0f);

    // A line that does not fit whole is left out: half a line cannot be read.
    for (size_t i = 0; i < layout.facts.size(); ++i)
        if (layout.facts[i].getBottom() <= bottom)
            drawTextLine (g, layout.factLines[i], layout.facts[i], plainFont (11.0f), HubPalette::textSecondary);
}

void DetailPane::paintReleaseNotes (juce::Graphics& g, const DetailPaneLayout& layout, int bottom) const
{
    // A panel with nothing to read in it would only look broken.
    if (layout.notes.empty() || layout.notes.front().summaryLinesAbove (bottom) == 0)
        return;

    const auto above = [bottom] (juce::Rectangle<int> area) { return area.withBottom (juce::jmin (area.getBottom(), bottom)); };
    const auto box = above (layout.notesBox).toFloat();
    g.setColour (HubPalette::panel);
    g.fillRoundedRectangle (box, 5.0f);
    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (box.reduced (0.5f), 5.0f, 1.0f);

    drawTextLine (g, utf8 ("WHAT'S NEW  ·  VERSION ") + model->product.version, layout.notesHeading, boldFont (11.0f),
                  HubPalette::accent);

    for (size_t i = 0; i < layout.notes.size(); ++i)
    {
        const auto& note = model->product.releaseNotes[i];
        const auto& place = layout.notes[i];

        if (place.title.getBottom() > bottom)
            return;

        drawTextLine (g, note.title, place.title, boldFont (11.5f), HubPalette::textPrimary);

        if (const int lines = place.summaryLinesAbove (bottom); lines > 0)
        {
            g.setColour (HubPalette::textSecondary);
            g.setFont (plainFont (10.5f));
            g.drawFittedText (note.summary, above (place.summary), juce::Justification::topLeft, lines, 0.9f);
        }
    }
}

//==============================================================================
DetailPane::CloseButton::CloseButton() : juce::Button ("Close")
{
    setTooltip ("Close details");
    setTitle ("Close details");
    setDescription ("Close the details of this product.");
}

void DetailPane::CloseButton::paintButton (juce::Graphics& g, bool isOver, bool isDown)
{
    if (isDown || isOver)
    {
        g.setColour (isDown ? HubPalette::panel : HubPalette::raised);
        g.fillRoundedRectangle (getLocalBounds().toFloat(), 3.0f);
    }

    drawTextLine (g, utf8 ("×"), getLocalBounds(), plainFont (16.0f), isOver ? HubPalette::textPrimary : HubPalette::textSecondary,
                  juce::Justification::centred);
}

//==============================================================================
DetailPane::LinkButton::LinkButton (const juce::String& text) : juce::Button (text)
{
    setTooltip ("Show the installer or the installed product in the file manager");
    setDescription (getTooltip());
    setTitle (text);
}

void DetailPane::LinkButton::paintButton (juce::Graphics& g, bool isOver, bool)
{
    const auto font = plainFont (11.0f);
    drawTextLine (g, getButtonText(), getLocalBounds(), font, HubPalette::accent);

    if (isOver)
        g.fillRect (0, getHeight() / 2 + 7, juce::jmin (connectionPillTextWidth (font, getButtonText()), getWidth()), 1);
}
