#include "creator/JudgedPictures.h"

#include <algorithm>

namespace
{
constexpr size_t mostJudgements = 8;
}

std::optional<bool> JudgedPictures::verdictOn (const juce::String& digest) const
{
    const juce::ScopedLock holder (lock);
    const auto found = std::find_if (judgements.begin(), judgements.end(),
                                     [&] (const Judgement& each) { return each.digest == digest; });

    return found != judgements.end() ? std::optional (found->verdict) : std::nullopt;
}

void JudgedPictures::remember (const juce::String& digest, bool verdict)
{
    if (digest.isEmpty())
        return;

    const juce::ScopedLock holder (lock);

    if (judgements.size() == mostJudgements)
        judgements.erase (judgements.begin());

    judgements.push_back ({ digest, verdict });
}
