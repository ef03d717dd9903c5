#include "app/HubPaths.h"
#include "support/CommaLocale.h"
#include "support/Files.h"
#include "support/IsoTime.h"
#include "support/PrivateMounts.h"
#include "support/VaultItems.h"
#include "vault/VaultStore.h"

#include <functional>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
const std::string installer = "installer";

/** The payload where a download puts it. */
juce::File payloadOf (const juce::String& id, const juce::String& fileName = "setup.exe")
{
    return writeBytes (vaultFile (id + "/" + fileName), installer);
}

/** The record's text with the moment of the download, which nobody knows beforehand, replaced by "MOMENT". */
std::string textWithoutMoment (const juce::File& record, juce::String& moment)
{
    const auto text = juce::String::fromUTF8 (read (record).c_str());
    moment = text.fromFirstOccurrenceOf ("\"downloadedAt\": \"", false, false).upToFirstOccurrenceOf ("\"", false, false);
    return text.replace (moment, "MOMENT").toStdString();
}

bool isNow (const juce::String& moment)
{
    const auto time = juce::Time::fromISO8601 (moment);
    return isoTime (time) == moment && std::abs ((juce::Time::getCurrentTime() - time).inSeconds()) < 60.0;
}

/** Expects that a product that was changed so is refused and that its folder stays as it was. */
void expectRefused (const char* what, Product product, const std::function<void (Product&)>& change)
{
    const auto payload = payloadOf (product.id);
    write (vaultFile (product.id + "/vault.json"), "the old record");
    const auto before = treeOf (HubPaths::root());
    change (product);

    EXPECT_FALSE (VaultStore::writeVaultRecord (product, "win", payload)) << what;
    EXPECT_EQ (treeOf (HubPaths::root()), before) << what;
}
}

//==============================================================================
TEST (VaultStore, WritesARecordOfAnApplicationByteForByte)
{
    const auto product = applicationOf ("app", "1.2.3", installer, "https://downloads.example/setup.exe");
    ASSERT_TRUE (VaultStore::writeVaultRecord (product, "win", payloadOf ("app")));

    juce::String moment;
    EXPECT_EQ (textWithoutMoment (vaultFile ("app/vault.json"), moment),
               "{\r\n"
               "  \"id\": \"app\",\r\n"
               "  \"name\": \"Name of app\",\r\n"
               "  \"vendor\": \"Vendor\",\r\n"
               "  \"version\": \"1.2.3\",\r\n"
               "  \"description\": \"Description\",\r\n"
               "  \"category\": \"Category\",\r\n"
               "  \"platform\": \"win\",\r\n"
               "  \"fileName\": \"setup.exe\",\r\n"
               "  \"sizeBytes\": 9,\r\n"
               "  \"downloadedAt\": \"MOMENT\",\r\n"
               "  \"sha256\": \"" + sha256Of (installer).toStdString() + "\",\r\n"
               "  \"url\": \"https://downloads.example/setup.exe\",\r\n"
               "  \"installType\": \"application\"\r\n"
               "}");
    EXPECT_TRUE (isNow (moment)) << moment;
    EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2) << "no temporary file stays";
}

