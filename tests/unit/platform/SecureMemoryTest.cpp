#include "platform/SecureMemory.h"
#include "support/ProcessMemory.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

using zorva::test::memoryAt;

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
