#include "InstallRun.h"
#include "support/ManifestBuilder.h"

#include <functional>

using namespace zorva::test;

namespace
{
juce::File packFile (const juce::String& relativePath)
{
    return in (HubPaths::factoryContentDirectory(), relativePath);
}

juce::var manifestOf (const Product& product)
{
    juce::DynamicObject::Ptr manifest = new juce::DynamicObject();
    manifest->setProperty ("schema", 1);
    manifest->setProperty ("packId", product.packId);
    manifest->setProperty ("version", product.version);
    manifest->setProperty ("displayName", product.name);
    manifest->setProperty ("license", product.licenseId);
    manifest->setProperty ("defaultPatch", product.defaultPatch);
    return manifest.get();
}

/** Installs a pack by hand; returns its version directory. */
juce::File putPack (const Product& product, const juce::File& root = HubPaths::factoryContentDirectory())
{
    const auto folder = in (root, product.id + "/" + product.version);
    write (in (folder, product.defaultPatch), "patch");
    write (in (folder, product.licenseFile), "licence");
    write (in (folder, "manifest.json"), json (manifestOf (product)));
    return folder;
}

std::string located (const Product& product, const juce::File& root = {})
{
    return InstallService::locateInstalledContent (product, root).getFullPathName().toStdString();
}
}

//==============================================================================
TEST (InstallService, AnInstalledPackIsItsVersionDirectory)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    EXPECT_EQ (located (product), "");

    const auto folder = putPack (product).getFullPathName().toStdString();
    EXPECT_EQ (located (product), folder);
    EXPECT_EQ (InstallService::installedLocation (product).getFullPathName().toStdString(), folder);
    EXPECT_EQ (located (packOf ("sounds", "1.0.1", "x")), "");
}

TEST (InstallService, APackIsLookedForInTheGivenRoot)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    const auto root = freshFolder ("override");
    const auto folder = putPack (product, root).getFullPathName().toStdString();
    EXPECT_EQ (located (product, root), folder);
    EXPECT_EQ (located (product), "");
}

TEST (InstallService, AnApplicationIsNotLookedForAmongPacks)
{
    auto product = packOf ("sounds", "1.0.0", "x");
    putPack (product);
    product.installType = Product::InstallType::application;
    EXPECT_EQ (InstallService::installedLocation (product).getFullPathName().toStdString(), "");
}

TEST (InstallService, AProductThatIsNotWholeIsNotLocated)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    putPack (product);

    for (const auto& change : std::vector<std::function<void (Product&)>> {
             [] (Product& p) { p.licenseId = ""; }, [] (Product& p) { p.packId = "other"; }, [] (Product& p) { p.archiveRoot = "a/b"; },
             [] (Product& p) { p.id = p.packId = "../sounds"; }, [] (Product& p) { p.version = "."; } })
    {
        auto changed = product;
        change (changed);
        EXPECT_EQ (located (changed), "");
    }
}

TEST (InstallService, AManifestThatDiffersFromTheProductIsNotIt)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    const auto folder = putPack (product);
    const auto manifest = manifestOf (product);

    const struct { const char* what; juce::var manifest; bool isIt; } rows[]
    {
        { "as written", manifest, true },
        { "another name", with (manifest, "displayName", "other"), true },
        { "a schema as text", with (manifest, "schema", "1"), true },
        { "no schema", without (manifest, "schema"), false },
        { "schema 2", with (manifest, "schema", 2), false },
        { "schema 0", with (manifest, "schema", 0), false },
        { "another pack", with (manifest, "packId", "other"), false },
        { "the pack in another case", with (manifest, "packId", "Sounds"), false },
        { "no pack", without (manifest, "packId"), false },
        { "another version", with (manifest, "version", "1.0"), false },
        { "another patch", with (manifest, "defaultPatch", "pack/LICENSE.txt"), false },
        { "no patch", without (manifest, "defaultPatch"), false },
        { "another licence", with (manifest, "license", "CC0-1.0"), false },
        { "a list", list ({ manifest }), false },
        { "null", juce::var(), false },
    };

    for (const auto& row : rows)
    {
        write (in (folder, "manifest.json"), json (row.manifest));
        EXPECT_EQ (located (product), row.isIt ? folder.getFullPathName().toStdString() : "") << row.what;
    }

    write (in (folder, "manifest.json"), "{ broken");
    EXPECT_EQ (located (product), "");
    in (folder, "manifest.json").deleteFile();
    EXPECT_EQ (located (product), "");
}

TEST (InstallService, AnInstalledPackMustHoldItsPatchAndLicence)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    const auto outside = write (in (freshFolder ("outside"), "file"), "x");

    for (const auto& name : { product.defaultPatch, product.licenseFile })
    {
        const auto folder = putPack (product);
        const auto file = in (folder, name);
        file.deleteFile();
        EXPECT_EQ (located (product), "") << name;

        link (file, outside.getFullPathName());
        EXPECT_EQ (located (product), "") << "a link at " << name;
        file.deleteFile();

        ASSERT_TRUE (file.createDirectory().wasOk());
        EXPECT_EQ (located (product), "") << "a directory at " << name;
        file.deleteFile();
    }

    putPack (product);
    EXPECT_NE (located (product), "");
}

