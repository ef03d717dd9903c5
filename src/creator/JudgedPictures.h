#pragma once

#include <juce_core/juce_core.h>
#include <optional>
#include <vector>

/** What the decoder said of the last few pictures, by the SHA-256 (FIPS 180-4) of their bytes. A profile is judged whole at every step
    of the wizard and again at every save; decoding a photo takes longer than a frame, its digest does not. Any thread. */
class JudgedPictures
{
public:
    /** The judgement on the picture of this digest, if it is one of the last eight. */
    std::optional<bool> verdictOn (const juce::String& digest) const;

    /** Keeps a judgement in place of the oldest; none under an empty digest, which stands for one that failed. */
    void remember (const juce::String& digest, bool verdict);

private:
    struct Judgement
    {
        juce::String digest;
        bool verdict;
    };

    juce::CriticalSection lock;
    std::vector<Judgement> judgements;
};