TEST (VaultStore, WritesARecordOfAPackByteForByte)
{
    ASSERT_TRUE (VaultStore::writeVaultRecord (packOf ("sounds", "1.0.0", installer), "win", payloadOf ("sounds", "pack.zip")));

    juce::String moment;
    EXPECT_EQ (textWithoutMoment (vaultFile ("sounds/vault.json"), moment),
               "{\r\n"
               "  \"id\": \"sounds\",\r\n"
               "  \"name\": \"Name of sounds\",\r\n"
               "  \"vendor\": \"Vendor\",\r\n"
               "  \"version\": \"1.0.0\",\r\n"
               "  \"description\": \"Description\",\r\n"
               "  \"category\": \"Category\",\r\n"
               "  \"platform\": \"win\",\r\n"
               "  \"fileName\": \"pack.zip\",\r\n"
               "  \"sizeBytes\": 9,\r\n"
               "  \"downloadedAt\": \"MOMENT\",\r\n"
               "  \"sha256\": \"" + sha256Of (installer).toStdString() + "\",\r\n"
               "  \"url\": \"https://downloads.example/pack.zip\",\r\n"
               "  \"installType\": \"factory-content\",\r\n"
               "  \"content\": {\r\n"
               "    \"packId\": \"sounds\",\r\n"
               "    \"archiveRoot\": \"pack\",\r\n"
               "    \"defaultPatch\": \"pack/patches/first.json\",\r\n"
               "    \"licenseFile\": \"pack/LICENSE.txt\",\r\n"
               "    \"licenseId\": \"CC-BY-4.0\"\r\n"
               "  }\r\n"
               "}");
    EXPECT_TRUE (isNow (moment)) << moment;
}

TEST (VaultStore, ARecordsMomentKeepsItsPointWhereNumbersHaveAComma)
{
    ASSERT_NO_FATAL_FAILURE (writeNumbersWithAComma());
    ASSERT_TRUE (VaultStore::writeVaultRecord (applicationOf ("app", "1.0.0", installer), "win", payloadOf ("app")));

    juce::String moment;
    textWithoutMoment (vaultFile ("app/vault.json"), moment);
    EXPECT_TRUE (isNow (moment)) << moment;
    EXPECT_EQ (moment.indexOfChar ('.'), 19) << moment;
}

TEST (VaultStore, TheRecordedHashIsLoweredAndNotTrimmed)
{
    auto product = applicationOf ("app", "1.0.0", installer);
    product.platforms["win"].sha256 = " " + sha256Of (installer).toUpperCase() + " ";
    ASSERT_TRUE (VaultStore::writeVaultRecord (product, "win", payloadOf ("app")));

    EXPECT_EQ (juce::JSON::parse (vaultFile ("app/vault.json"))["sha256"].toString(), " " + sha256Of (installer) + " ");
}

TEST (VaultStore, ARecordIsUtf8WithoutAMark)
{
    auto product = applicationOf ("app", "1.0.0", installer);
    product.name = juce::String::fromUTF8 ("Größe \"1\"");
    ASSERT_TRUE (VaultStore::writeVaultRecord (product, "win", payloadOf ("app")));

    EXPECT_EQ (read (vaultFile ("app/vault.json")).substr (0, 3), "{\r\n");
    EXPECT_EQ (juce::JSON::parse (vaultFile ("app/vault.json"))["name"].toString(), product.name);
}

TEST (VaultStore, ANewRecordReplacesTheOldOne)
{
    write (vaultFile ("app/vault.json"), "something much longer than any record, or at least it could be");
    ASSERT_TRUE (VaultStore::writeVaultRecord (applicationOf ("app", "1.0.0", installer), "win", payloadOf ("app")));

    EXPECT_EQ (juce::JSON::parse (vaultFile ("app/vault.json"))["id"].toString(), "app");
}

TEST (VaultStore, WritesARecordForTheMac)
{
    auto product = applicationOf ("app", "1.0.0", installer);
    product.platforms["mac"] = product.platforms["win"];
    product.platforms["mac"].url = "https://downloads.example/setup.dmg";
    product.platforms.erase ("win");
    ASSERT_TRUE (VaultStore::writeVaultRecord (product, "mac", payloadOf ("app", "setup.dmg")));

    const auto record = juce::JSON::parse (vaultFile ("app/vault.json"));
    EXPECT_EQ (record["platform"].toString(), "mac");
    EXPECT_EQ (record["url"].toString(), "https://downloads.example/setup.dmg");
}

