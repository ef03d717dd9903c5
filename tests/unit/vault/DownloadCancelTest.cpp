#include "DownloadRun.h"
#include "support/Files.h"
#include "support/FolderWatch.h"
#include "vault/VaultStore.h"

using namespace zorva::test;

namespace
{
using Lines = std::vector<std::string>;

Product unsafe (const juce::String& id)
{
    return applicationOf ("../" + id, "1.0.0", "x");
}

/** Runs what is queued until nothing has come for a while. */
void pumpOut()
{
    pump (200);
}

double millisecondsOf (const std::function<void()>& action)
{
    const auto start = juce::Time::getMillisecondCounterHiRes();
    action();
    return juce::Time::getMillisecondCounterHiRes() - start;
}

/** Runs the message loop, one message at a time, until the worker has read the finished transfer and before its report arrives. */
bool runUntilHashed (DownloadRun& run, FolderWatch& watch)
{
    const auto end = juce::Time::getMillisecondCounterHiRes() + 30000.0;

    while (watch.count ("read setup.exe.part") == 0 && run.ended.empty() && juce::Time::getMillisecondCounterHiRes() < end)
        if (! juce::detail::dispatchNextMessageOnSystemQueue (true))
            juce::Thread::yield();

    return run.ended.empty() && watch.count ("read setup.exe.part") > 0;
}

/** Downloads one product after another until one has been caught between its check and its report, and answers with its id. On a busy
    machine both may have come before this thread looks. */
juce::String catchOneDuringItsPromotion (TrustedTestServer& server, DownloadRun& run)
{
    for (const auto* const id : { "first", "second", "third", "fourth", "fifth" })
    {
        const auto product = serveApplication (server, id, someBytes (4 << 20));
        EXPECT_TRUE (vaultFile (id).createDirectory().wasOk());
        FolderWatch watch (vaultFile (id));
        run.ended.clear();
        run.download (product);

        if (runUntilHashed (run, watch))
            return id;
    }

    ADD_FAILURE() << "None was caught.";
    return {};
}
}

//==============================================================================
TEST (DownloadService, CancellingAProductBothQueuedAndActiveEndsEachRequest)
{
    TrustedTestServer server;
    const auto app = serveHeld (server, "app");
    const auto other = serveApplication (server, "other", "installer", "/other.exe");
    DownloadRun run;
    run.download (app, "active");
    run.download (other);
    run.download (app, "queued");
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/app.exe") == 1; }));

    run.service->cancel ("app");
    EXPECT_EQ (run.ended, (Lines { "queued failed: Cancelled", "active failed: Cancelled" })) << "before cancel returns";
    EXPECT_FALSE (isThere (vaultFile ("app/app.exe.part")));

    ASSERT_TRUE (run.waitForEnds (3));
    pumpOut();
    EXPECT_EQ (run.ended, (Lines { "queued failed: Cancelled", "active failed: Cancelled", "other done: " }));
    EXPECT_EQ (run.service->activeCount(), 0);
}

TEST (DownloadService, CancellingKeepsTheOrderOfTheOthers)
{
    TrustedTestServer server;
    DownloadRun run;
    run.download (serveHeld (server, "active"));
    run.download (unsafe ("a"));
    run.download (applicationOf ("app", "1.0.0", "x"), "app one");
    run.download (unsafe ("b"));
    run.download (applicationOf ("app", "1.0.0", "x"), "app two");
    run.download (unsafe ("c"));
    ASSERT_TRUE (run.waitForStart ("active"));

    run.service->cancel ("app");
    EXPECT_EQ (run.ended, (Lines { "app one failed: Cancelled", "app two failed: Cancelled" }));
    EXPECT_EQ (run.service->activeCount(), 4);

    run.service->cancel ("active");
    ASSERT_TRUE (run.waitForEnds (6));
    EXPECT_EQ (run.ended, (Lines { "app one failed: Cancelled", "app two failed: Cancelled", "active failed: Cancelled",
                                   "../a failed: The product identity is invalid.", "../b failed: The product identity is invalid.",
                                   "../c failed: The product identity is invalid." }));
}

TEST (DownloadService, CancellingARequestBeforeItsStartLeavesNothing)
{
    DownloadRun run;
    run.download (applicationOf ("app", "1.0.0", "x"));
    run.service->cancel ("app");
    EXPECT_EQ (run.ended, (Lines { "app failed: Cancelled" }));

    pumpOut();
    EXPECT_EQ (run.ended.size(), (size_t) 1);
    EXPECT_FALSE (isThere (vaultFile ("app")));
}

TEST (DownloadService, CancellingSomethingElseChangesNothing)
{
    TrustedTestServer server;
    DownloadRun run;
    run.download (serveHeld (server, "app"));
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/app.exe") == 1; }));

    for (const char* id : { "other", "App", "", "ap" })
        run.service->cancel (id);

    server.release ("/app.exe");
    ASSERT_TRUE (run.waitForEnds (1));
    EXPECT_EQ (run.ended, (Lines { "app done: " }));
}

