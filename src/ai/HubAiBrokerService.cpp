#include "ai/HubAiBrokerService.h"

#include "app/HubPaths.h"
#include "platform/PipeServer.h"
#include "platform/ProcessId.h"
#include "support/IsoTime.h"
#include "support/RecordFile.h"

namespace
{
constexpr int pipeTimeoutMs = 5000;         // of each read and write, the wait for a client included
constexpr int retryDelayMs = 250;
constexpr int stopLimitMs = 35000;          // more than a request's deadline: past it the thread is killed with its locks held
constexpr int closeAgainMs = 50;
}

HubAiBrokerService::HubAiBrokerService (HubCredentialStore& store, HubOpenAiClient& client, PreviewDraftStore& drafts)
    : juce::Thread ("ZORVA Hub AI broker"), credentialStore (store), openAiClient (client), draftStore (drafts),
      discoveryFile (discoveryFilePath())
{
}

HubAiBrokerService::~HubAiBrokerService()
{
    withdrawDiscoveryFile();
    signalThreadShouldExit();
    notify();

    const auto begin = juce::Time::getMillisecondCounter();

    // Once is not enough: a thread that is just about to make its pipe, or to begin with its request, misses it.
    do
    {
        openAiClient.cancelActiveRequest();
        pipe.close();
    }
    while (! waitForThreadToExit (closeAgainMs) && juce::Time::getMillisecondCounter() - begin < (juce::uint32) stopLimitMs);

    stopThread (closeAgainMs);
    token.clear();
    pipeName.clear();
}

bool HubAiBrokerService::start (juce::String& outError)
{
    if (isThreadRunning())
        return true;

    token = generateRandomHex (brokerTokenDigits / 2);
    const auto suffix = generateRandomHex (brokerPipeSuffixDigits / 2);

    if (token.length() != brokerTokenDigits || suffix.length() != brokerPipeSuffixDigits)
    {
        outError = "The operating system could not create secure broker randomness.";
        token.clear();
        return false;
    }

    withdrawDiscoveryFile();
    pipeName = brokerPipeNamePrefix + suffix;

    if (! startThread())
    {
        outError = "The operating system could not start the broker's thread.";
        token.clear();
        return false;
    }

    outError.clear();
    return true;
}

bool HubAiBrokerService::writeDiscoveryFile()
{
    HubPaths::ensureDirectories();
    HubPaths::runtimeDirectory().createDirectory();

    const juce::DynamicObject::Ptr discovery (new juce::DynamicObject());
    discovery->setProperty ("version", brokerProtocolVersion);
    discovery->setProperty ("transport", brokerTransportName);
    discovery->setProperty ("pipeName", pipeName);
    discovery->setProperty ("token", token);
    discovery->setProperty ("pid", platform::currentProcessId());
    discovery->setProperty ("startedAt", isoTime (juce::Time::getCurrentTime()));

    return RecordFile::replace (ownDiscoveryFile(), RecordFile::toText (discovery.get())) == RecordFile::Outcome::written;
}

void HubAiBrokerService::withdrawDiscoveryFile()
{
    ready = false;
    ownDiscoveryFile().deleteFile();
}

juce::File HubAiBrokerService::ownDiscoveryFile() const
{
    return discoveryFile;
}

void HubAiBrokerService::endCycle()
{
    // In this order: a client must not be sent to a pipe that is about to go.
    withdrawDiscoveryFile();
    pipe.close();
}

void HubAiBrokerService::run()
{
    platform::removeAbandonedPipes (brokerPipeNamePrefix);

    while (! threadShouldExit())
        runCycle();

    endCycle();
}

void HubAiBrokerService::runCycle()
{
    endCycle();

    if (! openPipe())
    {
        wait (retryDelayMs);
        return;
    }

    ready = true;
    serveRequest();
    endCycle();
}

bool HubAiBrokerService::openPipe()
{
    platform::prepareToCreatePipe();

    if (! pipe.createNewPipe (pipeName, true))
        return false;

    if (writeDiscoveryFile())
        return true;

    pipe.close();
    withdrawDiscoveryFile();
    return false;
}

void HubAiBrokerService::serveRequest()
{
    juce::MemoryBlock request;

    if (! readRequest (request) || threadShouldExit())
        return;

    const auto response = handleRequest (request);

    // The reply to a request that the stop has interrupted is dropped.
    if (! threadShouldExit())
        sendResponse (response);
}

bool HubAiBrokerService::readRequest (juce::MemoryBlock& outPayload)
{
    juce::uint8 header[4] = {};
    juce::uint32 length = 0;
    juce::String error;

    if (pipe.read (header, (int) sizeof (header), pipeTimeoutMs) != (int) sizeof (header)
         || ! decodeFrameHeader (header, sizeof (header), length, error))
        return false;

    outPayload.setSize (length);
    return pipe.read (outPayload.getData(), (int) length, pipeTimeoutMs) == (int) length;
}

void HubAiBrokerService::sendResponse (const juce::MemoryBlock& response)
{
    juce::MemoryBlock frame;
    juce::String error;

    if (! encodeFrame (response, frame, error))
        return;

    // Before the reply, not only after it: a client that asks again as soon as it has its reply would otherwise still find the old
    // file, and on Linux write its next request into a pipe that nobody will read any more.
    withdrawDiscoveryFile();
    pipe.write (frame.getData(), (int) frame.getSize(), pipeTimeoutMs);

    // The client's write has often put this thread onto the client's own processor, where the client now waits behind it for its turn
    // to read. The next cycle can wait better.
    yield();

    if (const auto linger = platform::pipeLingerMilliseconds(); linger > 0)
        wait (linger);
}
