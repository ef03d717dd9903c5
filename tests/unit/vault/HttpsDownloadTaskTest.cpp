#include "vault/HttpsDownloadTask.h"
#include "support/Files.h"
#include "support/GuiHarness.h"
#include "support/PrivateMounts.h"
#include "support/ThreadRefusal.h"
#include "support/TrustedTestServer.h"

#include <atomic>
#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** Writes down the events of a task; the test's thread reads them. */
class Notebook final : public juce::URL::DownloadTaskListener
{
public:
    bool waitForEnd()    { return ended.wait (30000); }

    std::atomic<int> finishedCount { 0 }, progressCount { 0 };
    std::atomic<juce::int64> lastBytes { -1 }, lastLength { -2 };
    std::atomic<bool> success { false };
    std::atomic<bool> onMessageThread { false };
    std::atomic<bool> orderBroken { false };

private:
    void finished (juce::URL::DownloadTask*, bool ok) override
    {
        look();
        success = ok;
        ++finishedCount;
        ended.signal();
    }

    void progress (juce::URL::DownloadTask*, juce::int64 bytes, juce::int64 length) override
    {
        look();
        orderBroken = orderBroken || finishedCount > 0 || bytes < lastBytes;
        lastBytes = bytes;
        lastLength = length;
        ++progressCount;
    }

    void look()    { onMessageThread = onMessageThread || juce::MessageManager::existsAndIsCurrentThread(); }

    juce::WaitableEvent ended { true };
};

juce::File target()    { return in (freshFolder ("downloads"), "file.part"); }

std::string pattern (size_t size)
{
    std::string bytes (size, 0);

    for (size_t i = 0; i < size; ++i)
        bytes[i] = (char) (i % 256);

    return bytes;
}

double millisecondsOf (const std::function<void()>& action)
{
    const auto start = juce::Time::getMillisecondCounterHiRes();
    action();
    return juce::Time::getMillisecondCounterHiRes() - start;
}
}

//==============================================================================
TEST (HttpsDownloadTask, BringsTheWholeBodyIntoTheFile)
{
    TrustedTestServer server;
    const auto file = target();

    for (const int size : { 0, 1, 1000, 256 * 1024, 3 * 1024 * 1024 })
    {
        server.serve ("/file", TrustedTestServer::Answer::bytes (size));
        Notebook notebook;
        const auto task = HttpsDownloadTask::start (server.url ("/file"), file, size, notebook);
        ASSERT_NE (task, nullptr);
        ASSERT_TRUE (notebook.waitForEnd()) << size;
        EXPECT_TRUE (notebook.success) << size;
        EXPECT_TRUE (task->isFinished()) << size;
        EXPECT_TRUE (read (file) == pattern ((size_t) size)) << size;
        EXPECT_FALSE (notebook.onMessageThread) << "events come on the task's own thread";
        EXPECT_FALSE (notebook.orderBroken) << "progress grows and comes before the end";
        EXPECT_EQ (notebook.finishedCount, 1);
    }
}

TEST (HttpsDownloadTask, ReportsTheStatedLengthOrNone)
{
    TrustedTestServer server;
    auto answer = TrustedTestServer::Answer::bytes (512 * 1024);
    server.serve ("/stated", answer);
    answer.statedLength = -1;
    server.serve ("/unstated", answer);
    const auto file = target();

    for (const auto& [path, length] : { std::pair<const char*, juce::int64> { "/stated", 512 * 1024 }, { "/unstated", -1 } })
    {
        Notebook notebook;
        const auto task = HttpsDownloadTask::start (server.url (path), file, 512 * 1024, notebook);
        ASSERT_TRUE (notebook.waitForEnd()) << path;
        EXPECT_TRUE (notebook.success) << path;
        EXPECT_GT (notebook.progressCount, 0) << path;
        EXPECT_EQ (notebook.lastLength, length) << path;
        EXPECT_EQ (file.getSize(), 512 * 1024) << path;
    }
}

TEST (HttpsDownloadTask, ReplacesWhatTheFileHeldBefore)
{
    TrustedTestServer server;
    server.serve ("/file", TrustedTestServer::Answer::text ("new"));
    const auto file = write (target(), "something longer than the new content");
    Notebook notebook;
    const auto task = HttpsDownloadTask::start (server.url ("/file"), file, 3, notebook);

    ASSERT_TRUE (notebook.waitForEnd());
    EXPECT_EQ (read (file), "new");
}

TEST (HttpsDownloadTask, EndsWithoutSuccessWhenTheTransferFails)
{
    TrustedTestServer server;
    TrustedTestServer stranger (TrustedTestServer::Trust::stranger);
    server.serve ("/file", TrustedTestServer::Answer::text ("content"));
    stranger.serve ("/file", TrustedTestServer::Answer::text ("content"));
    server.serve ("/broken", TrustedTestServer::Answer::text ("content").truncatedTo (3));
    server.serve ("/downgrade", TrustedTestServer::Answer::redirect (server.plainUrl ("/file")));

    const struct { const char* what; juce::String url; } rows[]
    {
        { "nobody listens", "https://127.0.0.1:1/file" },
        { "not https", server.plainUrl ("/file") },
        { "a step down to http", server.url ("/downgrade") },
        { "an unknown authority", stranger.url ("/file") },
        { "a body that ends early", server.url ("/broken") },
    };

    for (const auto& row : rows)
    {
        Notebook notebook;
        const auto task = HttpsDownloadTask::start (row.url, target(), 7, notebook);
        ASSERT_NE (task, nullptr) << row.what;
        ASSERT_TRUE (notebook.waitForEnd()) << row.what;
        EXPECT_FALSE (notebook.success) << row.what;
        EXPECT_EQ (notebook.finishedCount, 1) << row.what;
    }
}

