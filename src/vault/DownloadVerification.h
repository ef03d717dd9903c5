#pragma once

#include "catalogue/Product.h"

/** A finished transfer on its way into the Vault: a copy of all that the worker needs, so that nothing is shared with the service
    that started it. */
struct DownloadVerification
{
    struct Outcome
    {
        bool success = false;
        juce::String message;    ///< why it failed; on success empty, or what could not be cleaned up
    };

    juce::File partFile;             ///< what was transferred
    juce::File targetFile;           ///< the installer's place, in the same folder
    juce::String expectedSha256;     ///< lower case
    juce::int64 expectedSize = 0;    ///< bytes
    juce::String platformKey;
    Product product;
    juce::File previousInstaller;    ///< what the record named before; may be empty

    /** Checks size and SHA-256, promotes the file together with its record, and retires the previous installer. Takes as long as
        reading the file; worker thread. */
    Outcome run() const;

private:
    juce::String integrityFailure() const;
    Outcome promote() const;
    juce::String retirePrevious() const;
};
