#include "ai/HubAiBrokerService.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <thread>
#include <vector>

// broker REQUESTS: health requests to the broker, and the same frames exchanged with a server that does nothing but the same cycles of
// the same kind of pipe. The two take turns, once with requests to a server that has gone to sleep until one comes, once with requests
// as soon as there is a pipe again. Prints one JSON object. HUB_BENCHMARK_HOME must name a scratch directory.

namespace
{
constexpr int blocks = 20;
constexpr int limitMs = 5000;
constexpr std::chrono::milliseconds untilTheServerSleeps { 1 };

/** Holds nothing: a health request asks the store for nothing. */
class NoKeys final : public HubCredentialStore
{
public:
    bool storeKey (const juce::String&, juce::String&) override         { return false; }
    bool readKey (juce::MemoryBlock&, juce::String&) override           { return false; }
    bool deleteKey (juce::String&) override                             { return true; }
    bool hasKey() override                                              { return false; }
    juce::String backendName() override                                 { return "none"; }
};

class NoLog final : public juce::Logger
{
    void logMessage (const juce::String&) override {}
};

bool readFrame (juce::NamedPipe& pipe, juce::MemoryBlock& payload)
{
    juce::uint8 header[4] = {};
    juce::uint32 length = 0;
    juce::String error;

    if (pipe.read (header, 4, limitMs) != 4 || ! decodeFrameHeader (header, 4, length, error))
        return false;

    payload.setSize (length);
    return pipe.read (payload.getData(), (int) length, limitMs) == (int) length;
}

bool writeFrame (juce::NamedPipe& pipe, const juce::MemoryBlock& frame)
{
    return pipe.write (frame.getData(), (int) frame.getSize(), limitMs) == (int) frame.getSize();
}

//==============================================================================
/** The peer: one request and one prepared reply a pipe, as the broker serves them. */
class EchoServer final : private juce::Thread
{
public:
    EchoServer (const juce::String& pipeName, const juce::MemoryBlock& replyFrame)
        : juce::Thread ("echo"), name (pipeName), reply (replyFrame)
    {
        startThread();
    }

    ~EchoServer() override
    {
        signalThreadShouldExit();

        while (! waitForThreadToExit (20))
            pipe.close();
    }

    bool isListening() const    { return listening; }

private:
    void run() override
    {
        while (! threadShouldExit())
        {
            juce::MemoryBlock request;
            listening = pipe.createNewPipe (name, true);

            if (listening && readFrame (pipe, request))
            {
                listening = false;
                writeFrame (pipe, reply);
            }

            listening = false;
            pipe.close();
        }
    }

