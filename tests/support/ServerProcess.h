#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** The process of https_server.py and the lines of text between it and this one. It ends with the object. One thread at a time. */
class ServerProcess
{
public:
    ServerProcess();
    ~ServerProcess();

    /** False when the process could not be started; problem() then says why. */
    bool start();
    juce::String problem() const;

    /** Sends a line, without its end. False when the process is gone. */
    bool sendLine (const juce::String& line);

    /** The next line; empty when none comes within twenty seconds. */
    juce::String readLine();

    /** Makes this test process alone trust what the authority signs. A failure to do so fails the test. */
    static void trustAuthority (const juce::String& certificate);

    /** The name under which the code under test reaches the server and which its certificate holds. */
    static juce::String hostName();

private:
    struct Pimpl;
    std::unique_ptr<Pimpl> pimpl;

    JUCE_DECLARE_NON_COPYABLE (ServerProcess)
};
}
