#include "InstallRun.h"
#include "support/FolderWatch.h"
#include "support/PrivateMounts.h"
#include "support/ZipBuilder.h"

#include <functional>

using namespace zorva::test;

namespace
{
juce::File packFile (const juce::String& relativePath)
{
    return in (HubPaths::factoryContentDirectory(), relativePath);
}

/** A pack that is in order. */
ZipBuilder goodPack (const std::string& patch = "patch")
{
    return ZipBuilder().folder ("pack").file ("pack/patches/first.json", patch).file ("pack/LICENSE.txt", "licence");
}

/** Puts an archive where a download would. */
juce::File putArchive (const std::string& archive, const juce::String& fileName = "pack.zip")
{
    return writeBytes (vaultFile ("sounds/" + fileName), archive);
}

/** "done: " or "failed: " and the message of an install by hand. */
std::string installPack (const Product& product, const juce::File& archive, const juce::File& root = {})
{
    juce::String message;
    const bool ok = InstallService::installContent (product, archive, message, root);
    return (ok ? "done: " : "failed: ") + message.toStdString();
}

std::string installPack (const ZipBuilder& archive)
{
    return installPack (packOf ("sounds", "1.0.0", archive.bytes()), putArchive (archive.bytes()));
}

std::string installedAt (const juce::String& version, const juce::File& root = HubPaths::factoryContentDirectory())
{
    return "done: Installed Name of sounds to " + in (root, "sounds/" + version).getFullPathName().toStdString() + ".";
}

/** What a pack's directory holds of one version, its manifest left out. */
Tree contentOf (const juce::String& version)
{
    auto tree = treeOf (packFile ("sounds/" + version));
    EXPECT_EQ (tree.erase ("manifest.json"), (size_t) 1);
    return tree;
}

Tree goodContent (const std::string& patch = "patch")
{
    return { { "pack", "folder" }, { "pack/patches", "folder" }, { "pack/patches/first.json", "file: " + patch }, { "pack/LICENSE.txt", "file: licence" } };
}
}

//==============================================================================
TEST (InstallService, AVaultedPackInstallsWhereTheDawLooks)
{
    const auto archive = goodPack().bytes();
    const auto product = packOf ("sounds", "1.0.0", archive);

    EXPECT_EQ (InstallRun().finish (product, putInVault (product, "pack.zip", archive)), installedAt ("1.0.0"));
    EXPECT_EQ (contentOf ("1.0.0"), goodContent());
    EXPECT_EQ (treeOf (HubPaths::factoryContentDirectory()).size(), (size_t) 7) << "nothing beside it";
    EXPECT_EQ (InstallService::installedLocation (product).getFullPathName(), packFile ("sounds/1.0.0").getFullPathName());
    EXPECT_FALSE (isThere (HubPaths::installRecordFile())) << "the manifest in the pack is the record";
}

TEST (InstallService, APackOfAnotherVersionThanTheCataloguesIsRefused)
{
    const auto archive = goodPack().bytes();
    const auto installer = putInVault (packOf ("sounds", "1.0.0", archive), "pack.zip", archive);

    EXPECT_EQ (InstallRun().finish (packOf ("sounds", "2.0.0", archive), installer),
               "failed: The vaulted sound pack does not match its current trusted manifest.");
    EXPECT_FALSE (isThere (HubPaths::factoryContentDirectory()));
}

TEST (InstallService, APackGoesIntoTheGivenRoot)
{
    const auto root = in (freshFolder ("override"), "deeper/root");
    const auto archive = goodPack().bytes();

    EXPECT_EQ (installPack (packOf ("sounds", "1.0.0", archive), putArchive (archive), root), installedAt ("1.0.0", root));
    EXPECT_TRUE (isThere (in (root, "sounds/1.0.0/manifest.json")));
    EXPECT_FALSE (isThere (HubPaths::factoryContentDirectory()));
}

TEST (InstallService, TheSameVersionAgainReplacesTheOldCopy)
{
    ASSERT_EQ (installPack (goodPack ("old")), installedAt ("1.0.0"));
    write (packFile ("sounds/1.0.0/pack/added-by-hand"), "x");
    FolderWatch watch (packFile ("sounds"));

    EXPECT_EQ (installPack (goodPack ("new")), installedAt ("1.0.0"));
    EXPECT_EQ (contentOf ("1.0.0"), goodContent ("new"));
    EXPECT_EQ (packFile ("sounds").getNumberOfChildFiles (juce::File::findFilesAndDirectories), 1);

    bool hadBackup = false;

    for (const auto& event : watch.events())
        hadBackup = hadBackup || event.rfind ("appeared 1.0.0.backup-", 0) == 0;

    EXPECT_TRUE (hadBackup) << "the old copy waits in a backup until the new one stands";
}

