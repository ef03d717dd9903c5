#include "ui/CommunityTexts.h"

#include "app/OwnerDetails.h"

namespace CommunityMails
{
const CommunityMail submission {
    "Made with ZORVA Submission",
    "Artist / producer name:\n\nTrack title:\n\nPrivate listening link:\n\n"
    "Portrait or cover-art link (optional):\n\n"
    "I confirm I own or control the submitted music and artwork: Yes / No\n"
    "I grant ZORVA DAW permission to review this material for a possible community feature: Yes / No\n"
};

const CommunityMail premiere {
    "Made with ZORVA Producer Premiere Submission",
    "Producer / artist name:\n\nShort bio:\n\nZORVA-made track title:\n\nPrivate listening link:\n\n"
    "Portrait / press-photo link:\n\n"
    "I own or control the music and image and grant ZORVA DAW permission to review this material: Yes / No\n"
};

const CommunityMail story {
    "Made with ZORVA Artist Story Submission",
    "Producer / artist name:\n\nYour story:\n\nZORVA-made track title:\n\nPrivate listening link:\n\n"
    "Portrait / press-photo link:\n\n"
    "I own or control the music and image and approve review for a ZORVA community feature: Yes / No\n"
};

const CommunityMail sound {
    "ZORVA Sound Suggestion",
    "Sound or preset idea:\n\nGenre / production context:\n"
};

const CommunityMail bug {
    "ZORVA Bug / Issue Report",
    "ZORVA version:\n\nComputer and operating system:\n\nSteps to reproduce:\n\nExpected result:\n\n"
    "Actual result:\n"
};

const CommunityMail feature {
    "ZORVA Feature Request",
    "Feature request:\n\nProduction workflow it would improve:\n\nWhy it matters:\n"
};

const CommunityMail team {
    "ZORVA Team Application",
    "Name:\n\nLocation / time zone:\n\nRole or discipline:\n\nPortfolio / work samples:\n\n"
    "How you use music technology:\n\nWhy you want to help build ZORVA:\n\nAvailability:\n\n"
    "Note: This is an expression of interest, not an offer of employment.\n"
};
}

juce::String mailtoAddress (const juce::String& subject, const juce::String& body)
{
    return "mailto:" + juce::String (OwnerDetails::contactAddress) + "?subject=" + juce::URL::addEscapeChars (subject, true)
         + "&body=" + juce::URL::addEscapeChars (body, true);
}

//==============================================================================
namespace CommunityGuides
{
const CommunityGuide multitimbral {
    "16-Channel Multitimbral Recording",
    "ZORVA starter workflow\n\n1. Choose Add Track > Multitimbral MIDI Group.\n"
    "2. Load the ZORVA instrument, AU, or VST3 on the parent group track.\n"
    "3. Select a child track; channels 1-16 map to the matching module parts.\n"
    "4. Arm the child tracks you want to capture.\n"
    "5. Record. Each child retains its own MIDI notes and channel assignment, and its MIDI activity indicator "
    "follows the addressed part.\n\n"
    "Audio meters and per-part audio effects require the instrument to expose separate stereo output pairs "
    "and those returns to be assigned. Instruments with one stereo output remain correctly metered and "
    "processed on the parent return.\n\n"
    "This bundled guide is local content; it does not download or install files."
};

const CommunityGuide script {
    "ZORVA Script Starter",
    "Open the ZORVA Script Engine, paste or type JavaScript, then Run. ZORVA uses ES3, so use var instead of "
    "let/const and function() instead of arrow functions.\n\n// Read session state without changing it\n"
    "var bpm = ZORVA.getBpm();\nvar tracks = ZORVA.getTrackCount();\nZORVA.print('BPM: ' + bpm);\n"
    "ZORVA.print('Tracks: ' + tracks);\n\n"
    "Supported starters include ZORVA.play(), ZORVA.stop(), ZORVA.record(), ZORVA.setBpm(bpm), "
    "ZORVA.setVolume(track, dB), ZORVA.setPan(track, -1..1), ZORVA.setMute(track, bool), "
    "ZORVA.getMeter(track), and ZORVA.wait(ms)."
};

const CommunityGuide headroom {
    "ZORVA Tip 001 - Preserve Headroom",
    "Set input gain before reaching for processors. Keep individual tracks out of the red and leave "
    "comfortable headroom on the master bus. Make level decisions at a consistent monitoring volume, then add "
    "processing only when each move supports the music."
};
}

//==============================================================================
const std::array<CommunityResourceTexts, 7> communityResources { {
    { "Templates", "16-Channel Multitimbral Recording",
      "Assign MIDI channels 1-16 and capture each part as editable MIDI.",
      "ZORVA Starter", "View Setup Guide", "Open the local multitimbral setup guide.",
      nullptr, &CommunityGuides::multitimbral },
    { "Scripts", "Purpose-Built ZORVA Workflows",
      "A safe JavaScript starter for transport, track, mixer, and console calls.",
      "Built-in Guide", "Open Script Guide", "Open the local ZORVA Script Engine starter guide.",
      nullptr, &CommunityGuides::script },
    { "Sounds", "Shape Future Community Packs",
      "Suggest professional drums, keys, basses, pads, textures, and presets.",
      "Community Preview", "Suggest a Sound", "Open an email draft with a sound suggestion template.",
      &CommunityMails::sound, nullptr },
    { "Tips + Mixing", "A Clean Starting Point",
      "Start with healthy gain and headroom; add processing only when it supports the music.",
      "ZORVA Tip 001", "Read Starter Tip", "Open the local headroom and gain-staging tip.",
      nullptr, &CommunityGuides::headroom },
    { "Issues + Bugs", "Report a Problem Directly",
      "Send a reproducible DAW, Hub, installation, or accessibility issue straight to ZORVA.",
      "Direct Contact", "Report a Bug / Issue", "Open a structured ZORVA issue-report email draft.",
      &CommunityMails::bug, nullptr },
    { "Feature Requests", "Help Shape the Next Release",
      "Describe a focused music-production workflow improvement directly to the creator.",
      "Direct Contact", "Request a Feature", "Open a structured ZORVA feature-request email draft.",
      &CommunityMails::feature, nullptr },
    { "Build With Us", "Help Build the ZORVA Team",
      "Introduce yourself across DSP, engineering, QA, accessibility, sound design, or community.",
      "Interest Call", "Join the Interest List", "Open a ZORVA Team introduction email draft.",
      &CommunityMails::team, nullptr },
} };

juce::String localDraftsMessage (int numDrafts)
{
    if (numDrafts == 0)
        return "No local preview drafts have been saved yet. After a successful WAV render, use Prepare Preview in ZORVA Hub from the DAW.";

    return juce::String (numDrafts) + (numDrafts == 1 ? " private local draft is" : " private local drafts are")
         + " saved on this computer. Nothing is uploaded or public. The DAW source WAV remains untouched.\n\n"
           "The draft folder can be opened for owner-controlled export or deletion.";
}
