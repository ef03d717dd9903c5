#pragma once

#include "catalogue/Product.h"

/** The products that the scenarios install, and the states they start from. Everything lies below HOME. */
namespace faults
{
/** An application or sound pack of this release ("1.0.0" is the old one, "2.0.0" the new one), whose "win" entry fits the payload. */
Product productFor (Product::InstallType type, const juce::String& version, const juce::File& payload);

/** The bytes of a payload: the same for the same word, long enough to take several writes. */
void writePayload (const juce::File& file, const juce::String& word);

/** An archive with one program and some data. */
void writeApplicationArchive (const juce::File& file, const juce::String& word);

/** An archive laid out as the sound pack of productFor() says. */
void writeContentArchive (const juce::File& file, const juce::String& word);

/** Where an archive or installer that is about to be used lies. */
juce::File inbox (const juce::String& name);
}