TEST (DownloadService, AServerThatSaysNothingNeitherHoldsTheWindowNorACancel)
{
    TrustedTestServer server;
    server.serve ("/silent.exe", TrustedTestServer::Answer::text ("installer").silenced());

    const struct { juce::String url; std::function<int()> arrived; } rows[]
    {
        { server.silentUrl ("/x.exe"), [&] { return server.silentConnections(); } },
        { server.url ("/silent.exe"), [&] { return server.requestCount ("/silent.exe"); } },
    };

    for (const auto& row : rows)
    {
        DownloadRun run;
        run.download (applicationOf ("app", "1.0.0", "installer", row.url));

        EXPECT_LT (millisecondsOf ([&] { run.waitForStart ("app"); }), 1000.0) << row.url;
        ASSERT_TRUE (pumpUntil ([&] { return row.arrived() > 0; })) << row.url;
        EXPECT_EQ (run.service->activeCount(), 1);
        EXPECT_LT (millisecondsOf ([&] { run.service->cancel ("app"); }), 1000.0) << row.url;
        EXPECT_EQ (run.ended, (Lines { "app failed: Cancelled" })) << row.url;
        pumpOut();
        EXPECT_EQ (treeOf (vaultFile ("app")), Tree()) << row.url;
    }
}

TEST (DownloadService, ADownloadAfterACancelledOneStartsAtOnce)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    DownloadRun run;
    run.download (applicationOf ("app", "1.0.0", "installer", server.silentUrl ("/setup.exe")), "stuck");
    run.download (product, "next");
    ASSERT_TRUE (run.waitForStart ("stuck"));

    run.onEnded = [&] (const std::string& label)    { if (label == "stuck") run.download (product, "again"); };
    EXPECT_LT (millisecondsOf ([&] { run.service->cancel ("app"); }), 1000.0);
    ASSERT_TRUE (run.waitForEnds (3));
    EXPECT_EQ (run.ended, (Lines { "next failed: Cancelled", "stuck failed: Cancelled", "again done: " }));
}

TEST (DownloadService, ACancelDuringThePromotionEndsTheRequestOnce)
{
    TrustedTestServer server;
    DownloadRun run;
    const auto id = catchOneDuringItsPromotion (server, run);
    ASSERT_TRUE (id.isNotEmpty());

    run.service->cancel (id);
    EXPECT_EQ (run.ended, (Lines { id.toStdString() + " failed: Cancelled" }));
    EXPECT_EQ (run.service->activeCount(), 0);

    // Its worker carries on: in the end there is a whole installer with a record, or neither.
    ASSERT_TRUE (pumpUntil ([&]
    {
        const auto tree = treeOf (vaultFile (id));
        return tree.empty() || (tree.size() == 2 && tree.count ("setup.exe") + tree.count ("vault.json") == 2);
    }));

    pumpOut();
    EXPECT_EQ (run.ended.size(), (size_t) 1) << "the worker's result is dropped";
}

//==============================================================================
TEST (DownloadService, ADestroyedServiceCallsNothingBack)
{
    TrustedTestServer server;
    const auto held = serveHeld (server, "held");
    DownloadRun run;
    run.download (held);
    run.download (held, "queued");
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/held.exe") == 1; }));

    EXPECT_LT (millisecondsOf ([&] { run.service.reset(); }), 1000.0);
    server.release ("/held.exe");
    pumpOut();
    EXPECT_EQ (run.ended, Lines());
}

TEST (DownloadService, AServiceDestroyedWhileTheServerSaysNothingGoesAtOnce)
{
    TrustedTestServer server;
    DownloadRun run;
    run.download (applicationOf ("app", "1.0.0", "x", server.silentUrl ("/x.exe")));
    ASSERT_TRUE (pumpUntil ([&] { return server.silentConnections() == 1; }));

    EXPECT_LT (millisecondsOf ([&] { run.service.reset(); }), 1000.0);
    pumpOut();
    EXPECT_EQ (run.ended, Lines());
}

TEST (DownloadService, AServiceDestroyedBeforeTheStartCallsNothingBack)
{
    DownloadRun run;
    run.download (unsafe ("a"));
    run.service.reset();
    pumpOut();
    EXPECT_EQ (run.ended, Lines());
}

TEST (DownloadService, AServiceDestroyedDuringThePromotionCallsNothingBack)
{
    TrustedTestServer server;
    DownloadRun run;
    const auto id = catchOneDuringItsPromotion (server, run);
    ASSERT_TRUE (id.isNotEmpty());

    run.service.reset();
    ASSERT_TRUE (pumpUntil ([&] { return treeOf (vaultFile (id)).size() == 2 && isThere (vaultFile (id + "/vault.json")); }))
        << "the worker finishes its promotion";
    pumpOut();
    EXPECT_EQ (run.ended, Lines());
    EXPECT_EQ (VaultStore::trustedInstallerFor (id).getFileName(), "setup.exe");
}