TEST (VaultStore, WhatItWritesIsTrustedAndListed)
{
    const auto payload = payloadOf ("sounds", "pack.zip");
    ASSERT_TRUE (VaultStore::writeVaultRecord (packOf ("sounds", "1.0.0", installer), "win", payload));

    EXPECT_EQ (VaultStore::trustedInstallerFor ("sounds").getFullPathName(), payload.getFullPathName());
    EXPECT_EQ (VaultStore().listVaultedItems().size(), (size_t) 1);
}

//==============================================================================
TEST (VaultStore, WritesNoRecordOfAnApplicationThatBreaksARule)
{
    const struct { const char* what; std::function<void (Product&)> change; } rows[]
    {
        { "an unsafe identity", [] (Product& p) { p.id = "../app"; } },
        { "another product's payload", [] (Product& p) { p.id = "other"; } },
        { "no such platform", [] (Product& p) { p.platforms.clear(); } },
        { "only another platform", [] (Product& p) { p.platforms["mac"] = p.platforms["win"]; p.platforms.erase ("win"); } },
        { "a hash too short", [] (Product& p) { p.platforms["win"].sha256 = sha256Of ("x").substring (1); } },
        { "a hash that is none", [] (Product& p) { p.platforms["win"].sha256 = juce::String::repeatedString ("g", 64); } },
        { "no hash", [] (Product& p) { p.platforms["win"].sha256 = {}; } },
        { "a size too small", [] (Product& p) { p.platforms["win"].sizeBytes = 8; } },
        { "a size too large", [] (Product& p) { p.platforms["win"].sizeBytes = 10; } },
    };

    for (const auto& row : rows)
        expectRefused (row.what, applicationOf ("app", "1.0.0", installer), row.change);
}

TEST (VaultStore, WritesNoRecordOfAPackThatBreaksARule)
{
    const struct { const char* what; std::function<void (Product&)> change; } rows[]
    {
        { "another pack", [] (Product& p) { p.packId = "other"; } },
        { "the pack in another case", [] (Product& p) { p.packId = "Sounds"; } },
        { "no address", [] (Product& p) { p.platforms["win"].url = "  "; } },
        { "a plain http address", [] (Product& p) { p.platforms["win"].url = "http://downloads.example/pack.zip"; } },
        { "an address without a host", [] (Product& p) { p.platforms["win"].url = "https:///pack.zip"; } },
        { "a root that leads up", [] (Product& p) { p.archiveRoot = ".."; p.defaultPatch = "../a"; p.licenseFile = "../b"; } },
        { "a root of two steps", [] (Product& p) { p.archiveRoot = "a/b"; p.defaultPatch = "a/b/c"; p.licenseFile = "a/b/d"; } },
        { "a root as a directory", [] (Product& p) { p.archiveRoot = "pack/"; } },
        { "no root", [] (Product& p) { p.archiveRoot = {}; } },
        { "a device as a root", [] (Product& p) { p.archiveRoot = "nul"; p.defaultPatch = "nul/a"; p.licenseFile = "nul/b"; } },
        { "no patch", [] (Product& p) { p.defaultPatch = {}; } },
        { "a patch outside", [] (Product& p) { p.defaultPatch = "other/first.json"; } },
        { "a patch beside", [] (Product& p) { p.defaultPatch = "packet/first.json"; } },
        { "a patch as a directory", [] (Product& p) { p.defaultPatch = "pack/patches/"; } },
        { "a patch that leads up", [] (Product& p) { p.defaultPatch = "pack/../../first.json"; } },
        { "a device as a patch", [] (Product& p) { p.defaultPatch = "pack/com1.json"; } },
        { "no licence", [] (Product& p) { p.licenseFile = {}; } },
        { "a licence outside", [] (Product& p) { p.licenseFile = "LICENSE.txt"; } },
        { "a licence in a device", [] (Product& p) { p.licenseFile = "pack/AUX/LICENSE.txt"; } },
    };

    for (const auto& row : rows)
        expectRefused (row.what, packOf ("sounds", "1.0.0", installer), row.change);
}

