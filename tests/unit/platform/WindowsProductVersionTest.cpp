#include "platform/ProductVersion.h"
#include "platform/windows/WindowsHeaders.h"
#include "support/Files.h"
#include "support/Text.h"
#include "support/windows/Reporter.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

using namespace zorva::test;

namespace
{
constexpr WORD englishUs = MAKELANGID (LANG_ENGLISH, SUBLANG_ENGLISH_US);

using Bytes = std::vector<char>;

/** The version resource as it stands in the file. */
Bytes resourceOf (const juce::File& program)
{
    auto* const module = ::LoadLibraryExW (program.getFullPathName().toWideCharPointer(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    auto* const found = ::FindResourceExW (module, MAKEINTRESOURCEW (16), MAKEINTRESOURCEW (VS_VERSION_INFO), englishUs);
    Bytes bytes;

    if (found != nullptr)
    {
        const auto* const begin = static_cast<const char*> (::LockResource (::LoadResource (module, found)));
        bytes.assign (begin, begin + ::SizeofResource (module, found));
    }

    EXPECT_FALSE (bytes.empty()) << program.getFullPathName();
    ::FreeLibrary (module);
    return bytes;
}

/** Puts another version resource into the file; none when there are no bytes. */
void setResource (const juce::File& program, Bytes bytes)
{
    auto* const update = ::BeginUpdateResourceW (program.getFullPathName().toWideCharPointer(), FALSE);
    ASSERT_NE (update, nullptr) << ::GetLastError();
    ASSERT_TRUE (::UpdateResourceW (update, MAKEINTRESOURCEW (16), MAKEINTRESOURCEW (VS_VERSION_INFO), englishUs,
                                    bytes.empty() ? nullptr : bytes.data(), (DWORD) bytes.size())) << ::GetLastError();
    ASSERT_TRUE (::EndUpdateResourceW (update, FALSE)) << ::GetLastError();
}

/** The fixed block in a version resource. */
VS_FIXEDFILEINFO* fixedBlock (Bytes& resource)
{
    const DWORD signature = 0xFEEF04BD;
    const auto* const mark = reinterpret_cast<const char*> (&signature);
    const auto found = std::search (resource.begin(), resource.end(), mark, mark + sizeof (signature));
    return found == resource.end() ? nullptr : reinterpret_cast<VS_FIXEDFILEINFO*> (&*found);
}

class ProductVersion : public ::testing::Test
{
protected:
    /** Changes the fixed block in the program's file. */
    template <typename Change>
    void change (Change&& makeChange)
    {
        auto resource = resourceOf (program);
        auto* const block = fixedBlock (resource);
        ASSERT_NE (block, nullptr);
        makeChange (*block);
        setResource (program, resource);
    }

    const juce::File folder = freshFolder ("versions");
    const juce::File program = Reporter (in (folder, "program.exe")).program;
};
}

TEST_F (ProductVersion, GivesTheFirstThreeNumbersOfTheProductVersion)
{
    EXPECT_EQ (platform::productVersionOf (program), "13.4.27") << "neither the file's version nor one of the texts";
}

TEST_F (ProductVersion, FollowsAChangedResource)
{
    const struct { WORD major, minor, build, revision; const char* text; } cases[]
    {
        { 2, 9, 0, 41, "2.9.0" }, { 0, 0, 0, 0, "0.0.0" }, { 65535, 65535, 65535, 65535, "65535.65535.65535" }, { 13, 4, 28, 0, "13.4.28" },
    };

    for (const auto& test : cases)
    {
        change ([&test] (auto& block)
        {
            block.dwProductVersionMS = (DWORD) MAKELONG (test.minor, test.major);
            block.dwProductVersionLS = (DWORD) MAKELONG (test.revision, test.build);
        });

        EXPECT_EQ (platform::productVersionOf (program), test.text);
    }
}

TEST_F (ProductVersion, WithoutASoundFixedBlockThereIsNone)
{
    auto resource = resourceOf (program);
    change ([] (auto& block) { block.dwSignature = 0xFEEF04BC; });
    EXPECT_EQ (platform::productVersionOf (program), "") << "signature";

    // The second two bytes say how long the fixed block is.
    auto without = resource;
    without[2] = without[3] = 0;
    setResource (program, without);
    EXPECT_EQ (platform::productVersionOf (program), "") << "no fixed block";

    setResource (program, {});
    EXPECT_EQ (platform::productVersionOf (program), "") << "no resource";

    setResource (program, resource);
    EXPECT_EQ (platform::productVersionOf (program), "13.4.27");
}

TEST_F (ProductVersion, AResourceCutOffAnywhereGivesTheVersionOrNothing)
{
    const auto resource = resourceOf (program);

    for (const size_t size : { 1u, 2u, 6u, 38u, 40u, 64u, 91u, 92u, 100u, 200u })
    {
        ASSERT_LT (size, resource.size());
        setResource (program, Bytes (resource.begin(), resource.begin() + (ptrdiff_t) size));
        const auto version = platform::productVersionOf (program);
        EXPECT_TRUE (version == "" || version == "13.4.27") << size << " bytes: " << version;
    }
}

TEST_F (ProductVersion, AnOversizeResourceIsNotRead)
{
    auto resource = resourceOf (program);
    resource.resize (0x200000, 0);
    setResource (program, resource);
    const auto version = platform::productVersionOf (program);
    EXPECT_TRUE (version == "" || version == "13.4.27") << version << ": the system may say how much of it counts";
}

TEST_F (ProductVersion, ReadsAProgramWhateverItsPath)
{
    for (const auto* name : { "with blank.exe", "Größe 音楽.exe", "%TEMP%.exe", "a.b.c.EXE" })
    {
        const auto copy = in (folder, utf8 (name));
        ASSERT_TRUE (program.copyFileTo (copy)) << name;
        EXPECT_EQ (platform::productVersionOf (copy), "13.4.27") << name;
    }
}

TEST_F (ProductVersion, LeavesTheFileFreeAndUnchanged)
{
    const auto before = read (program);
    EXPECT_EQ (platform::productVersionOf (program), "13.4.27");
    EXPECT_EQ (read (program), before);
    EXPECT_TRUE (program.deleteFile());
}

TEST_F (ProductVersion, WhatIsNoProgramHasNone)
{
    EXPECT_EQ (platform::productVersionOf (in (folder, "absent.exe")), "");
    EXPECT_EQ (platform::productVersionOf (folder), "");
    EXPECT_EQ (platform::productVersionOf (write (in (folder, "empty.exe"), {})), "");
    EXPECT_EQ (platform::productVersionOf (write (in (folder, "text.exe"), "MZ but no program")), "");
    EXPECT_EQ (platform::productVersionOf (juce::File()), "");
}
