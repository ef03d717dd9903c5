#include "app/PathTrust.h"
#include "support/Files.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
juce::File folderIn (const juce::File& parent, const juce::String& relativePath)
{
    const auto folder = in (parent, relativePath);
    EXPECT_TRUE (folder.createDirectory().wasOk()) << folder.getFullPathName();
    return folder;
}

std::string canonicalTextOf (const juce::File& file)
{
    std::filesystem::path path;
    return PathTrust::canonicalPath (file, path) ? path.string() : "(none)";
}

juce::String longName (int length)
{
    return juce::String::repeatedString ("n", length);
}
}

//==============================================================================
TEST (PathTrust, CanonicalPathResolvesWhatExistsAndNormalisesTheRest)
{
    const auto root = freshFolder ("root");
    const auto real = folderIn (root, "real");
    link (in (root, "alias"), "real");
    link (in (root, "dangling"), "nowhere");
    const auto base = root.getFullPathName().toStdString();

    EXPECT_EQ (canonicalTextOf (real), base + "/real");
    EXPECT_EQ (canonicalTextOf (in (root, "alias")), base + "/real");
    EXPECT_EQ (canonicalTextOf (in (root, "alias/not/yet")), base + "/real/not/yet");
    EXPECT_EQ (canonicalTextOf (in (root, "not/yet/../there")), base + "/not/there");
    EXPECT_EQ (canonicalTextOf (in (root, utf8 ("Größe/音"))), base + "/Größe/音");
    EXPECT_EQ (canonicalTextOf (in (root, "dangling/x")), base + "/dangling/x");
}

TEST (PathTrust, CanonicalPathFailsWithoutTouchingTheOutput)
{
    const auto root = freshFolder ("root");
    link (in (root, "a"), "b");
    link (in (root, "b"), "a");

    for (const auto& file : { juce::File(), in (root, "a"), in (root, "a/x"), in (root, longName (256)) })
    {
        std::filesystem::path path ("untouched");
        EXPECT_FALSE (PathTrust::canonicalPath (file, path)) << file.getFullPathName();
        EXPECT_EQ (path.string(), "untouched");
    }
}

//==============================================================================
TEST (PathTrust, ALinkIsALinkWhereverItLeads)
{
    const auto root = freshFolder ("root");
    const auto file = write (in (root, "file"), "x");
    const auto folder = folderIn (root, "folder");

    EXPECT_TRUE (PathTrust::isReparseOrSymlink (link (in (root, "to file"), "file")));
    EXPECT_TRUE (PathTrust::isReparseOrSymlink (link (in (root, "to folder"), "folder")));
    EXPECT_TRUE (PathTrust::isReparseOrSymlink (link (in (root, "to nothing"), "nothing")));
    EXPECT_TRUE (PathTrust::isReparseOrSymlink (link (in (root, "to itself"), "to itself")));
    EXPECT_FALSE (PathTrust::isReparseOrSymlink (file));
    EXPECT_FALSE (PathTrust::isReparseOrSymlink (folder));
    EXPECT_FALSE (PathTrust::isReparseOrSymlink (in (root, "absent")));
    EXPECT_FALSE (PathTrust::isReparseOrSymlink (in (root, "to folder/absent")));
    EXPECT_FALSE (PathTrust::isReparseOrSymlink (juce::File()));
}

TEST (PathTrust, AncestryIsFreeOfRedirectionsOnlyWithoutAnyLinkAbove)
{
    const auto root = freshFolder ("root");
    folderIn (root, "plain/deep");
    folderIn (root, "real/deep");
    write (in (root, "real/deep/file"), "x");
    link (in (root, "junction"), "real");
    link (in (root, "plain/link"), "../real/deep/file");
    link (in (root, "plain/dangling"), "nowhere");

    const struct { const char* path; bool expected; } cases[]
    {
        { "plain", true }, { "plain/deep", true }, { "plain/not yet", true }, { "plain/not/yet/there", true }, { "real/deep/file", true },
        { "plain/link", false }, { "plain/dangling", false }, { "plain/dangling/x", false }, { "junction", false },
        { "junction/deep", false }, { "junction/deep/file", false }, { "junction/not yet", false }, { "junction/not/yet/there", false },
    };

    for (const auto& test : cases)
        EXPECT_EQ (PathTrust::hasNoReparseAncestry (in (root, test.path)), test.expected) << test.path;

    EXPECT_TRUE (PathTrust::hasNoReparseAncestry (juce::File ("/")));
    EXPECT_FALSE (PathTrust::hasNoReparseAncestry (juce::File())) << "the empty path";
}

//==============================================================================
TEST (PathTrust, ContainmentComparesComponentsWithoutRegardToCase)
{
    const auto home = freshFolder ("work");
    const auto hub = folderIn (home, "Hub");

    const struct { const char* parent; const char* child; bool inside; } cases[]
    {
        { "Hub", "Hub", false }, { "Hub", "Hub/a", true }, { "Hub", "Hub/a/b", true }, { "Hub", "Hub2/file", false },
        { "Hub/Vault", "Hub/Vault2", false }, { "Hub/Vault", "Hub", false }, { "Hub", "", false }, { "Hub", "Other/a", false },
        { "HUB/vault", "hub/VAULT/a", true }, { "hub", "HUB/x", true }, { "hub", "HUB", false },
        { "Hub", "Hub/a/../../x", false }, { "Hub", "Hub/a/../x", true }, { "Hub", "Hub/a/..", false }, { "Hub", "Other/../Hub/x", true },
    };

    for (const auto& test : cases)
        EXPECT_EQ (PathTrust::isCanonicallyInside (in (home, test.parent), in (home, test.child), false), test.inside)
            << test.parent << " - " << test.child;

    EXPECT_TRUE (PathTrust::isCanonicallyInside (juce::File ("/"), hub, false));
    EXPECT_FALSE (PathTrust::isCanonicallyInside (juce::File ("/"), juce::File ("/"), false));
}