TEST (VaultStore, WritesARecordForNoOtherPlatformKey)
{
    auto product = applicationOf ("app", "1.0.0", installer);
    const auto payload = payloadOf ("app");

    for (const char* key : { "", "linux", "Win", "WIN", "win " })
    {
        product.platforms[key] = product.platforms["win"];
        EXPECT_FALSE (VaultStore::writeVaultRecord (product, key, payload)) << key;
    }

    EXPECT_FALSE (isThere (vaultFile ("app/vault.json")));
}

TEST (VaultStore, WritesNoRecordForAPayloadThatIsNotTheProductsOwnFile)
{
    const auto product = applicationOf ("app", "1.0.0", installer);
    const auto outside = writeBytes (in (freshFolder ("outside"), "setup.exe"), installer);
    const auto good = payloadOf ("app");

    const juce::File payloads[]
    {
        vaultFile ("app/missing.exe"),
        writeBytes (vaultFile ("app/folder.exe/inside"), installer).getParentDirectory(),
        link (vaultFile ("app/link.exe"), good.getFullPathName()),
        link (vaultFile ("app/out.exe"), outside.getFullPathName()),
        writeBytes (vaultFile ("app/nul.exe"), installer),
        writeBytes (vaultFile ("app/a:b"), installer),
        writeBytes (vaultFile ("app/blank "), installer),
        writeBytes (vaultFile ("app/dot."), installer),
        writeBytes (vaultFile ("app/sub/setup.exe"), installer),
        writeBytes (vaultFile ("other/setup.exe"), installer),
        writeBytes (vaultFile ("setup.exe"), installer),
        outside,
        juce::File(),
    };

    const auto before = treeOf (HubPaths::root());

    for (const auto& payload : payloads)
        EXPECT_FALSE (VaultStore::writeVaultRecord (product, "win", payload)) << payload.getFullPathName();

    EXPECT_EQ (treeOf (HubPaths::root()), before);
}

//==============================================================================
TEST (VaultStore, AFolderThatCannotBeWrittenKeepsItsOldRecord)
{
    const auto payload = payloadOf ("app");
    write (vaultFile ("app/vault.json"), "the old record");
    const ReadOnlyFolder shut (vaultFile ("app"));

    EXPECT_FALSE (VaultStore::writeVaultRecord (applicationOf ("app", "1.0.0", installer), "win", payload));
    EXPECT_EQ (read (vaultFile ("app/vault.json")), "the old record");
}

TEST (VaultStore, ARecordThatCannotBeReplacedStays)
{
    const auto payload = payloadOf ("app");
    write (vaultFile ("app/vault.json"), "the old record");
    const BusyPath stuck (vaultFile ("app/vault.json"));

    EXPECT_FALSE (VaultStore::writeVaultRecord (applicationOf ("app", "1.0.0", installer), "win", payload));
    EXPECT_EQ (read (vaultFile ("app/vault.json")), "the old record");
    EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2) << "no temporary file stays";
}

TEST (VaultStore, ADirectoryInTheRecordsPlaceIsNoRecord)
{
    const auto payload = payloadOf ("app");
    write (vaultFile ("app/vault.json/inside"), "x");

    EXPECT_FALSE (VaultStore::writeVaultRecord (applicationOf ("app", "1.0.0", installer), "win", payload));
    EXPECT_EQ (read (vaultFile ("app/vault.json/inside")), "x");
}

TEST (VaultStore, NothingIsWrittenThroughALinkInTheRecordsPlace)
{
    const auto outside = write (in (freshFolder ("outside"), "vault.json"), "not the Hub's");
    const auto payload = payloadOf ("app");
    link (vaultFile ("app/vault.json"), outside.getFullPathName());

    VaultStore::writeVaultRecord (applicationOf ("app", "1.0.0", installer), "win", payload);
    EXPECT_EQ (read (outside), "not the Hub's");
}
