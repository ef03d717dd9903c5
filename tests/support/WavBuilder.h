#pragma once

#include <juce_core/juce_core.h>
#include <string>

namespace zorva::test
{
/** Builds RIFF WAVE bytes chunk by chunk, true or false. */
class WavBuilder
{
public:
    static std::string little16 (int value)      { return { (char) value, (char) (value >> 8) }; }
    static std::string little32 (juce::int64 value)
    {
        return { (char) value, (char) (value >> 8), (char) (value >> 16), (char) (value >> 24) };
    }

    /** What a "fmt " chunk says. */
    struct Format
    {
        int tag = 1, channels = 1;
        juce::int64 sampleRate = 8000, byteRate = 8000;
        int blockAlign = 1, bits = 8;
        int size = 16;
    };

    /** A chunk with its content, padded to an even size; statedSize replaces the true one. */
    WavBuilder& chunk (const std::string& id, const std::string& content, juce::int64 statedSize = -1)
    {
        body += id + little32 (statedSize >= 0 ? statedSize : (juce::int64) content.size()) + content;

        if (content.size() % 2 == 1)
            body += '\0';

        return *this;
    }

    WavBuilder& format (const Format& f)
    {
        return chunk ("fmt ", little16 (f.tag) + little16 (f.channels) + little32 (f.sampleRate) + little32 (f.byteRate) + little16 (f.blockAlign)
                                  + little16 (f.bits) + std::string ((size_t) juce::jmax (f.size - 16, 0), '\0'), f.size);
    }

    WavBuilder& format()                         { return format (Format {}); }
    WavBuilder& data (int size)                  { return chunk ("data", std::string ((size_t) size, '\x40')); }

    /** The whole file; riffExtra is added to the size it states. */
    std::string bytes (int riffExtra = 0) const
    {
        return "RIFF" + little32 ((juce::int64) body.size() + 4 + riffExtra) + "WAVE" + body;
    }

private:
    std::string body;
};
}
