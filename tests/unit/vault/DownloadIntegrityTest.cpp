#include "DownloadRun.h"
#include "support/Files.h"
#include "support/FolderWatch.h"
#include "support/PrivateMounts.h"

using namespace zorva::test;

//==============================================================================
TEST (DownloadService, AWrongSizeDiscardsTheDownload)
{
    TrustedTestServer server;

    for (const auto difference : { -1, 1, 8 })
    {
        auto product = serveApplication (server, "app", "installer");
        product.platforms["win"].sizeBytes += difference;
        DownloadRun run;
        EXPECT_EQ (run.finish (product), std::string ("app failed: ") + wrongSize) << difference;
        EXPECT_EQ (treeOf (vaultFile ("app")), Tree()) << difference;
    }
}

TEST (DownloadService, AWrongSizeIsNotHashed)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "installer");
    ASSERT_TRUE (vaultFile ("app").createDirectory().wasOk());
    FolderWatch watch (vaultFile ("app"));

    product.platforms["win"].sizeBytes += 1;
    product.platforms["win"].sha256 = sha256Of ("something else");
    DownloadRun run;
    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + wrongSize);
    EXPECT_EQ (watch.count ("read setup.exe.part"), 0);

    product.platforms["win"].sizeBytes -= 1;
    DownloadRun second;
    EXPECT_EQ (second.finish (product), std::string ("app failed: ") + wrongHash);
    EXPECT_EQ (watch.count ("read setup.exe.part"), 1) << "the watch sees a hashing";
}

TEST (DownloadService, AWrongHashDiscardsTheDownload)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "installer");
    product.platforms["win"].sha256 = sha256Of ("Installer");
    DownloadRun run;

    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + wrongHash);
    EXPECT_EQ (treeOf (vaultFile ("app")), Tree());
}

TEST (DownloadService, AFailedCheckLeavesTheOldInstaller)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "new installer");
    putInVault (applicationOf ("app", "0.9.0", "old"), "setup.exe", "old");
    const auto before = treeOf (vaultFile ("app"));

    product.platforms["win"].sizeBytes += 1;
    DownloadRun run;
    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + wrongSize);
    EXPECT_EQ (treeOf (vaultFile ("app")), before);

    product.platforms["win"].sizeBytes -= 1;
    product.platforms["win"].sha256 = sha256Of ("x");
    DownloadRun second;
    EXPECT_EQ (second.finish (product), std::string ("app failed: ") + wrongHash);
    EXPECT_EQ (treeOf (vaultFile ("app")), before);
}

TEST (DownloadService, AnUpperCaseHashWithBlanksAroundMatches)
{
    TrustedTestServer server;
    auto product = serveApplication (server, "app", "installer");
    product.platforms["win"].sha256 = " " + product.platforms["win"].sha256.toUpperCase() + "\n";
    DownloadRun run;

    EXPECT_EQ (run.finish (product), "app done: ");
}

//==============================================================================
TEST (DownloadService, ATransferThatPassesThePublishedSizeIsStoppedAtOnce)
{
    TrustedTestServer server;

    for (const bool statesLength : { true, false })
    {
        const juce::String path = statesLength ? "/stated.exe" : "/unstated.exe";
        auto answer = TrustedTestServer::Answer::bytes (1024 * 1024).heldAfter (512 * 1024);    // and then never a word again

        if (! statesLength)
            answer.statedLength = -1;

        server.serve (path, answer);
        auto product = applicationOf ("app", "1.0.0", "installer", server.url (path));
        product.platforms["win"].sizeBytes = 1000;

        DownloadRun run;
        EXPECT_EQ (run.finish (product), std::string ("app failed: ") + wrongSize) << path;
        EXPECT_EQ (treeOf (vaultFile ("app")), Tree()) << path;
    }
}