TEST (InstallService, ASecondVersionInstallsBesideTheFirst)
{
    const auto first = goodPack ("first").bytes(), second = goodPack ("second").bytes();
    ASSERT_EQ (installPack (packOf ("sounds", "1.0.0", first), putArchive (first)), installedAt ("1.0.0"));
    ASSERT_EQ (installPack (packOf ("sounds", "2.0.0", second), putArchive (second)), installedAt ("2.0.0"));

    EXPECT_EQ (contentOf ("1.0.0"), goodContent ("first"));
    EXPECT_EQ (contentOf ("2.0.0"), goodContent ("second"));
    EXPECT_EQ (packFile ("sounds").getNumberOfChildFiles (juce::File::findFilesAndDirectories), 2);
}

TEST (InstallService, AManifestOfTheArchiveIsReplaced)
{
    ASSERT_EQ (installPack (goodPack().file ("manifest.json", "{ \"schema\": 1, \"packId\": \"evil\" }")), installedAt ("1.0.0"));
    EXPECT_EQ (juce::JSON::parse (packFile ("sounds/1.0.0/manifest.json"))["packId"].toString(), "sounds");
    EXPECT_EQ (contentOf ("1.0.0"), goodContent());
}

TEST (InstallService, AStagedPackOfACrashIsGoneAfterTheNextStart)
{
    ASSERT_EQ (installPack (goodPack()), installedAt ("1.0.0"));
    write (packFile ("sounds/2.0.0.installing-0123456789abcdef0123456789abcdef/pack/half"), "x");

    const InstallService nextStart;
    EXPECT_EQ (packFile ("sounds").getNumberOfChildFiles (juce::File::findFilesAndDirectories), 1);
    EXPECT_EQ (contentOf ("1.0.0"), goodContent());
}

//==============================================================================
TEST (InstallService, RefusesAPackWhoseIdentityOrArchiveIsInvalid)
{
    const char* const invalid = "failed: The factory-content identity or archive is invalid.";
    const auto bytes = goodPack().bytes();
    const auto product = packOf ("sounds", "1.0.0", bytes);
    const auto archive = putArchive (bytes);

    auto withoutLicenceId = product;
    withoutLicenceId.licenseId = "";
    EXPECT_EQ (installPack (withoutLicenceId, archive), invalid);

    auto application = product;
    application.installType = Product::InstallType::application;
    EXPECT_EQ (installPack (application, archive), invalid);

    EXPECT_EQ (installPack (product, vaultFile ("sounds/missing.zip")), invalid);
    EXPECT_EQ (installPack (product, putArchive (bytes, "pack.exe")), invalid);
    EXPECT_EQ (installPack (product, putArchive (bytes, "pack")), invalid);
    EXPECT_EQ (installPack (product, link (vaultFile ("sounds/link.zip"), archive.getFullPathName())), invalid);
    EXPECT_EQ (installPack (product, writeBytes (vaultFile ("sounds/folder.zip/x"), bytes).getParentDirectory()), invalid);
    EXPECT_FALSE (isThere (HubPaths::factoryContentDirectory()));

    EXPECT_EQ (installPack (product, putArchive (bytes, "PACK.ZIP")), installedAt ("1.0.0"));
}

