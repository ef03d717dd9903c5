#include "HubRun.h"

#include "ui/ProductActions.h"

namespace zorva::test
{
namespace
{
const char* nameOf (juce::MessageBoxIconType icon)
{
    switch (icon)
    {
        case juce::MessageBoxIconType::WarningIcon:     return "warning";
        case juce::MessageBoxIconType::InfoIcon:        return "information";
        case juce::MessageBoxIconType::QuestionIcon:    return "question";
        case juce::MessageBoxIconType::NoIcon:
        default:                                        return "no icon";
    }
}
}

HubRun::HubRun (Sidebar::Tab page) : hub (std::make_unique<MainHubComponent>()), window (std::make_unique<HeadlessWindow> (*hub))
{
    if (page != Sidebar::Tab::community)
        open (page);

    juce::Component::unfocusAllComponents();   // the window gives the focus to its first widget
}

void HubRun::open (Sidebar::Tab page)
{
    for (auto* button : allBelow<Sidebar::TabButton> (sidebar()))
        if (button->getTab() == page)
            window->click (*button);
}

HubRun::~HubRun()
{
    close();   // first, so that what workers still report opens no box
    pump();
    juce::ModalComponentManager::getInstance()->cancelAllModalComponents();
    pump();
}

void HubRun::close()
{
    window.reset();
    hub.reset();
}

ProductCard* HubRun::card (const juce::String& id)
{
    for (auto* candidate : allBelow<ProductCard> (*hub))
        if (candidate->getModel().product.id == id)
            return candidate;

    return nullptr;
}

juce::TextButton& HubRun::primary (const juce::String& id)
{
    auto* const owner = card (id);

    if (owner == nullptr)
    {
        ADD_FAILURE() << "no card for " << id;
        std::abort();
    }

    return below<juce::TextButton> (*owner, "primaryButton");
}

std::string HubRun::cards()
{
    juce::StringArray texts;

    for (auto* shown : allBelow<ProductCard> (*hub))
        texts.add (shown->getModel().product.id + ": " + primary (shown->getModel().product.id).getButtonText() + ", "
                   + stateChipTextFor (shown->getModel()));

    return texts.joinIntoString (" | ").toStdString();
}

void HubRun::click (juce::Component& target)
{
    auto* const content = library().getViewedComponent();

    if (content != nullptr && content->isParentOf (&target))
    {
        const auto area = content->getLocalArea (&target, target.getLocalBounds());
        library().setViewPosition (0, area.getCentreY() - library().getMaximumVisibleHeight() / 2);
    }

    window->click (target);
}

void HubRun::select (const juce::String& id)
{
    auto* const target = card (id);
    ASSERT_NE (target, nullptr) << id;
    click (*target);
}

void HubRun::send (const juce::String& id, const juce::String& word)
{
    grid().onProductAction (id, word);
}

juce::String HubRun::shownInPane()
{
    return pane().isVisible() ? pane().selectedProductId() : juce::String ("(closed)");
}

bool HubRun::waitForButton (const juce::String& id, const juce::String& text)
{
    return pumpUntil ([&] { return card (id) != nullptr && primary (id).getButtonText() == text; }, 30000);
}

bool HubRun::waitUntilOnline()
{
    ConnectionPill online;
    online.setOnline (true);
    return pumpUntil ([&] { return pill().getPreferredWidth() == online.getPreferredWidth(); }, 30000);
}

std::string HubRun::takeBox (const juce::String& button)
{
    if (! pumpUntil ([] { return currentAlert() != nullptr; }, 30000))
        return "(no box)";

    auto& box = *currentAlert();
    const auto text = nameOf (box.getAlertType()) + juce::String (" | ") + alertTitle (box) + " | " + alertMessage (box) + " | "
                    + alertButtons (box).joinIntoString (", ");

    EXPECT_TRUE (answerAlert (button)) << text;
    pump();
    return text.toStdString();
}

bool HubRun::showsNoBox()
{
    pump (30);
    return currentAlert() == nullptr;
}

std::string HubRun::statusDifference (const std::function<void (StatusBar&)>& values)
{
    StatusBar expected;
    expected.setSize (statusBar().getWidth(), statusBar().getHeight());

    for (auto* bar : { &expected, &statusBar() })
    {
        bar->setVaultPath ("/vault");
        bar->setFreeBytes (0);
    }

    values (expected);
    return difference (pictureOf (statusBar()), pictureOf (expected));
}
}