    const juce::String name;
    const juce::MemoryBlock reply;
    juce::NamedPipe pipe;
    std::atomic<bool> listening { false };
};

//==============================================================================
/** The times of many requests. */
struct Times
{
    std::vector<double> microseconds;       ///< of each, from opening the pipe to the whole reply
    double seconds = 0;                     ///< of all, what lies between them included
};

/** A server as a client meets it. */
struct Subject
{
    juce::String pipeName;
    std::function<bool()> isListening;
    Times single, inARow;
};

double secondsSince (juce::int64 begin)
{
    return juce::Time::highResolutionTicksToSeconds (juce::Time::getHighResolutionTicks() - begin);
}

void waitUntilListening (const Subject& subject)
{
    while (! subject.isListening())
        std::this_thread::yield();
}

bool exchange (const Subject& subject, const juce::MemoryBlock& frame, juce::MemoryBlock& reply)
{
    juce::NamedPipe pipe;
    return pipe.openExisting (subject.pipeName) && writeFrame (pipe, frame) && readFrame (pipe, reply);
}

bool requestMany (const Subject& subject, Times& times, const juce::MemoryBlock& frame, int count,
                  std::chrono::milliseconds pause)
{
    juce::MemoryBlock reply;
    const auto begin = juce::Time::getHighResolutionTicks();

    for (int i = 0; i < count; ++i)
    {
        waitUntilListening (subject);

        if (pause.count() > 0)
        {
            std::this_thread::sleep_for (pause);
            waitUntilListening (subject);       // an idle cycle may just have ended
        }

        const auto opened = juce::Time::getHighResolutionTicks();

        if (! exchange (subject, frame, reply))
            return false;

        times.microseconds.push_back (1e6 * secondsSince (opened));
    }

    times.seconds += secondsSince (begin);
    return true;
}

bool requestBothWays (Subject& subject, const juce::MemoryBlock& frame, int count)
{
    return requestMany (subject, subject.single, frame, count, untilTheServerSleeps)
        && requestMany (subject, subject.inARow, frame, count, {});
}

juce::var figuresOf (Times& times)
{
    auto& all = times.microseconds;
    std::sort (all.begin(), all.end());

    auto* figures = new juce::DynamicObject();
    figures->setProperty ("p50", all[all.size() / 2]);
    figures->setProperty ("p99", all[all.size() * 99 / 100]);
    figures->setProperty ("perSecond", (double) all.size() / times.seconds);
    return figures;
}

juce::var figuresOf (Subject& subject)
{
    auto* figures = new juce::DynamicObject();
    figures->setProperty ("single", figuresOf (subject.single));
    figures->setProperty ("inARow", figuresOf (subject.inARow));
    return figures;
}

juce::MemoryBlock frameOf (const juce::MemoryBlock& payload)
{
    juce::MemoryBlock frame;
    juce::String error;
    encodeFrame (payload, frame, error);
    return frame;
}

juce::MemoryBlock healthRequest (const juce::String& token)
{
    auto* object = new juce::DynamicObject();
    object->setProperty ("version", brokerProtocolVersion);
    object->setProperty ("token", token);
    object->setProperty ("op", "broker.health");
    object->setProperty ("requestId", "benchmark-1");
    return frameOf (encodeResponse (object));
}

bool measure (int requests)
{
    NoKeys store;
    HubOpenAiClient client (store);
    PreviewDraftStore drafts;
    HubAiBrokerService broker (store, client, drafts);
    juce::String error;

    if (! broker.start (error))
        return false;

    const auto file = discoveryFilePath();

    while (! file.exists())
        std::this_thread::yield();

    const auto discovery = juce::JSON::parse (file);
    const auto frame = healthRequest (discovery["token"].toString());

    Subject ours { discovery["pipeName"].toString(), [&] { return file.exists(); }, {}, {} };
    juce::MemoryBlock reply;

    waitUntilListening (ours);

    if (! exchange (ours, frame, reply) || ! juce::JSON::parse (reply.toString())["ok"])
        return false;

    const auto echoName = "zorva_echo_" + generateRandomHex (16);
    EchoServer echo (echoName, frameOf (reply));
    Subject peer { echoName, [&] { return echo.isListening(); }, {}, {} };
    for (int i = 0; i < blocks; ++i)
        for (auto* subject : { &ours, &peer })
            if (! requestBothWays (*subject, frame, requests / blocks))
                return false;

    auto* result = new juce::DynamicObject();
    result->setProperty ("broker", figuresOf (ours));
    result->setProperty ("echo", figuresOf (peer));
    std::cout << juce::JSON::toString (juce::var (result)) << "\n";
    return true;
}
}

int main (int argc, char** argv)
{
    if (argc != 2 || std::getenv ("HUB_BENCHMARK_HOME") == nullptr || ::setenv ("HOME", std::getenv ("HUB_BENCHMARK_HOME"), 1) != 0)
        return 2;

    juce::ScopedJuceInitialiser_GUI gui;
    NoLog log;
    juce::Logger::setCurrentLogger (&log);
    const auto ok = measure (juce::jmax (blocks, std::atoi (argv[1])));
    juce::Logger::setCurrentLogger (nullptr);
    return ok ? 0 : 1;
}
