#pragma once

#include <juce_core/juce_core.h>

/** A GET over https that never leaves https.

    Redirects are followed, at most five as the framework does, but only to another https address. The HTTP status is not judged:
    what comes back is for the caller to verify. connect() and read() block and belong on a worker thread; cancel() may be called
    from any thread at any time and makes a blocked call return early. */
class HttpsStream
{
public:
    /** connectTimeoutMs limits each connecting, the TLS handshake included, and afterwards any time in which nothing arrives; 0
        leaves the system's own limits. */
    HttpsStream (const juce::String& address, int connectTimeoutMs);
    ~HttpsStream();

    /** Connects and reads the headers. False when the address is not https, on any network failure, after too many redirects, on
        a redirect to anything but https, and after cancel(). */
    bool connect();

    /** The stated length of the body in bytes, or -1 when unknown. After connect(). */
    juce::int64 totalLength() const;

    /** Reads up to size bytes: the number read, 0 at the end of the body, below 0 on failure. */
    int read (void* buffer, int size);

    /** True when the body ended before its stated length, when the connection broke, and after cancel(). */
    bool failed() const;

    /** Makes a blocked connect() or read() return at once, and all later ones fail. */
    void cancel();

private:
    struct Connection;
    std::unique_ptr<Connection> connection;

    JUCE_DECLARE_NON_COPYABLE (HttpsStream)
};