TEST (InstallService, RefusesARootThatCannotBeTrusted)
{
    const char* const untrusted = "failed: The factory-content root is unavailable or untrusted.";
    const auto root = HubPaths::factoryContentDirectory();
    const auto elsewhere = freshFolder ("elsewhere");

    link (root, elsewhere.getFullPathName());
    EXPECT_EQ (installPack (goodPack()), untrusted) << "a link";
    root.deleteFile();

    write (root, "a file");
    EXPECT_EQ (installPack (goodPack()), untrusted) << "a file";
    root.deleteFile();

    {
        const ReadOnlyFolder shut (root.getParentDirectory());
        EXPECT_EQ (installPack (goodPack()), untrusted) << "it cannot be made";
    }

    ASSERT_TRUE (packFile ("Sounds").createDirectory().wasOk());
    EXPECT_EQ (installPack (goodPack()), untrusted) << "another spelling";
    EXPECT_EQ (treeOf (root), (Tree { { "Sounds", "folder" } }));
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (InstallService, RefusesADestinationThatCannotBeTrusted)
{
    const char* const untrusted = "failed: The factory-content destination is untrusted.";
    const auto elsewhere = freshFolder ("elsewhere");

    link (packFile ("sounds"), elsewhere.getFullPathName());
    EXPECT_EQ (installPack (goodPack()), untrusted) << "a link";
    packFile ("sounds").deleteFile();

    write (packFile ("sounds"), "a file");
    EXPECT_EQ (installPack (goodPack()), untrusted) << "a file";
    packFile ("sounds").deleteFile();

    const auto archive = goodPack().bytes();
    ASSERT_TRUE (packFile ("sounds/1.0-BETA").createDirectory().wasOk());
    EXPECT_EQ (installPack (packOf ("sounds", "1.0-beta", archive), putArchive (archive)), untrusted) << "a version of another spelling";
    EXPECT_EQ (treeOf (packFile ("sounds")), (Tree { { "1.0-BETA", "folder" } }));
    EXPECT_EQ (treeOf (elsewhere), Tree());
}

TEST (InstallService, RefusesAVersionDirectoryThatIsALink)
{
    const auto elsewhere = freshFolder ("elsewhere");
    link (packFile ("sounds/1.0.0"), elsewhere.getFullPathName());

    EXPECT_EQ (installPack (goodPack()), "failed: Promotion paths are outside a trusted canonical parent.");
    EXPECT_EQ (treeOf (elsewhere), Tree());
    EXPECT_EQ (treeOf (packFile ("sounds")).size(), (size_t) 1) << "no staging directory stays";
}

TEST (InstallService, SaysWhichDirectoryCouldNotBeMade)
{
    ASSERT_TRUE (HubPaths::factoryContentDirectory().createDirectory().wasOk());

    {
        const ReadOnlyFolder shut (HubPaths::factoryContentDirectory());
        EXPECT_EQ (installPack (goodPack()), "failed: Could not create the factory-content pack directory.");
    }

    ASSERT_TRUE (packFile ("sounds").createDirectory().wasOk());
    const ReadOnlyFolder shut (packFile ("sounds"));
    EXPECT_EQ (installPack (goodPack()), "failed: Could not create the content staging directory.");
}

//==============================================================================
TEST (InstallService, AFailureAfterStagingLeavesTheOldVersionAlone)
{
    ASSERT_EQ (installPack (goodPack ("old")), installedAt ("1.0.0"));
    const auto before = treeOf (HubPaths::factoryContentDirectory());
    const char* const missing = "failed: The archive is missing its trusted instrument patch or license.";

    const struct { const char* what; ZipBuilder archive; std::string end; } rows[]
    {
        { "no licence", ZipBuilder().file ("pack/patches/first.json", "x"), missing },
        { "no patch", ZipBuilder().file ("pack/LICENSE.txt", "x"), missing },
        { "another root", ZipBuilder().file ("other/patches/first.json", "x").file ("other/LICENSE.txt", "x"), missing },
        { "a licence that is a folder", ZipBuilder().file ("pack/patches/first.json", "x").folder ("pack/LICENSE.txt"), missing },
        { "a folder in the manifest's place", goodPack().folder ("manifest.json"), "failed: Could not create the canonical content manifest." },
    };

    for (const auto& row : rows)
    {
        EXPECT_EQ (installPack (row.archive), row.end) << row.what;
        EXPECT_EQ (treeOf (HubPaths::factoryContentDirectory()), before) << row.what;
    }

    const auto archive = goodPack ("new").bytes();
    auto product = packOf ("sounds", "1.0.0", archive);
    product.platforms.clear();
    EXPECT_EQ (installPack (product, putArchive (archive)), "failed: The content archive identity is missing for this platform.");
    EXPECT_EQ (treeOf (HubPaths::factoryContentDirectory()), before);
}

TEST (InstallService, APackThatLiesAboutItsContentIsNotInstalled)
{
    const std::string opening ("failed: Could not extract the verified content archive: ");
    const std::string content (100000, 'x');

    const struct { const char* what; ZipBuilder archive; } rows[]
    {
        { "more bytes than stated", goodPack().add ({ .name = "pack/a", .content = content, .statedSize = 10 }) },
        { "fewer bytes than stated", goodPack().add ({ .name = "pack/a", .content = "x", .statedSize = 10 }) },
        { "a wrong checksum", goodPack().add ({ .name = "pack/a", .content = "x", .statedCrc = 0 }) },
        { "an unknown method", goodPack().add ({ .name = "pack/a", .content = "x", .method = 99 }) },
        { "a file where a folder is needed", goodPack().file ("pack/a", "x").file ("pack/a/b", "x") },
    };

    for (const auto& row : rows)
    {
        const auto end = installPack (row.archive);
        EXPECT_EQ (end.substr (0, opening.size()), opening) << row.what;
        EXPECT_GT (end.size(), opening.size()) << row.what << ": with a reason";
        EXPECT_EQ (treeOf (HubPaths::factoryContentDirectory()), (Tree { { "sounds", "folder" } })) << row.what;
    }
}

TEST (InstallService, APackThatCannotBeActivatedKeepsTheOldVersion)
{
    ASSERT_EQ (installPack (goodPack ("old")), installedAt ("1.0.0"));
    const auto before = treeOf (HubPaths::factoryContentDirectory());
    const BusyPath stuck (packFile ("sounds/1.0.0"));

    const auto end = installPack (goodPack ("new"));
    const auto beginning = "failed: Could not preserve the current payload at " + packFile ("sounds/1.0.0.backup-").getFullPathName().toStdString();
    EXPECT_EQ (end.substr (0, beginning.size()), beginning);
    EXPECT_EQ (end.substr (beginning.size() + 32), ".");
    EXPECT_EQ (treeOf (HubPaths::factoryContentDirectory()), before);
}
