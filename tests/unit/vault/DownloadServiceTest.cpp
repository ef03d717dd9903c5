#include "DownloadRun.h"
#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "vault/VaultStore.h"

using namespace zorva::test;

namespace
{
std::string pathOf (const juce::File& file)
{
    return file.getFullPathName().toStdString();
}
}

//==============================================================================
TEST (DownloadService, PutsAVerifiedInstallerAndItsRecordIntoTheVault)
{
    TrustedTestServer server;
    const auto bytes = someBytes (300000);
    const auto product = serveApplication (server, "app", bytes);
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app done: ");
    EXPECT_EQ (run.service->activeCount(), 0);
    EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2);
    EXPECT_TRUE (read (vaultFile ("app/setup.exe")) == bytes);
    EXPECT_EQ (pathOf (VaultStore::trustedInstallerFor ("app")), pathOf (vaultFile ("app/setup.exe")));

    const auto record = juce::JSON::parse (vaultFile ("app/vault.json"));
    EXPECT_EQ (record["id"].toString(), "app");
    EXPECT_EQ (record["platform"].toString(), "win");
    EXPECT_EQ (record["fileName"].toString(), "setup.exe");
    EXPECT_EQ ((juce::int64) record["sizeBytes"], 300000);
    EXPECT_EQ (record["sha256"].toString(), sha256Of (bytes));
    EXPECT_EQ (record["url"].toString(), product.platforms.at ("win").url);
}

TEST (DownloadService, ReturnsAtOnceAndReportsLater)
{
    DownloadRun run;
    run.download (applicationOf ("../bad", "1.0.0", "x"));
    EXPECT_EQ (run.ended.size(), (size_t) 0);
    EXPECT_EQ (run.service->activeCount(), 1);

    ASSERT_TRUE (run.waitForEnds (1));
    EXPECT_EQ (run.service->activeCount(), 0);
}

TEST (DownloadService, WorksWithoutCallbacks)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    DownloadService service;
    service.download (product, {}, {});
    service.download (applicationOf ("../bad", "1.0.0", "x"), {}, {});

    EXPECT_TRUE (pumpUntil ([&] { return service.activeCount() == 0; }, 30000));
    EXPECT_EQ (read (vaultFile ("app/setup.exe")), "installer");
}

TEST (DownloadService, KeepsItsOwnCopyOfTheProduct)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "installer");
    DownloadRun run;
    run.download (product);
    product.platforms.clear();

    ASSERT_TRUE (run.waitForEnds (1));
    EXPECT_EQ (run.ended[0], "app done: ");
}

//==============================================================================
TEST (DownloadService, RefusesAProductThatCannotBeDownloaded)
{
    const char* const noIdentity = "The product identity is invalid.";
    const char* const noDownload = "No download is published for this platform yet.";
    const char* const badDownload = "The published download identity is incomplete or invalid.";

    const struct { const char* id; std::function<void (Product&)> change; const char* message; } rows[]
    {
        { "../app", [] (Product&) {}, noIdentity },
        { "con", [] (Product&) {}, noIdentity },
        { "", [] (Product&) {}, noIdentity },
        { "a b", [] (Product& p) { p.platforms.clear(); }, noIdentity },     // the identity is judged first

        { "app", [] (Product& p) { p.platforms.clear(); }, noDownload },
        { "app", [] (Product& p) { p.platforms["mac"] = p.platforms["win"]; p.platforms.erase ("win"); }, noDownload },
        { "app", [] (Product& p) { p.platforms["win"].url = ""; }, noDownload },
        { "app", [] (Product& p) { p.platforms["win"].url = " \t "; p.platforms["win"].sizeBytes = 0; }, noDownload },

        { "app", [] (Product& p) { p.platforms["win"].url = "http://downloads.example/setup.exe"; }, badDownload },
        { "app", [] (Product& p) { p.platforms["win"].url = "https:///setup.exe"; }, badDownload },
        { "app", [] (Product& p) { p.platforms["win"].sha256 = p.platforms["win"].sha256.substring (1); }, badDownload },
        { "app", [] (Product& p) { p.platforms["win"].sha256 = {}; }, badDownload },
        { "app", [] (Product& p) { p.platforms["win"].sizeBytes = 0; }, badDownload },
        { "app", [] (Product& p) { p.platforms["win"].sizeBytes = -1; }, badDownload },
    };

    for (const auto& row : rows)
    {
        auto product = applicationOf (row.id, "1.0.0", "installer");
        row.change (product);
        DownloadRun run;
        EXPECT_EQ (run.finish (product), row.id + std::string (" failed: ") + row.message);
        EXPECT_TRUE (run.progress.empty()) << row.message;
    }

    EXPECT_FALSE (isThere (HubPaths::vaultDirectory())) << "nothing new on disk";
}

