#pragma once

#include <array>
#include <juce_core/juce_core.h>

/** A draft of a mail that the user's own mail program opens. ASCII. */
struct CommunityMail
{
    const char* subject;
    const char* body;
};

/** What a person can write to the makers about. */
namespace CommunityMails
{
extern const CommunityMail submission, premiere, story, sound, bug, feature, team;
}

/** The address that opens a draft to the product's contact. Pure. */
juce::String mailtoAddress (const juce::String& subject, const juce::String& body);

/** A short text that a message box shows. ASCII. */
struct CommunityGuide
{
    const char* title;
    const char* text;
};

/** The guides that come with the Hub. */
namespace CommunityGuides
{
extern const CommunityGuide multitimbral, script, headroom;
}

/** One entry of the page's resources; either a mail or a guide is behind its button. ASCII. */
struct CommunityResourceTexts
{
    const char* category;
    const char* title;
    const char* body;
    const char* tag;
    const char* button;
    const char* whatItDoes;
    const CommunityMail* mail;
    const CommunityGuide* guide;
};

/** The resources, in the order of the page. */
extern const std::array<CommunityResourceTexts, 7> communityResources;

/** What the local drafts dialog says when there are so many drafts. Pure. */
juce::String localDraftsMessage (int numDrafts);
