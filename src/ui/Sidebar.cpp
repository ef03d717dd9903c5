#include "ui/Sidebar.h"

#include "ui/FocusRing.h"
#include "ui/HubPalette.h"
#include "ui/SpaceKey.h"
#include "ui/TextPainting.h"

namespace
{
constexpr int logoAreaHeight = 84;
constexpr int buttonHeight = 34;
}

Sidebar::Sidebar()
    : communityButton (std::make_unique<TabButton> (Tab::community, "Community", "ZORVA Community",
                                                    "Open creator spotlights, private profiles, local drafts, and resources.",
                                                    false)),
      libraryButton (std::make_unique<TabButton> (Tab::library, "Library", "ZORVA DAW Library",
                                                  "Open ZORVA DAW downloads, installation, updates, and included products.", true)),
      settingsButton (std::make_unique<TabButton> (Tab::settings, "Settings", "ZORVA Hub Settings",
                                                   "Open Hub, Vault, and private AI-key settings.", false)),
      aboutButton (std::make_unique<TabButton> (Tab::about, "About", "About ZORVA Hub",
                                                "Open ZORVA ownership, version, and contact information.", false))
{
    setOpaque (true);

    communityButton->setComponentID ("communityButton");
    libraryButton->setComponentID ("libraryButton");
    settingsButton->setComponentID ("settingsButton");
    aboutButton->setComponentID ("aboutButton");

    for (auto* button : buttons())
    {
        button->onClick = [this, tab = button->getTab()] { tabClicked (tab); };
        addAndMakeVisible (button);
    }

    refreshSelection();
}

Sidebar::~Sidebar() = default;

void Sidebar::setCurrentTab (Tab tab)
{
    currentTab = tab;
    refreshSelection();
    repaint();
}

void Sidebar::paint (juce::Graphics& g)
{
    g.fillAll (HubPalette::panel);
    g.setColour (HubPalette::border);
    g.fillRect (getWidth() - 1, 0, 1, getHeight());

    logo->picture.draw (g, { 12, 12, juce::jmax (getWidth() - 24, 0), 60 });
}

void Sidebar::resized()
{
    auto area = getLocalBounds();
    area.removeFromTop (logoAreaHeight);

    for (auto* button : buttons())
        button->setBounds (area.removeFromTop (buttonHeight));
}

bool Sidebar::keyPressed (const juce::KeyPress& key) { return clickFocusedButtonOnSpace (key); }

std::array<Sidebar::TabButton*, 4> Sidebar::buttons() const
{
    return { communityButton.get(), libraryButton.get(), settingsButton.get(), aboutButton.get() };
}

void Sidebar::tabClicked (Tab tab)
{
    if (tab == currentTab)
        return;

    setCurrentTab (tab);

    if (const auto callback = onTabChanged)
        callback (tab);
}

void Sidebar::refreshSelection()
{
    for (auto* button : buttons())
        button->setSelected (button->getTab() == currentTab);
}

//==============================================================================
Sidebar::TabButton::TabButton (Tab tabToUse, const juce::String& name, const juce::String& title, const juce::String& description,
                               bool isDaw)
    : juce::Button (name), tab (tabToUse), dawEntry (isDaw)
{
    setTitle (title);
    setDescription (description);
    setTooltip (description);
    setWantsKeyboardFocus (true);
}

void Sidebar::TabButton::setSelected (bool shouldBeSelected)
{
    if (selected == shouldBeSelected)
        return;

    selected = shouldBeSelected;
    repaint();
}

void Sidebar::TabButton::paintButton (juce::Graphics& g, bool isOver, bool isDown)
{
    if (isDown)
        g.fillAll (HubPalette::panel.darker (0.15f));
    else if (isOver)
        g.fillAll (HubPalette::surface);

    auto content = getLocalBounds().reduced (8, 6);

    if (dawEntry)
        paintDawMarks (g, content);

    drawTextLine (g, getName().toUpperCase(), content, boldFont (11.0f),
                  HubPalette::textPrimary.withMultipliedAlpha (selected || dawEntry ? 1.0f : 0.7f));

    if (selected)
    {
        g.setColour (HubPalette::accent);
        g.fillRect (getLocalBounds().reduced (8, 0).removeFromBottom (3));
    }

    if (hasKeyboardFocus (true))
        drawFocusRing (g, getLocalBounds().reduced (2));
}

void Sidebar::TabButton::paintDawMarks (juce::Graphics& g, juce::Rectangle<int>& content) const
{
    g.setColour (HubPalette::actionBright);
    g.fillRoundedRectangle (2.0f, (float) (getHeight() / 2 - 7), 2.0f, 14.0f, 1.0f);

    const auto chip = content.removeFromRight (35).reduced (0, 2);
    content.removeFromRight (5);

    g.setColour (HubPalette::action.darker (0.42f));
    g.fillRoundedRectangle (chip.toFloat(), 4.0f);
    drawTextLine (g, "DAW", chip, boldFont (8.5f), HubPalette::textPrimary, juce::Justification::centred);
}