TEST (DownloadService, SaysWhichVaultFolderCouldNotBeMade)
{
    write (vaultFile ("a-file"), "in the way");
    ASSERT_TRUE (vaultFile ("Cased").createDirectory().wasOk());
    link (vaultFile ("linked"), freshFolder ("elsewhere").getFullPathName());
    const juce::String opening ("Could not create the vault folder: ");

    const struct { const char* id; juce::String folder; } rows[]
    {
        { "a-file", vaultFile ("a-file").getFullPathName() },
        { "cased", {} },      // a refused folder has no path
        { "linked", {} },
    };

    for (const auto& row : rows)
    {
        DownloadRun run;
        EXPECT_EQ (run.finish (applicationOf (row.id, "1.0.0", "x")), (row.id + juce::String (" failed: ") + opening + row.folder).toStdString());
    }

    const ReadOnlyFolder shut (HubPaths::vaultDirectory());
    DownloadRun run;
    EXPECT_EQ (run.finish (applicationOf ("app", "1.0.0", "x")),
               ("app failed: " + opening + vaultFile ("app").getFullPathName()).toStdString());
}

TEST (DownloadService, RefusesADestinationThatIsALink)
{
    const auto outside = write (in (freshFolder ("outside"), "file"), "not the Hub's");

    for (const char* name : { "setup.exe", "setup.exe.part" })
    {
        const auto planted = link (vaultFile (juce::String ("app/") + name), outside.getFullPathName());
        DownloadRun run;
        EXPECT_EQ (run.finish (applicationOf ("app", "1.0.0", "x")),
                   "app failed: The vault destination failed canonical containment checks.") << name;
        EXPECT_EQ (read (outside), "not the Hub's");
        planted.deleteFile();
    }
}

TEST (DownloadService, RemovesAStalePartialDownloadAndBeginsAnew)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    write (vaultFile ("app/setup.exe.part"), "inst");
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app done: ");
    EXPECT_EQ (read (vaultFile ("app/setup.exe")), "installer");
    EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2);
}

TEST (DownloadService, RemovesAStaleDirectoryInThePartialDownloadsPlace)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    write (vaultFile ("app/setup.exe.part/deep/inside"), "x");
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app done: ");
    EXPECT_EQ (read (vaultFile ("app/setup.exe")), "installer");
    EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2);
}

TEST (DownloadService, RefusesWhenAStalePartialDownloadCannotBeRemoved)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    const BusyPath stuck (write (vaultFile ("app/setup.exe.part"), "stale"));
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app failed: A stale partial download could not be removed safely.");
    EXPECT_EQ (server.requestCount ("/files/setup.exe"), 0);
    EXPECT_EQ (read (vaultFile ("app/setup.exe.part")), "stale");
}

TEST (DownloadService, RecoversTheWholeVaultBeforeATransfer)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    write (vaultFile ("other/setup.exe.part"), "left by a crash");
    write (vaultFile ("third/setup.exe.backup-0123"), "lost installer");
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app done: ");
    EXPECT_EQ (treeOf (vaultFile ("other")), Tree());
    EXPECT_EQ (treeOf (vaultFile ("third")), (Tree { { "setup.exe", "file: lost installer" } }));
}

//==============================================================================
TEST (DownloadService, TheStoredNameComesFromTheAddress)
{
    TrustedTestServer server;

    const struct { const char* path; const char* fileName; } rows[]
    {
        { "/setup.exe", "setup.exe" },
        { "/deep/er/Setup%20One.exe", "Setup%20One.exe" },     // not decoded
        { "/setup.zip?token=12", "setup.zip" },
        { "/pack;v=2,final.zip", "packv=2final.zip" },         // characters that no file may have are left out
        { "/noextension", "noextension" },
        { "/", "app.exe" },
        { "/files/", "app.exe" },
        { "/CON.exe", "app.exe" },
        { "/com7", "app.exe" },
        { "/dot.", "app.exe" },
        { "/..", "app.exe" },
        { "/vault.json", "app.exe" },                          // the record's name
        { "/Vault.JSON", "app.exe" },
        { "/setup.exe#/other.exe", "setup.exe" },
        { "/setup.exe?a=/other.exe", "setup.exe" },
    };

    for (const auto& row : rows)
    {
        auto product = serveApplication (server, "app", "installer", row.path);
        DownloadRun run;
        EXPECT_EQ (run.finish (product), "app done: ") << row.path;
        EXPECT_EQ (juce::JSON::parse (vaultFile ("app/vault.json"))["fileName"].toString(), row.fileName) << row.path;
        EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2) << row.path;
    }
}

TEST (DownloadService, ALongQueryDoesNotHoldTheWindow)
{
    const auto millisecondsFor = [] (const juce::String& query)
    {
        auto product = applicationOf ("app", "1.0.0", "installer", "https://127.0.0.1:1/setup.exe" + query);
        DownloadRun run;
        const auto start = juce::Time::getMillisecondCounterHiRes();
        run.download (product);
        EXPECT_TRUE (run.waitForStart ("app"));
        return juce::Time::getMillisecondCounterHiRes() - start;
    };

    double shortest = 1.0e9;

    for (int i = 0; i < 5; ++i)
        shortest = std::min (shortest, millisecondsFor ({}));

    // In quadratic time this one would take thousands of times as long.
    EXPECT_LT (millisecondsFor ("?" + juce::String::repeatedString ("a&", 100000)), 100.0 * (shortest + 1.0));
}

TEST (DownloadService, AnAddressMayHaveBlanksAround)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "installer");
    product.platforms["win"].url = "  " + product.platforms["win"].url + " ";
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app done: ");
    EXPECT_TRUE (isThere (vaultFile ("app/setup.exe")));
}
