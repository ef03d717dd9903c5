#include "DownloadRun.h"
#include "support/Files.h"
#include "support/ThreadRefusal.h"

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
}

//==============================================================================
TEST (DownloadService, OneTransferRunsAtATimeFirstInFirstOut)
{
    TrustedTestServer server;
    const auto a = serveHeld (server, "a"), b = serveHeld (server, "b"), c = serveHeld (server, "c");
    DownloadRun run;
    run.download (a);
    run.download (b);
    run.download (c);
    EXPECT_EQ (run.service->activeCount(), 3);

    int left = 3;

    for (const char* id : { "a", "b", "c" })
    {
        const auto path = juce::String ("/") + id + ".exe";
        ASSERT_TRUE (pumpUntil ([&] { return server.requestCount (path) == 1; })) << id;
        pumpOut();
        EXPECT_EQ (server.requests().size(), (size_t) (4 - left)) << "nobody else was asked";
        EXPECT_EQ (run.service->activeCount(), left) << id;
        server.release (path);
        ASSERT_TRUE (run.waitForEnds ((size_t) (4 - left)));
        --left;
    }

    EXPECT_EQ (run.ended, (Lines { "a done: ", "b done: ", "c done: " }));
    EXPECT_EQ (run.service->activeCount(), 0);
}

TEST (DownloadService, TheSameProductCanBeQueuedTwice)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    DownloadRun run;
    run.download (product, "first");
    run.download (product, "second");

    ASSERT_TRUE (run.waitForEnds (2));
    EXPECT_EQ (run.ended, (Lines { "first done: ", "second done: " }));
    EXPECT_EQ (server.requestCount ("/files/setup.exe"), 2);
    EXPECT_EQ (treeOf (vaultFile ("app")).size(), (size_t) 2);
}

TEST (DownloadService, EveryRequestEndsExactlyOnce)
{
    TrustedTestServer server;
    const auto good = serveApplication (server, "good", "installer");
    auto wrong = serveApplication (server, "wrong", "installer", "/wrong.exe");
    wrong.platforms["win"].sha256 = sha256Of ("x");
    DownloadRun run;
    run.download (good);
    run.download (unsafe ("one"));
    run.download (wrong);
    run.download (applicationOf ("offline", "1.0.0", "x", "https://127.0.0.1:1/x.exe"));
    run.download (unsafe ("two"));
    run.download (good, "again");

    ASSERT_TRUE (run.waitForEnds (6));
    pumpOut();
    EXPECT_EQ (run.ended, (Lines { "good done: ", "../one failed: The product identity is invalid.", std::string ("wrong failed: ") + wrongHash,
                                   std::string ("offline failed: ") + transferFailed, "../two failed: The product identity is invalid.",
                                   "again done: " }));
}

TEST (DownloadService, ARequestThatFailsAtItsStartMovesOnInTheSameCall)
{
    DownloadRun run;
    run.download (unsafe ("one"));
    run.download (unsafe ("two"));
    run.download (unsafe ("three"));

    while (run.ended.empty())
        if (! juce::detail::dispatchNextMessageOnSystemQueue (true))
            juce::Thread::sleep (1);

    EXPECT_EQ (run.ended.size(), (size_t) 3) << "after one message";
}

TEST (DownloadService, ACompletionMayQueueTheNextDownload)
{
    TrustedTestServer server;
    const auto first = serveApplication (server, "first", "1", "/1.exe"), second = serveApplication (server, "second", "2", "/2.exe");
    DownloadRun run;
    int activeAtEnd = -1;

    run.onEnded = [&] (const std::string& label)
    {
        activeAtEnd = run.service->activeCount();

        if (label == "first")
            run.download (second);
    };

    run.download (first);
    ASSERT_TRUE (run.waitForEnds (2));
    EXPECT_EQ (run.ended, (Lines { "first done: ", "second done: " }));
    EXPECT_EQ (activeAtEnd, 0) << "a download that reports its end is no longer active";
}

TEST (DownloadService, AVerificationThatCannotBeStartedIsReported)
{
    TrustedTestServer server;
    const auto product = serveHeld (server, "app");
    DownloadRun run;
    run.download (product);
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/app.exe") == 1; }));

    refuseNewThreads();
    server.release ("/app.exe");
    ASSERT_TRUE (run.waitForEnds (1));
    EXPECT_EQ (run.ended[0].substr (0, 12), "app failed: ");
    EXPECT_GT (run.ended[0].size(), (size_t) 12) << "with a reason";
    EXPECT_EQ (run.service->activeCount(), 0);
    EXPECT_EQ (treeOf (vaultFile ("app")), Tree());
}

TEST (DownloadService, ATransferThatCannotBeStartedIsReported)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", "installer");
    DownloadRun run;
    refuseNewThreads();

    EXPECT_EQ (run.finish (product), std::string ("app failed: ") + couldNotStart);
    EXPECT_TRUE (run.progress.empty());
    EXPECT_EQ (treeOf (vaultFile ("app")), Tree());
}