TEST (DownloadService, AnOversizeTransferDoesNotFillTheDisk)
{
    TrustedTestServer server;
    server.serve ("/huge.exe", TrustedTestServer::Answer::bytes ((juce::int64) 4 << 30));
    auto product = applicationOf ("app", "1.0.0", "installer", server.url ("/huge.exe"));
    product.platforms["win"].sizeBytes = 100000;

    DownloadRun run;
    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + wrongSize);
    ASSERT_EQ (server.requests().size(), (size_t) 1);
    EXPECT_TRUE (pumpUntil ([&] { return server.requests()[0].sent < (64 << 20); })) << "what the sockets hold at most";
}

TEST (DownloadService, AFailedTransferDiscardsTheDownload)
{
    TrustedTestServer server;
    TrustedTestServer stranger (TrustedTestServer::Trust::stranger);
    const auto bytes = someBytes (100000);
    TrustedTestServer::Answer whole;
    whole.body.append (bytes.data(), bytes.size());
    server.serve ("/whole.exe", whole);
    server.serve ("/broken.exe", whole.truncatedTo (50000));
    server.serve ("/downgrade.exe", TrustedTestServer::Answer::redirect (server.plainUrl ("/whole.exe")));
    server.serve ("/circle.exe", TrustedTestServer::Answer::redirect (server.url ("/circle.exe")));
    stranger.serve ("/whole.exe", whole);

    const struct { const char* what; juce::String url; } rows[]
    {
        { "nobody listens", "https://127.0.0.1:1/whole.exe" },
        { "the connection breaks", server.url ("/broken.exe") },
        { "a step down to http", server.url ("/downgrade.exe") },
        { "redirects in a circle", server.url ("/circle.exe") },
        { "an unknown authority", stranger.url ("/whole.exe") },
    };

    for (const auto& row : rows)
    {
        DownloadRun run;
        EXPECT_EQ (run.finish (applicationOf ("app", "1.0.0", bytes, row.url)), std::string ("app failed: ") + transferFailed) << row.what;
        EXPECT_EQ (treeOf (vaultFile ("app")), Tree()) << row.what;
    }
}

TEST (DownloadService, TheStatusIsNotJudged)
{
    TrustedTestServer server;
    server.serve ("/gone.exe", TrustedTestServer::Answer::text ("installer", 404));
    server.serve ("/error.exe", TrustedTestServer::Answer::text ("some page", 500));

    DownloadRun run;
    EXPECT_EQ (run.finish (applicationOf ("app", "1.0.0", "installer", server.url ("/gone.exe"))), "app done: ");

    DownloadRun second;
    EXPECT_EQ (second.finish (applicationOf ("other", "1.0.0", "installer", server.url ("/error.exe"))),
               std::string ("other failed: ") + wrongHash);
}

TEST (DownloadService, FollowsARedirectWithinHttps)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer", "/mirror/file.bin");
    server.serve ("/setup.exe", TrustedTestServer::Answer::redirect (server.url ("/mirror/file.bin")));

    DownloadRun run;
    EXPECT_EQ (run.finish (applicationOf ("app", "1.0.0", "installer", server.url ("/setup.exe"))), "app done: ");
    EXPECT_EQ (read (vaultFile ("app/setup.exe")), "installer");
}

TEST (DownloadService, AFullDiskFailsTheTransfer)
{
    TrustedTestServer server;
    server.serve ("/setup.exe", TrustedTestServer::Answer::bytes (16 << 20));
    auto product = applicationOf ("app", "1.0.0", "installer", server.url ("/setup.exe"));
    product.platforms["win"].sizeBytes = 16 << 20;
    ASSERT_TRUE (vaultFile ("app").createDirectory().wasOk());
    const SmallDisk disk (vaultFile ("app"), 10);    // of 4 MiB

    DownloadRun run;
    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + transferFailed);
    EXPECT_EQ (treeOf (vaultFile ("app")), Tree());
}

TEST (DownloadService, AFolderThatCannotBeWrittenStartsNoTransfer)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    ASSERT_TRUE (vaultFile ("app").createDirectory().wasOk());
    const ReadOnlyFolder shut (vaultFile ("app"));

    DownloadRun run;
    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + couldNotStart);
    EXPECT_EQ (server.requestCount ("/files/setup.exe"), 0);
}
