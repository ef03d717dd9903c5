#include "platform/SecureMemory.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace
{
/** What stands in the process's memory there, be it freed or not. */
std::string memoryAt (const void* address, size_t size)
{
    std::string bytes (size, '\0');
    const auto memory = ::open ("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    const auto count = ::pread (memory, bytes.data(), size, (off_t) reinterpret_cast<intptr_t> (address));
    ::close (memory);
    EXPECT_EQ (count, (ssize_t) size);
    return bytes;
}
}

TEST (SecureMemory, OverwritesTheseBytesAndNoOther)
{
    std::array<char, 12> bytes;
    bytes.fill ('k');
    platform::wipeMemory (bytes.data() + 2, 8);

    EXPECT_EQ (std::string (bytes.data(), bytes.size()), std::string ("kk\0\0\0\0\0\0\0\0kk", 12));
}

TEST (SecureMemory, NothingToOverwriteIsHarmless)
{
    platform::wipeMemory (nullptr, 0);

    char byte = 'k';
    platform::wipeMemory (&byte, 0);
    EXPECT_EQ (byte, 'k');
}

TEST (SecureMemory, ABlockIsOverwrittenBeforeItIsFreed)
{
    const std::string secret (400, 'k');
    juce::MemoryBlock block (secret.data(), secret.size());
    const auto* const address = block.getData();
    ASSERT_EQ (memoryAt (address, secret.size()), secret);

    platform::wipeBlock (block);

    EXPECT_EQ (block.getSize(), 0u);
    EXPECT_EQ (memoryAt (address, secret.size()).find ("kk"), std::string::npos);
}

TEST (SecureMemory, AnEmptyBlockStaysEmpty)
{
    juce::MemoryBlock block;
    platform::wipeBlock (block);
    EXPECT_TRUE (block.isEmpty());
}

TEST (SecureMemory, ATextIsOverwrittenBeforeItIsFreed)
{
    const std::string secret (400, 'k');
    juce::String text (secret);
    const auto* const address = text.toRawUTF8();
    ASSERT_EQ (memoryAt (address, secret.size()), secret);

    platform::wipeText (text);

    EXPECT_TRUE (text.isEmpty());
    EXPECT_EQ (memoryAt (address, secret.size()).find ("kk"), std::string::npos);
}

TEST (SecureMemory, ATextIsGoneForAllWhoShareIt)
{
    auto text = juce::String::repeatedString ("k", 40);
    const auto shared = text;
    platform::wipeText (text);

    EXPECT_EQ (shared, "");
    EXPECT_EQ (std::string (shared.toRawUTF8(), 40), std::string (40, '\0'));
}

TEST (SecureMemory, ATextOutsideAsciiIsOverwrittenToItsLastByte)
{
    auto text = juce::String::repeatedString (juce::String::charToString ((juce::juce_wchar) 0x1f3b5), 10);
    const auto shared = text;
    platform::wipeText (text);

    EXPECT_EQ (std::string (shared.toRawUTF8(), 40), std::string (40, '\0'));
}

TEST (SecureMemory, AnEmptyTextStaysEmpty)
{
    juce::String text;
    platform::wipeText (text);
    EXPECT_TRUE (text.isEmpty());
}
