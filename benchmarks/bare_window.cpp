#include <juce_gui_basics/juce_gui_basics.h>

// A window of the Hub's size with one colour in it, and tooltips switched on: what the framework itself costs. With the argument "text"
// it also draws a word, for which the framework reads every font of the system once.

namespace
{
class BareContent final : public juce::Component
{
public:
    explicit BareContent (bool shouldDrawText) : drawsText (shouldDrawText) { setSize (1100, 720); }

    void paint (juce::Graphics& g) override
    {
        g.fillAll (juce::Colour (0xff434343));

        if (drawsText)
            g.drawText ("text", getLocalBounds().removeFromTop (40), juce::Justification::centred);
    }

private:
    const bool drawsText;
    juce::TooltipWindow tooltips { this };
};

class BareApplication final : public juce::JUCEApplication
{
public:
    const juce::String getApplicationName() override       { return "Bare window"; }
    const juce::String getApplicationVersion() override    { return "1.0.0"; }
    bool moreThanOneInstanceAllowed() override             { return true; }

    void initialise (const juce::String& commandLine) override
    {
        window = std::make_unique<juce::DocumentWindow> (getApplicationName(), juce::Colours::black, juce::DocumentWindow::allButtons);
        window->setUsingNativeTitleBar (true);
        window->setContentOwned (new BareContent (commandLine == "text"), true);
        window->centreWithSize (window->getWidth(), window->getHeight());
        window->setVisible (true);
    }

    void shutdown() override { window.reset(); }

private:
    std::unique_ptr<juce::DocumentWindow> window;
};
}

START_JUCE_APPLICATION (BareApplication)
