#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** One GET over https and its answer, with the system's certificate authorities and proxy settings. Redirects are reported, not
    followed; the status is not judged.

    open() and read() block and belong on one worker thread, like all else but cancel(), which may be called from any thread at
    any time. */
class HttpsRequest
{
public:
    /** timeoutMs limits the time to connect, the TLS handshake included, and afterwards any time in which nothing arrives; 0
        leaves the system's own limits. */
    explicit HttpsRequest (int timeoutMs);

    /** Closes the connection without waiting for anything. */
    ~HttpsRequest();

    /** Sends the request and reads the head of the answer. An earlier answer is dropped. False on any failure and after
        cancel(). */
    bool open (const juce::String& httpsAddress);

    /** The HTTP status of the answer. */
    int statusCode() const;

    /** The Location header of the answer as sent; empty when there is none. */
    juce::String location() const;

    /** The stated length of the body in bytes, or -1 when unknown. */
    juce::int64 bodyLength() const;

    /** Reads up to size bytes of the body, waiting until there are some: the number read, 0 at the end of the body, below 0 when
        the connection broke before it and after cancel(). size is at least 1. */
    int read (void* buffer, int size);

    /** True once open() or read() has failed, and after cancel(). */
    bool isBroken() const;

    /** Makes a blocked open() or read() return at once, and all later ones fail. */
    void cancel();

private:
    struct Pimpl;
    std::unique_ptr<Pimpl> pimpl;

    JUCE_DECLARE_NON_COPYABLE (HttpsRequest)
};
}
