#pragma once

#include <functional>
#include <juce_gui_basics/juce_gui_basics.h>
#include <memory>
#include <vector>

/** The scrolling content of the community tab, with fixed content but for the hero's third button. Message thread only. */
class CommunityExperience final : public juce::Component
{
public:
    class Hero;
    class FeaturedTrack;
    class Spotlight;
    class Participation;
    class Resource;

    /** What the page asks its owner to do; each may be empty. */
    CommunityExperience (std::function<void()> onOpenLibrary, std::function<void()> onEditProfile, std::function<void()> onReviewDrafts,
                         std::function<void (const juce::String& subject, const juce::String& body)> onSendMail);
    ~CommunityExperience() override;

    /** The height that the page needs at a width: two columns from 808 on, one below. */
    int heightForWidth (int width) const;

    /** Sets the words of the hero's third button; its title follows from the text. */
    void setHeroPrimary (const juce::String& text, const juce::String& description);

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    std::unique_ptr<Hero> hero;
    std::unique_ptr<FeaturedTrack> featuredTrack;
    std::unique_ptr<Spotlight> producerSpotlight, artistSpotlight;
    std::unique_ptr<Participation> participation;
    std::vector<std::unique_ptr<Resource>> resources;
    juce::Rectangle<int> spotlightsHeading, resourcesHeading;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CommunityExperience)
};