TEST (InstallService, APackBehindALinkIsNotLocated)
{
    const auto product = packOf ("sounds", "1.0.0", "x");
    const auto elsewhere = freshFolder ("elsewhere");
    putPack (product, elsewhere);

    link (packFile ("sounds"), in (elsewhere, "sounds").getFullPathName());
    EXPECT_EQ (located (product), "") << "the pack's directory";
    packFile ("sounds").deleteFile();

    link (packFile ("sounds/1.0.0"), in (elsewhere, "sounds/1.0.0").getFullPathName());
    EXPECT_EQ (located (product), "") << "the version's directory";
    HubPaths::factoryContentDirectory().deleteRecursively();

    link (HubPaths::factoryContentDirectory(), elsewhere.getFullPathName());
    EXPECT_EQ (located (product), "") << "the root";
    EXPECT_EQ (located (product, link (in (freshFolder ("links"), "root"), elsewhere.getFullPathName())), "") << "the given root";
}

//==============================================================================
TEST (InstallService, RecoversEveryPacksDirectory)
{
    const juce::String token ("0123456789abcdef0123456789abcdef");
    write (packFile ("sounds/1.0.0.installing-" + token + "/pack/half"), "x");
    write (packFile ("sounds/1.0.0/manifest.json"), "kept");
    write (packFile ("sounds/2.0.0.backup-" + token + "/manifest.json"), "lost");
    const auto invalid = write (packFile ("strings/.zorva-promotion-" + token + ".json"), "{");
    write (packFile ("not safe/1.0.0.installing-" + token + "/x"), "x");
    write (packFile ("top.installing-" + token), "x");
    const auto elsewhere = freshFolder ("elsewhere");
    write (in (elsewhere, "1.0.0.installing-" + token + "/x"), "x");
    link (packFile ("linked"), elsewhere.getFullPathName());

    juce::StringArray notes { "an earlier note" };
    InstallService::recoverContentRoots (notes, {});

    EXPECT_EQ (notes.joinIntoString ("\n"), "an earlier note\nInvalid promotion journal retained: " + invalid.getFullPathName());
    EXPECT_EQ (treeOf (packFile ("sounds")),
               (Tree { { "1.0.0", "folder" }, { "1.0.0/manifest.json", "file: kept" }, { "2.0.0", "folder" }, { "2.0.0/manifest.json", "file: lost" } }));
    EXPECT_TRUE (isThere (packFile ("not safe/1.0.0.installing-" + token + "/x")));
    EXPECT_TRUE (isThere (packFile ("top.installing-" + token)));
    EXPECT_TRUE (isThere (in (elsewhere, "1.0.0.installing-" + token + "/x")));
}

TEST (InstallService, APacksJournalMayNameNoRecord)
{
    const juce::String token ("0123456789abcdef0123456789abcdef");
    const auto folder = packFile ("sounds").getFullPathName() + "/";
    juce::DynamicObject::Ptr journal = new juce::DynamicObject();
    journal->setProperty ("state", "activated");
    journal->setProperty ("staged", folder + "1.0.0.installing-" + token);
    journal->setProperty ("target", folder + "1.0.0");
    journal->setProperty ("backup", folder + "1.0.0.backup-" + token);
    journal->setProperty ("hadTarget", true);
    journal->setProperty ("metadata", "");
    journal->setProperty ("metadataBackup", "");
    journal->setProperty ("metadataExisted", false);

    const auto file = packFile ("sounds/.zorva-promotion-" + token + ".json");
    write (packFile ("sounds/1.0.0/manifest.json"), "new");
    write (packFile ("sounds/1.0.0.backup-" + token + "/manifest.json"), "old");
    write (file, json (with (journal.get(), "metadata", HubPaths::installRecordFile().getFullPathName())));

    juce::StringArray notes;
    InstallService::recoverContentRoots (notes, {});
    EXPECT_EQ (notes[0], "Promotion journal escaped its approved roots and was retained: " + file.getFullPathName());
    EXPECT_EQ (read (packFile ("sounds/1.0.0/manifest.json")), "new");

    write (file, json (journal.get()));
    notes.clear();
    InstallService::recoverContentRoots (notes, {});
    EXPECT_EQ (notes.size(), 0);
    EXPECT_EQ (treeOf (packFile ("sounds")), (Tree { { "1.0.0", "folder" }, { "1.0.0/manifest.json", "file: old" } }));
}

TEST (InstallService, RecoversPacksInTheGivenRootOnly)
{
    const auto root = freshFolder ("override");
    write (in (root, "sounds/1.0.0.installing-0123/x"), "x");
    write (packFile ("sounds/1.0.0.installing-0123/x"), "x");

    juce::StringArray notes;
    InstallService::recoverContentRoots (notes, root);
    EXPECT_EQ (treeOf (root), (Tree { { "sounds", "folder" } }));
    EXPECT_TRUE (isThere (packFile ("sounds/1.0.0.installing-0123/x")));
}
