#include "ui/AboutPage.h"

#include "app/HubVersion.h"
#include "app/OwnerDetails.h"
#include "platform/Programs.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/KeepingFocus.h"
#include "ui/SpaceKey.h"
#include "ui/TextPainting.h"

namespace
{
constexpr int margin = 24, widestColumn = 500, linksTop = 377, linkHeight = 22, linkGap = 4, shortestReadable = 12;

const char* const bugDraft = "?subject=ZORVA%20Bug%20%2F%20Issue%20Report"
                             "&body=ZORVA%20version%3A%0AMac%20model%20and%20macOS%20version%3A%0ASteps%20to%20reproduce%3A%0A"
                             "Expected%20result%3A%0AActual%20result%3A%0A";
const char* const featureDraft = "?subject=ZORVA%20Feature%20Request"
                                 "&body=Feature%20request%3A%0AProduction%20workflow%20it%20would%20improve%3A%0AWhy%20it%20matters%3A%0A";
const char* const joinDraft = "?subject=ZORVA%20Team%20Application"
                              "&body=Name%3A%0ARole%20or%20discipline%3A%0APortfolio%20or%20work%20samples%3A%0A"
                              "How%20you%20want%20to%20help%20ZORVA%3A%0A";

/** A link that opens its address without a shell. */
class AddressLink final : public juce::HyperlinkButton
{
public:
    AddressLink (const juce::String& text, const juce::String& address, const juce::String& whatItDoes)
        : juce::HyperlinkButton (text, juce::URL::createWithoutParsing (address)), target (address)
    {
        setColour (juce::HyperlinkButton::textColourId, HubPalette::accent);
        setFont (plainFont (12.0f), false);
        setTitle (text);
        setDescription (whatItDoes);
        setTooltip (whatItDoes);    // after the address, which the framework shows otherwise
    }

private:
    void clicked() override { platform::openAddress (target); }

    const juce::String target;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (AddressLink)
};

std::unique_ptr<juce::HyperlinkButton> link (const char* id, const char* text, const juce::String& address, const char* whatItDoes)
{
    auto result = std::make_unique<AddressLink> (text, address, whatItDoes);
    result->setComponentID (id);
    return result;
}

juce::String draftTo (const char* draft)
{
    return "mailto:" + juce::String (OwnerDetails::contactAddress) + draft;
}

/** The column that everything on the page stands in, over the page's whole height. */
juce::Rectangle<int> columnOf (juce::Rectangle<int> page)
{
    const int width = juce::jlimit (0, widestColumn, page.getWidth() - 2 * margin);
    return { (page.getWidth() - 2 * margin - width) / 2 + margin, 0, width, page.getHeight() };
}
}

AboutPage::AboutPage()
{
    setMouseClickGrabsKeyboardFocus (false);    // else a click on the text would focus the first link

    websiteLink = link ("websiteLink", "Visit Website", OwnerDetails::website, "Open the ZORVA web site in your browser.");
    bugLink = link ("bugLink", "Report a Bug / Issue", draftTo (bugDraft), "Open an email draft to report a bug or issue.");
    featureLink = link ("featureLink", "Request a Feature", draftTo (featureDraft), "Open an email draft to request a feature.");
    joinLink = link ("joinLink", "Apply to Join ZORVA", draftTo (joinDraft), "Open an email draft to apply to join ZORVA.");

    for (auto* each : { websiteLink.get(), bugLink.get(), featureLink.get(), joinLink.get() })
    {
        addAndMakeVisible (*each);
        focusRing.watch (*each);
    }
}

AboutPage::~AboutPage() = default;

void AboutPage::paint (juce::Graphics& g)
{
    const auto column = columnOf (getLocalBounds());
    const auto line = [&] (const juce::String& text, int y, int height, const juce::Font& font, juce::Colour colour)
    {
        drawTextLine (g, text, column.withY (y).withHeight (height), font, colour, juce::Justification::centred);
    };

    g.fillAll (HubPalette::windowBackground);
    logo->picture.draw (g, { column.getX() + (column.getWidth() - 200) / 2, 48, 200, 125 });

    line (utf8 ("ZORVA\xe2\x84\xa2 Hub"), 189, 30, boldFont (24.0f), HubPalette::textPrimary);
    line ("Version " + juce::String (hubVersion), 219, 20, plainFont (14.0f),
          HubPalette::textSecondary);
    line ("The Official Product Hub for ZORVA DAW", 239, 18, plainFont (12.0f), HubPalette::textSecondary);
    line (utf8 (OwnerDetails::creatorName), 263, 18, boldFont (12.0f), HubPalette::accent);
    line (utf8 (OwnerDetails::creatorRole) + utf8 (" \xc2\xb7 ") + OwnerDetails::contactAddress, 281, 18, plainFont (11.0f),
          HubPalette::textSecondary);

    g.setColour (HubPalette::textPrimary);
    g.setFont (plainFont (12.0f));
    g.drawFittedText ("ZORVA Hub manages installation, updates, and offline Vault access for ZORVA products. "
                          + utf8 (OwnerDetails::creatorAccount),
                      { column.getX() + 20, 303, juce::jmax (column.getWidth() - 40, 0), 82 }, juce::Justification::centredTop, 6);

    const auto foot = column.withY (getHeight() - 52).withHeight (30);

    // In a low window it would run through the links.
    if (foot.getY() < margin + linksTop + 2 * linkHeight + linkGap)
        return;

    drawTextLine (g, utf8 (OwnerDetails::copyrightLine), foot.withHeight (15), plainFont (10.0f), HubPalette::textSecondary,
                  juce::Justification::centred);
    drawTextLine (g, utf8 (OwnerDetails::trademarkLine), foot.withTrimmedTop (15), plainFont (10.0f), HubPalette::textSecondary,
                  juce::Justification::centred);
}

void AboutPage::paintOverChildren (juce::Graphics& g)
{
    focusRing.paint (g);
}

void AboutPage::resized()
{
    const auto column = columnOf (getLocalBounds());
    auto rest = getLocalBounds().reduced (margin);
    rest.setHorizontalRange (column.getHorizontalRange());
    rest.removeFromTop (linksTop);

    const auto placeRow = [&rest] (juce::Component& left, juce::Component& right)
    {
        auto row = rest.removeFromTop (linkHeight);
        left.setBounds (row.removeFromLeft (row.getWidth() / 2));
        right.setBounds (row);
    };

    placeRow (*websiteLink, *bugLink);
    rest.removeFromTop (linkGap);
    placeRow (*featureLink, *joinLink);

    // A low window cuts the rows: a sliver that nobody can read is nothing to press, and its line of text only dirt.
    for (auto* each : { websiteLink.get(), bugLink.get(), featureLink.get(), joinLink.get() })
    {
        const bool isReadable = each->getHeight() >= shortestReadable;
        setFocusableKeepingFocus (*each, isReadable);
        each->setVisible (isReadable);
    }
}

bool AboutPage::keyPressed (const juce::KeyPress& key)
{
    return clickFocusedButtonOnSpace (key);
}
