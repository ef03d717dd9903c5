#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "support/Environment.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
juce::File home()    { return juce::File (juce::String::fromUTF8 (std::getenv ("HOME"))); }
juce::File config()  { return in (home(), ".config"); }

/** Gives the process another HOME, as a user with a redirected one has. */
void moveHomeTo (const juce::File& folder)
{
    setEnvironment ("HOME", folder.getFullPathName());
}

const Tree allFolders { { "Vault", "folder" }, { "Runtime", "folder" }, { "Creator", "folder" }, { "Creator/Publish Drafts", "folder" } };
}

TEST (HubPaths, LieInTheUsersConfigurationAndLocalDataFolders)
{
    const struct { juce::File actual; const char* expected; } places[]
    {
        { HubPaths::root(), ".config/ZORVA Hub" },
        { HubPaths::vaultDirectory(), ".config/ZORVA Hub/Vault" },
        { HubPaths::runtimeDirectory(), ".config/ZORVA Hub/Runtime" },
        { HubPaths::creatorDirectory(), ".config/ZORVA Hub/Creator" },
        { HubPaths::publishDraftsDirectory(), ".config/ZORVA Hub/Creator/Publish Drafts" },
        { HubPaths::settingsFile(), ".config/ZORVA Hub/settings.json" },
        { HubPaths::manifestCacheFile(), ".config/ZORVA Hub/manifest.json" },
        { HubPaths::manifestLocalFile(), ".config/ZORVA Hub/manifest.local.json" },
        { HubPaths::installRecordFile(), ".config/ZORVA Hub/installed.json" },
        { HubPaths::productsDirectory(), ".local/share/ZORVA/Products" },
        { HubPaths::factoryContentDirectory(), ".config/ZORVA DAW/Factory Content" },
    };

    for (const auto& place : places)
        EXPECT_EQ (place.actual.getFullPathName(), in (home(), place.expected).getFullPathName());
}

TEST (HubPaths, FollowNoEnvironmentVariableButHome)
{
    const auto before = HubPaths::root().getFullPathName(), products = HubPaths::productsDirectory().getFullPathName();
    setEnvironment ("XDG_CONFIG_HOME", "/somewhere/else");
    setEnvironment ("XDG_DATA_HOME", "/somewhere/else");

    EXPECT_EQ (HubPaths::root().getFullPathName(), before);
    EXPECT_EQ (HubPaths::productsDirectory().getFullPathName(), products);
}

TEST (HubPaths, AskingForAPathMakesNothing)
{
    const auto before = treeOf (home());
    HubPaths::vaultDirectory();
    HubPaths::publishDraftsDirectory();
    HubPaths::productsDirectory();
    HubPaths::factoryContentDirectory();

    EXPECT_EQ (treeOf (home()), before);
}

TEST (HubPaths, EnsureMakesTheRootAndTheFourDirectories)
{
    EXPECT_TRUE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (HubPaths::root()), allFolders);
    EXPECT_EQ (treeOf (config()).size(), allFolders.size() + 1) << "nothing beside the root";
    EXPECT_FALSE (isThere (in (home(), ".local"))) << "the products directory is made by who installs";
}

TEST (HubPaths, EnsureLeavesWhatIsThereAlone)
{
    ASSERT_TRUE (HubPaths::ensureDirectories());
    write (in (HubPaths::vaultDirectory(), "zorva-daw/vault.json"), "kept");
    const auto before = treeOf (HubPaths::root());

    EXPECT_TRUE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (HubPaths::root()), before);
}

TEST (HubPaths, EnsureMakesWhatIsMissingAmongWhatIsThere)
{
    ASSERT_TRUE (HubPaths::publishDraftsDirectory().createDirectory().wasOk());

    EXPECT_TRUE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (HubPaths::root()), allFolders);
}

//==============================================================================
TEST (HubPaths, EnsureRefusesAnApplicationDataDirectoryThatIsALink)
{
    const auto elsewhere = freshFolder ("elsewhere");
    link (config(), elsewhere.getFullPathName());

    EXPECT_FALSE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (HubPaths, EnsureRefusesAnApplicationDataDirectoryBeneathALink)
{
    const auto real = freshFolder ("real");
    const auto alias = link (in (home(), "alias"), real.getFullPathName());
    ASSERT_TRUE (in (real, ".config").createDirectory().wasOk());
    moveHomeTo (alias);

    EXPECT_FALSE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (real), (Tree { { ".config", "folder" } }));
}

