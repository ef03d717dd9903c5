#pragma once

#include <atomic>
#include <juce_core/juce_core.h>
#include <string>
#include <vector>

namespace zorva::test
{
/** A server for what no proper server would send: it takes each request whole, sends these very pieces with a pause before each,
    and hangs up. Plain HTTP, one connection at a time, on a thread of its own. A failure to start fails the test. */
class RawHttpServer final : private juce::Thread
{
public:
    explicit RawHttpServer (std::vector<std::string> pieces, int pauseMs = 0);
    ~RawHttpServer() override;

    juce::String url (const juce::String& path) const    { return "http://127.0.0.1:" + juce::String (listener.getBoundPort()) + path; }

    /** How many requests have come in whole. */
    int requestCount() const noexcept                    { return requests.load(); }

private:
    void run() override;
    bool takeRequest (juce::StreamingSocket& connection) const;
    void answer (juce::StreamingSocket& connection);

    juce::StreamingSocket listener;
    const std::vector<std::string> pieces;
    const int pauseMs;
    std::atomic<int> requests { 0 };

    JUCE_DECLARE_NON_COPYABLE (RawHttpServer)
};
}
