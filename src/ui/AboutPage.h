#pragma once

#include "ui/FocusRing.h"
#include "ui/SplashLogo.h"

#include <juce_gui_basics/juce_gui_basics.h>

/** The about tab: what the Hub is, which version runs, who stands behind it, and four links. It has no state and reaches no
    service. Message thread. */
class AboutPage final : public juce::Component
{
public:
    AboutPage();
    ~AboutPage() override;

    void paint (juce::Graphics& g) override;
    void paintOverChildren (juce::Graphics& g) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress& key) override;

private:
    juce::SharedResourcePointer<SplashLogo> logo;
    std::unique_ptr<juce::HyperlinkButton> websiteLink, bugLink, featureLink, joinLink;
    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (AboutPage)
};