TEST (HttpsDownloadTask, CutsOffABodyThatPassesTheExpectedSize)
{
    TrustedTestServer server;
    const auto file = target();

    for (const bool statesLength : { true, false })
    {
        const juce::String path = statesLength ? "/stated" : "/unstated";
        auto answer = TrustedTestServer::Answer::bytes (64 << 20).heldAfter (8 << 20);

        if (! statesLength)
            answer.statedLength = -1;

        server.serve (path, answer);
        Notebook notebook;
        const auto task = HttpsDownloadTask::start (server.url (path), file, 1000, notebook);
        ASSERT_TRUE (notebook.waitForEnd()) << path;
        EXPECT_TRUE (notebook.success) << "the size check refuses it; " << path;
        EXPECT_NE (file.getSize(), 1000) << path;
        EXPECT_LT (file.getSize(), 2 << 20) << path;
    }
}

TEST (HttpsDownloadTask, AFullDiskEndsItWithoutSuccess)
{
    TrustedTestServer server;
    server.serve ("/file", TrustedTestServer::Answer::bytes (16 << 20));
    const auto file = target();
    const SmallDisk disk (file.getParentDirectory(), 10);    // of 4 MiB
    Notebook notebook;
    const auto task = HttpsDownloadTask::start (server.url ("/file"), file, 16 << 20, notebook);

    ASSERT_TRUE (notebook.waitForEnd());
    EXPECT_FALSE (notebook.success);
}

TEST (HttpsDownloadTask, IsNullWhenNoThreadCanBeStarted)
{
    TrustedTestServer server;
    server.serve ("/file", TrustedTestServer::Answer::text ("content"));
    const auto file = target();
    refuseNewThreads();
    Notebook notebook;

    EXPECT_EQ (HttpsDownloadTask::start (server.url ("/file"), file, 7, notebook), nullptr);
    EXPECT_EQ (notebook.finishedCount, 0);
    EXPECT_FALSE (isThere (file));
}

TEST (HttpsDownloadTask, IsNullWhenTheFileCannotBeCreated)
{
    TrustedTestServer server;
    server.serve ("/file", TrustedTestServer::Answer::text ("content"));
    const auto folder = freshFolder ("downloads");
    write (in (folder, "full/inside"), "x");
    Notebook notebook;

    for (const auto& file : { in (folder, "missing/file"), in (folder, "full") })
        EXPECT_EQ (HttpsDownloadTask::start (server.url ("/file"), file, 7, notebook), nullptr) << file.getFullPathName();

    pump (100);
    EXPECT_EQ (notebook.finishedCount, 0);
    EXPECT_EQ (server.requestCount ("/file"), 0);
}

//==============================================================================
TEST (HttpsDownloadTask, DestructionEndsItAtOnceAndSilencesIt)
{
    TrustedTestServer server;
    server.serve ("/silent", TrustedTestServer::Answer::text ("content").silenced());
    server.serve ("/held", TrustedTestServer::Answer::bytes (1 << 20).heldAfter (512 * 1024));

    const struct { juce::String url; std::function<bool()> arrived; std::function<void()> release; } rows[]
    {
        { server.silentUrl ("/x"), [&] { return server.silentConnections() > 0; }, [] {} },
        { server.url ("/silent"), [&] { return server.requestCount ("/silent") > 0; }, [&] { server.release ("/silent"); } },
        { server.url ("/held"), [&] { return server.requestCount ("/held") > 0; }, [&] { server.release ("/held"); } },
    };

    for (const auto& row : rows)
    {
        Notebook notebook;
        const auto file = target();
        auto task = HttpsDownloadTask::start (row.url, file, 1 << 20, notebook);
        ASSERT_TRUE (pumpUntil (row.arrived)) << row.url;

        EXPECT_LT (millisecondsOf ([&] { task.reset(); }), 1000.0) << row.url;
        const int events = notebook.progressCount;
        file.deleteFile();
        row.release();
        pump (300);
        EXPECT_EQ (notebook.progressCount, events) << row.url;
        EXPECT_EQ (notebook.finishedCount, 0) << row.url;
        EXPECT_FALSE (isThere (file)) << row.url;
    }
}

TEST (HttpsDownloadTask, StartingReturnsAtOnce)
{
    TrustedTestServer server;
    Notebook notebook;
    std::unique_ptr<HttpsDownloadTask> task;

    EXPECT_LT (millisecondsOf ([&] { task = HttpsDownloadTask::start (server.silentUrl ("/x"), target(), 1, notebook); }), 1000.0);
    ASSERT_NE (task, nullptr);
    EXPECT_FALSE (task->isFinished());
}

TEST (HttpsDownloadTask, ManyCanBeDestroyedAtAnyMoment)
{
    TrustedTestServer server;
    server.serve ("/file", TrustedTestServer::Answer::bytes (1 << 20));
    const auto folder = freshFolder ("many");

    for (int i = 0; i < 40; ++i)
    {
        Notebook notebook;
        auto task = HttpsDownloadTask::start (server.url ("/file"), in (folder, juce::String (i)), 1 << 20, notebook);
        ASSERT_NE (task, nullptr);

        if (i % 4 != 0)
            pumpUntil ([&] { return notebook.lastBytes >= (juce::int64) i * 20000 || notebook.finishedCount > 0; });

        task.reset();
        EXPECT_LE (notebook.finishedCount, 1);
    }
}
