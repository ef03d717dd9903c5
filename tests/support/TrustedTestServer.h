#pragma once

#include "support/ServerProcess.h"

#include <juce_core/juce_core.h>
#include <optional>
#include <vector>

namespace zorva::test
{
/** A real HTTPS server on this machine that the code under test trusts as it trusts any other: its certificate authority takes
    the place of the system's list, which this test process alone sees. Beside it stand a plain HTTP port and a port that accepts
    connections and never says a word. All end with the object. Any failure to start fails the test.

        TrustedTestServer server;
        server.serve ("/manifest.json", TrustedTestServer::Answer::text (manifest));
        fetch (server.url ("/manifest.json"));
*/
class TrustedTestServer
{
public:
    enum class Trust
    {
        trusted,    ///< the code under test accepts the certificate
        stranger    ///< the certificate comes from an authority that nobody knows
    };

    /** What a path answers. The default is an empty page with status 200. */
    struct Answer
    {
        int status = 200;
        juce::MemoryBlock body;
        juce::int64 repeat = 1;                    ///< the body is sent this many times, end to end
        std::optional<juce::int64> statedLength;   ///< the stated length if not the true one; -1 states none
        std::optional<juce::int64> holdAfter;      ///< bytes of the body after which the server waits for release()
        bool silent = false;                       ///< takes the request and says nothing before release()
        juce::String location;                     ///< where a redirect leads
        juce::StringArray headerLines {};          ///< sent just as they stand
        int pieceBytes = 65536, pauseMs = 0;       ///< a slow server sends small pieces and pauses after each

        /** A page of this text. */
        static Answer text (const juce::String& content, int status = 200);

        /** Bytes that begin at 0 and count up, over and over. */
        static Answer bytes (juce::int64 size);

        /** A redirect with status 302. */
        static Answer redirect (const juce::String& to);

        /** States the whole length, sends so many bytes, and hangs up. */
        Answer truncatedTo (int size) const;

        /** Waits for release() after so many bytes of the body. */
        Answer heldAfter (juce::int64 size) const;

        /** Takes the request and says nothing before release(). */
        Answer silenced() const;
    };

    /** A request that arrived. */
    struct Request
    {
        juce::String scheme;        ///< "https" or "http"
        juce::String path;
        juce::int64 sent = 0;       ///< bytes of the body handed to the connection so far
        bool finished = false;      ///< the whole answer was handed over
        juce::String method {};
        juce::String headers {};    ///< as sent, one "name: value" a line
        juce::MemoryBlock body {};
    };

    explicit TrustedTestServer (Trust trust = Trust::trusted);
    ~TrustedTestServer();

    /** Answers requests for this path so from now on; unknown paths answer 404 with an empty body. */
    void serve (const juce::String& path, const Answer& answer);

    /** Lets the held answers of this path, also those to come, go on. */
    void release (const juce::String& path);

    /** The requests so far, oldest first. */
    std::vector<Request> requests();

    /** How many requests for this path arrived, on either port. */
    int requestCount (const juce::String& path);

    /** How many connections the silent port has accepted. */
    int silentConnections();

    juce::String url (const juce::String& path) const          { return address ("https", httpsPort, path); }
    juce::String plainUrl (const juce::String& path) const     { return address ("http", httpPort, path); }

    /** Connects, then nothing ever comes, not even a handshake. */
    juce::String silentUrl (const juce::String& path) const    { return address ("https", silentPort, path); }

private:
    static juce::String address (const char* scheme, int port, const juce::String& path);
    juce::var tell (const juce::var& order);

    juce::CriticalSection mutex;
    ServerProcess process;
    int httpsPort = 1, httpPort = 1, silentPort = 1;

    JUCE_DECLARE_NON_COPYABLE (TrustedTestServer)
};
}
