#include "DownloadRun.h"
#include "support/Files.h"

using namespace zorva::test;

TEST (DownloadService, ProgressBeginsAtNothingAndOnlyGrows)
{
    TrustedTestServer server;
    const auto product = serveApplication (server, "app", someBytes (3 << 20));
    DownloadRun run;
    ASSERT_EQ (run.finish (product), "app done: ");

    const auto& steps = run.progress["app"];
    ASSERT_FALSE (steps.empty());
    EXPECT_EQ (steps.front(), 0.0);

    for (size_t i = 1; i < steps.size(); ++i)
    {
        EXPECT_GE (steps[i], steps[i - 1]);
        EXPECT_LE (steps[i], 1.0);
    }
}

TEST (DownloadService, ProgressComesInStepsOfAtLeastAFiveHundredth)
{
    TrustedTestServer server;
    TrustedTestServer::Answer answer;
    const auto bytes = someBytes (2000 * 64);
    answer.body.append (bytes.data(), bytes.size());
    answer.pieceBytes = 64;    // two thousand pieces
    server.serve ("/app.exe", answer);
    DownloadRun run;
    ASSERT_EQ (run.finish (applicationOf ("app", "1.0.0", bytes, server.url ("/app.exe"))), "app done: ");

    const auto& steps = run.progress["app"];
    EXPECT_LE (steps.size(), (size_t) 503);

    for (size_t i = 2; i < steps.size(); ++i)    // the first is the start's own, the second the first event
        EXPECT_TRUE (steps[i] - steps[i - 1] > 0.00199 || juce::exactlyEqual (steps[i], 1.0)) << steps[i - 1] << " to " << steps[i];
}

TEST (DownloadService, TheWholeIsAlwaysReported)
{
    TrustedTestServer server;
    const auto bytes = someBytes (1000000);
    TrustedTestServer::Answer answer;
    answer.body.append (bytes.data(), bytes.size());
    server.serve ("/app.exe", answer.heldAfter (999999));
    DownloadRun run;
    run.download (applicationOf ("app", "1.0.0", bytes, server.url ("/app.exe")));
    ASSERT_TRUE (pumpUntil ([&] { return ! run.progress["app"].empty() && run.progress["app"].back() > 0.998; }, 30000));

    const auto before = run.progress["app"].back();
    ASSERT_LT (before, 1.0);
    server.release ("/app.exe");
    ASSERT_TRUE (run.waitForEnds (1));
    EXPECT_EQ (run.ended[0], "app done: ");
    EXPECT_EQ (run.progress["app"].back(), 1.0) << "after " << before;
}

TEST (DownloadService, WithoutAStatedLengthProgressStaysAtNothing)
{
    TrustedTestServer server;
    const auto bytes = someBytes (1 << 20);
    TrustedTestServer::Answer answer;
    answer.body.append (bytes.data(), bytes.size());
    answer.statedLength = -1;
    answer.pieceBytes = 1024;
    server.serve ("/app.exe", answer);
    DownloadRun run;
    ASSERT_EQ (run.finish (applicationOf ("app", "1.0.0", bytes, server.url ("/app.exe"))), "app done: ");

    // Once at the start and once for the first event; the rest never gets through.
    EXPECT_EQ (run.progress["app"], (std::vector<double> { 0.0, 0.0 }));
}

TEST (DownloadService, ProgressOfACancelledDownloadEndsWithIt)
{
    TrustedTestServer server;
    const auto bytes = someBytes (1 << 20);
    TrustedTestServer::Answer answer;
    answer.body.append (bytes.data(), bytes.size());
    answer.pieceBytes = 4096;
    answer.pauseMs = 1;
    server.serve ("/app.exe", answer);
    const auto product = applicationOf ("app", "1.0.0", bytes, server.url ("/app.exe"));
    DownloadRun run;
    run.download (product, "first");
    ASSERT_TRUE (pumpUntil ([&] { return run.progress["first"].size() > 5; }, 30000));

    run.service->cancel ("app");
    const auto steps = run.progress["first"].size();
    run.download (product, "second");
    ASSERT_TRUE (run.waitForEnds (2));
    EXPECT_EQ (run.progress["first"].size(), steps);
    EXPECT_EQ (run.ended, (std::vector<std::string> { "first failed: Cancelled", "second done: " }));
}
