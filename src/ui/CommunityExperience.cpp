#include "ui/CommunityExperience.h"

#include "app/OwnerDetails.h"
#include "ui/CommunityFeaturedTrack.h"
#include "ui/CommunityHero.h"
#include "ui/CommunityLayout.h"
#include "ui/CommunityParticipation.h"
#include "ui/CommunityResource.h"
#include "ui/CommunitySpotlight.h"
#include "ui/CommunityStyle.h"
#include "ui/CommunityTexts.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

namespace
{
using SendMail = std::function<void (const juce::String& subject, const juce::String& body)>;

std::function<void()> writing (const SendMail& onSendMail, const CommunityMail& mail)
{
    return [onSendMail, &mail]
    {
        if (onSendMail)
            onSendMail (mail.subject, mail.body);
    };
}

std::function<void()> showing (const CommunityGuide& guide)
{
    return [&guide] { juce::AlertWindow::showMessageBoxAsync (juce::MessageBoxIconType::InfoIcon, guide.title, guide.text); };
}
}

CommunityExperience::CommunityExperience (std::function<void()> onOpenLibrary, std::function<void()> onEditProfile,
                                          std::function<void()> onReviewDrafts, SendMail onSendMail)
    : hero (std::make_unique<Hero> (onEditProfile, writing (onSendMail, CommunityMails::submission), std::move (onOpenLibrary))),
      featuredTrack (std::make_unique<FeaturedTrack> (writing (onSendMail, CommunityMails::submission))),
      producerSpotlight (std::make_unique<Spotlight> ("Future producer spotlight", "fictional_producer_preview_png", 0.66f,
                                                      "Submit for a Premiere", writing (onSendMail, CommunityMails::premiere))),
      artistSpotlight (std::make_unique<Spotlight> ("Future artist spotlight", "fictional_black_male_producer_preview_png", 0.52f,
                                                    "Send Your Story + Track", writing (onSendMail, CommunityMails::story))),
      participation (std::make_unique<Participation> (std::move (onEditProfile), std::move (onReviewDrafts),
                                                      writing (onSendMail, CommunityMails::submission)))
{
    setOpaque (true);
    setMouseClickGrabsKeyboardFocus (false);

    const auto add = [this] (juce::Component& section, const juce::String& id)
    {
        section.setComponentID (id);
        addAndMakeVisible (section);
    };

    add (*hero, "hero");
    add (*featuredTrack, "featuredTrack");
    add (*producerSpotlight, "producerSpotlight");
    add (*artistSpotlight, "artistSpotlight");
    add (*participation, "participation");

    for (const auto& texts : communityResources)
    {
        resources.push_back (std::make_unique<Resource> (texts, texts.mail != nullptr ? writing (onSendMail, *texts.mail)
                                                                                      : showing (*texts.guide)));
        add (*resources.back(), "resource" + juce::String (resources.size() - 1));
    }
}

CommunityExperience::~CommunityExperience() = default;

int CommunityExperience::heightForWidth (int width) const
{
    return CommunityLayout (width, (int) resources.size()).height;
}

void CommunityExperience::setHeroPrimary (const juce::String& text, const juce::String& description)
{
    hero->setPrimary (text, description);
}

void CommunityExperience::paint (juce::Graphics& g)
{
    constexpr int margin = 24, footerFromBottom = 42, footerHeight = 18;

    g.fillAll (HubPalette::windowBackground);
    drawSectionHeading (g, spotlightsHeading, "CREATOR SPOTLIGHTS", "The next feature could be yours");
    drawSectionHeading (g, resourcesHeading, "RESOURCES + CONNECTION", "Tools for the work behind the music");
    drawTextLine (g, "Private drafts stay local  /  Contact: " + juce::String (OwnerDetails::contactAddress),
                  { margin, getHeight() - footerFromBottom, juce::jmax (getWidth() - 2 * margin, 0), footerHeight }, plainFont (10.5f),
                  HubPalette::textPrimary.withAlpha (0.72f));
}

void CommunityExperience::resized()
{
    const CommunityLayout layout (getWidth(), (int) resources.size());

    hero->setBounds (layout.hero);
    featuredTrack->setBounds (layout.featuredTrack);
    producerSpotlight->setBounds (layout.producerSpotlight);
    artistSpotlight->setBounds (layout.artistSpotlight);
    participation->setBounds (layout.participation);
    spotlightsHeading = layout.spotlightsHeading;
    resourcesHeading = layout.resourcesHeading;

    for (size_t i = 0; i < resources.size(); ++i)
        resources[i]->setBounds (layout.resources[i]);
}
