#include "FuzzHome.h"

#include "creator/WavDuration.h"

#include <optional>
#include <string_view>

namespace
{
void require (bool condition)
{
    if (! condition)
        std::abort();
}

/** Bytes in memory that count how many of them are read. */
class CountingStream final : public juce::InputStream
{
public:
    CountingStream (const void* data, size_t size) : bytes (data, size, false) {}

    juce::int64 getTotalLength() override                  { return bytes.getTotalLength(); }
    bool isExhausted() override                            { return bytes.isExhausted(); }
    juce::int64 getPosition() override                     { return bytes.getPosition(); }
    bool setPosition (juce::int64 newPosition) override    { return bytes.setPosition (newPosition); }

    int read (void* destination, int count) override
    {
        const auto got = bytes.read (destination, count);
        total += got;
        return got;
    }

    juce::int64 total = 0;

private:
    juce::MemoryInputStream bytes;
};

/** The measuring once more, on the bytes in memory and by another road: the chunks are first listed, then judged. */
class Reading
{
public:
    Reading (const std::uint8_t* data, std::size_t size) : bytes (reinterpret_cast<const char*> (data), size) {}

    std::optional<double> duration() const
    {
        if (bytes.size() < 44 || bytes.substr (0, 4) != "RIFF" || bytes.substr (8, 4) != "WAVE" || number (4, 4) + 8 > bytes.size())
            return {};

        std::uint64_t dataSize = 0, byteRate = 0;
        bool hasData = false, hasFormat = false;

        for (std::uint64_t at = 12; at + 8 <= bytes.size() && at < 1048576 && ! (hasData && hasFormat);)
        {
            const auto size = number (at + 4, 4);

            if (at + 8 + size > bytes.size())
                return {};

            if (bytes.substr (at, 4) == "data")
            {
                hasData = true;
                dataSize = size;
            }
            else if (bytes.substr (at, 4) == "fmt ")
            {
                if (! isFormat (at + 8, size))
                    return {};

                hasFormat = true;
                byteRate = number (at + 16, 4);
            }

            at += 8 + size + size % 2;
        }

        if (! hasData || ! hasFormat || dataSize == 0)
            return {};

        return (double) dataSize / (double) byteRate;
    }

private:
    std::uint64_t number (std::uint64_t at, int width) const
    {
        std::uint64_t value = 0;

        while (--width >= 0)
            value = value << 8 | (std::uint8_t) bytes[at + (std::uint64_t) width];

        return value;
    }

    bool isFormat (std::uint64_t at, std::uint64_t size) const
    {
        if (size < 16 || size > 4096)
            return false;

        const auto tag = number (at, 2), channels = number (at + 2, 2), sampleRate = number (at + 4, 4), bits = number (at + 14, 2);
        return (tag == 1 || tag == 3 || tag == 65534)
            && channels >= 1 && channels <= 64
            && sampleRate >= 8000 && sampleRate <= 384000
            && number (at + 8, 4) != 0 && number (at + 12, 2) != 0
            && bits >= 8 && bits <= 64;
    }

    const std::string_view bytes;
};

std::optional<double> durationOf (const std::string& bytes)
{
    juce::MemoryInputStream stream (bytes.data(), bytes.size(), false);
    return wavDurationInSeconds (stream);
}
}

/** Any bytes as a WAV file: measured as the rule has it, from a file as from memory, no byte read twice, and what follows is of no
    account. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    CountingStream stream (data, size);
    const auto duration = wavDurationInSeconds (stream);
    require (duration == Reading (data, size).duration());
    require (stream.total <= (juce::int64) size);

    const auto file = fuzz::home().getChildFile ("song.wav");
    fuzz::writeBytes (file, data, size);
    require (wavDurationInSeconds (file) == duration);

    if (! duration.has_value())
        return 0;

    require (*duration > 0.0 && *duration <= 4294967295.0);
    require (durationOf (std::string (reinterpret_cast<const char*> (data), size) + "RIFF and more") == duration);
    return 0;
}