TEST (HubPaths, EnsureRefusesARootThatIsALink)
{
    const auto elsewhere = freshFolder ("elsewhere");
    link (HubPaths::root(), elsewhere.getFullPathName());

    EXPECT_FALSE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (HubPaths, EnsureRefusesARootThatIsADanglingLink)
{
    const auto elsewhere = in (freshFolder ("elsewhere"), "gone");
    link (HubPaths::root(), elsewhere.getFullPathName());

    EXPECT_FALSE (HubPaths::ensureDirectories());
    EXPECT_FALSE (isThere (elsewhere));
    EXPECT_EQ (treeOf (config()), (Tree { { "ZORVA Hub", "link: " + elsewhere.getFullPathName().toStdString() } }));
}

TEST (HubPaths, EnsureRefusesARootThatIsAPlainFile)
{
    write (HubPaths::root(), "not a folder");

    EXPECT_FALSE (HubPaths::ensureDirectories());
    EXPECT_EQ (read (HubPaths::root()), "not a folder");
}

TEST (HubPaths, EnsureIsFalseWhereTheRootCannotBeMade)
{
    ASSERT_TRUE (config().createDirectory().wasOk());
    const ReadOnlyFolder locked (config());

    EXPECT_FALSE (HubPaths::ensureDirectories());
    EXPECT_FALSE (isThere (HubPaths::root()));
}

TEST (HubPaths, EnsureStopsAtTheFirstDirectoryItCannotHaveAndKeepsTheOthers)
{
    const struct { const char* inTheWay; Tree expected; } cases[]
    {
        { "Vault", { { "Vault", "file: x" } } },
        { "Runtime", { { "Vault", "folder" }, { "Runtime", "file: x" } } },
        { "Creator", { { "Vault", "folder" }, { "Runtime", "folder" }, { "Creator", "file: x" } } },
        { "Creator/Publish Drafts", { { "Vault", "folder" }, { "Runtime", "folder" }, { "Creator", "folder" }, { "Creator/Publish Drafts", "file: x" } } },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.inTheWay);
        HubPaths::root().deleteRecursively (false);
        write (in (HubPaths::root(), test.inTheWay), "x");

        EXPECT_FALSE (HubPaths::ensureDirectories());
        EXPECT_EQ (treeOf (HubPaths::root()), test.expected);
    }
}

TEST (HubPaths, EnsureMakesNothingThroughALinkedDirectory)
{
    const struct { const char* linked; size_t expectedEntries; } cases[]
    {
        { "Vault", 1 }, { "Runtime", 2 }, { "Creator", 3 }, { "Creator/Publish Drafts", 4 },
    };

    for (const auto& test : cases)
    {
        SCOPED_TRACE (test.linked);
        HubPaths::root().deleteRecursively (false);
        const auto elsewhere = freshFolder ("elsewhere");
        link (in (HubPaths::root(), test.linked), elsewhere.getFullPathName());

        EXPECT_FALSE (HubPaths::ensureDirectories());
        EXPECT_EQ (treeOf (elsewhere), Tree());
        EXPECT_EQ (treeOf (HubPaths::root()).size(), test.expectedEntries);
    }
}

TEST (HubPaths, EnsureRefusesALinkThatStaysInsideTheRoot)
{
    ASSERT_TRUE (in (HubPaths::root(), "Runtime").createDirectory().wasOk());
    link (HubPaths::vaultDirectory(), "Runtime");

    EXPECT_FALSE (HubPaths::ensureDirectories());
}

TEST (HubPaths, TheReservedVaultPathKeyMovesNothing)
{
    const auto elsewhere = freshFolder ("elsewhere");
    write (HubPaths::settingsFile(), "{ \"vaultPath\": \"" + elsewhere.getFullPathName() + "\" }");
    const auto settings = HubSettings::load();
    ASSERT_EQ (settings["vaultPath"].toString(), elsewhere.getFullPathName());

    EXPECT_EQ (HubPaths::vaultDirectory(), in (HubPaths::root(), "Vault"));
    EXPECT_TRUE (HubPaths::ensureDirectories());
    EXPECT_EQ (treeOf (elsewhere), Tree());
}