TEST (PathTrust, ContainmentIgnoresTheCaseOfLettersOutsideAscii)
{
    const auto home = freshFolder ("work");

    EXPECT_TRUE (PathTrust::isCanonicallyInside (in (home, utf8 ("ÄRGER/Ωμ")), in (home, utf8 ("ärger/ωΜ/x")), false));
    EXPECT_FALSE (PathTrust::isCanonicallyInside (in (home, utf8 ("Ärger")), in (home, "Arger/x"), false));
}

TEST (PathTrust, ADirectChildsParentIsTheParent)
{
    const auto home = freshFolder ("work");
    folderIn (home, "Hub/sub");

    const struct { const char* child; bool direct; } cases[]
    {
        { "Hub/a", true }, { "HUB/a", true }, { "Hub/sub", true }, { "Hub/a/b", false }, { "Hub/sub/x", false }, { "Hub", false },
        { "x", false }, { "Hub2/a", false }, { "Hub/sub/../a", true }, { "Hub/a/../../x", false },
    };

    for (const auto& test : cases)
        EXPECT_EQ (PathTrust::isCanonicallyInside (in (home, "Hub"), in (home, test.child), true), test.direct) << test.child;
}

TEST (PathTrust, ContainmentIsJudgedByWhereLinksLead)
{
    const auto home = freshFolder ("work");
    folderIn (home, "Hub/sub");
    folderIn (home, "Outside");
    link (in (home, "Hub/out"), "../Outside");
    link (in (home, "Outside/back"), "../Hub/sub");
    const auto hub = in (home, "Hub");

    EXPECT_FALSE (PathTrust::isCanonicallyInside (hub, in (home, "Hub/out/x"), false));
    EXPECT_FALSE (PathTrust::isCanonicallyInside (hub, in (home, "Hub/out"), false));
    EXPECT_FALSE (PathTrust::isCanonicallyInside (hub, in (home, "Hub/out/x"), true));
    EXPECT_TRUE (PathTrust::isCanonicallyInside (hub, in (home, "Outside/back/x"), false));
}

TEST (PathTrust, NothingIsInsideAPathThatCannotBeResolved)
{
    const auto root = freshFolder ("root");
    link (in (root, "loop"), "loop");

    for (const bool direct : { false, true })
    {
        EXPECT_FALSE (PathTrust::isCanonicallyInside (in (root, "loop"), in (root, "loop/x"), direct));
        EXPECT_FALSE (PathTrust::isCanonicallyInside (root, in (root, "loop/x"), direct));
        EXPECT_FALSE (PathTrust::isCanonicallyInside (juce::File(), in (root, "x"), direct));
    }

    EXPECT_FALSE (PathTrust::isCanonicallyInside (root, juce::File(), false));
}

//==============================================================================
TEST (PathTrust, ATrustedPathNeedsAPlainRootAndAPlainWayToTheChild)
{
    const auto home = freshFolder ("work");
    const auto hub = folderIn (home, "Hub");
    folderIn (hub, "sub");
    write (in (hub, "file"), "x");
    link (in (hub, "to file"), "file");
    link (in (hub, "to sub"), "sub");
    link (in (hub, "dangling"), "nowhere");
    link (in (home, "Alias"), "Hub");

    const struct { const char* root; const char* child; bool trusted, direct; } cases[]
    {
        { "Hub", "Hub/file", true, true }, { "Hub", "Hub/new", true, true }, { "Hub", "Hub/sub", true, true },
        { "Hub", "Hub/sub/new", true, false }, { "Hub", "Hub", false, false }, { "Hub", "Other/new", false, false },
        { "Hub", "Hub/to file", false, false }, { "Hub", "Hub/to sub", false, false }, { "Hub", "Hub/dangling", false, false },
        { "Hub", "Hub/to sub/new", false, false }, { "Alias", "Alias/file", false, false }, { "Alias", "Hub/file", false, false },
        { "Hub", "Alias/file", false, false }, { "Hub/file", "Hub/file/x", false, false }, { "Absent", "Absent/x", false, false },
    };

    for (const auto& test : cases)
    {
        EXPECT_EQ (PathTrust::isTrustedPathUnder (in (home, test.root), in (home, test.child), false), test.trusted)
            << test.root << " - " << test.child;
        EXPECT_EQ (PathTrust::isTrustedPathUnder (in (home, test.root), in (home, test.child), true), test.direct)
            << test.root << " - " << test.child << " (direct)";
    }
}

TEST (PathTrust, ATrustedPathMayHaveANameOutsideAscii)
{
    const auto root = freshFolder (utf8 ("Größe 音"));
    write (in (root, utf8 ("🎹.exe")), "x");

    EXPECT_TRUE (PathTrust::isTrustedPathUnder (root, in (root, utf8 ("🎹.exe")), true));
    EXPECT_TRUE (PathTrust::isTrustedPathUnder (root, in (root, utf8 ("ünten/tief")), false));
}
