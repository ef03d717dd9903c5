#include "platform/HttpsRequest.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <curl/curl.h>
#include <vector>

namespace platform
{
namespace
{
constexpr long receiveBufferSize = 128 * 1024;
constexpr int longestPollMs = 1000;
constexpr int firstFinalStatus = 200;
constexpr unsigned int lenientAddress = CURLU_URLENCODE | CURLU_ALLOW_SPACE;

struct MultiCleanup   { void operator() (CURLM* handle) const   { curl_multi_cleanup (handle); } };
struct EasyCleanup    { void operator() (CURL* handle) const    { curl_easy_cleanup (handle); } };
struct UrlCleanup     { void operator() (CURLU* handle) const   { curl_url_cleanup (handle); } };

/** Once a process and for good: workers may still be in the library while the process ends. */
bool isLibraryReady()
{
    static const bool ready = curl_global_init (CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return ready;
}
}

struct HttpsRequest::Pimpl
{
    explicit Pimpl (int timeoutMs)
        : multi (isLibraryReady() ? curl_multi_init() : nullptr), address (curl_url()), easy (curl_easy_init()),
          usable (multi != nullptr && address != nullptr && easy != nullptr && setUp() && setTimeout (timeoutMs))
    {
    }

    ~Pimpl()
    {
        leaveMulti();
    }

    //==============================================================================
    bool open (const juce::String& httpsAddress)
    {
        leaveMulti();
        leftOver.clear();
        leftOverStart = 0;
        location.clear();
        isHeadComplete = isPaused = isFinished = false;
        result = CURLE_OK;

        if (! usable
            || curl_url_set (address.get(), CURLUPART_URL, httpsAddress.toRawUTF8(), lenientAddress) != CURLUE_OK
            || curl_easy_setopt (easy.get(), CURLOPT_CURLU, address.get()) != CURLE_OK
            || curl_multi_add_handle (multi.get(), easy.get()) != CURLM_OK)
        {
            end (CURLE_FAILED_INIT);
            return false;
        }

        isInMulti = true;
        return runUntil ([this] { return isHeadComplete && statusCode() >= firstFinalStatus; });
    }

    int statusCode() const
    {
        long status = 0;
        return usable && curl_easy_getinfo (easy.get(), CURLINFO_RESPONSE_CODE, &status) == CURLE_OK ? (int) status : 0;
    }

    juce::int64 bodyLength() const
    {
        curl_off_t length = -1;
        return usable && curl_easy_getinfo (easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length) == CURLE_OK ? length : -1;
    }

    int read (void* buffer, int size)
    {
        target = static_cast<char*> (buffer);
        room = (size_t) size;
        takeLeftOver();

        if (room == (size_t) size)
        {
            resume();
            runUntil ([this, size] { return room < (size_t) size; });
        }

        const auto count = size - (int) room;
        target = nullptr;
        room = 0;

        if (isCancelled || (count == 0 && isBroken()))
            return -1;

        return count;
    }

    bool isBroken() const
    {
        return isCancelled || result != CURLE_OK;
    }

    void cancel()
    {
        isCancelled = true;

        if (multi != nullptr)
            curl_multi_wakeup (multi.get());
    }

    //==============================================================================
    const std::unique_ptr<CURLM, MultiCleanup> multi;
    const std::unique_ptr<CURLU, UrlCleanup> address;
    const std::unique_ptr<CURL, EasyCleanup> easy;
    const bool usable;
    std::atomic<bool> isCancelled { false };
    juce::String location;

private:
    bool setUp()
    {
        const auto set = [this] (CURLoption option, auto value) { return curl_easy_setopt (easy.get(), option, value) == CURLE_OK; };

        // One request at a time gains nothing from HTTP/2, whose flow control makes a big download slower.
        return set (CURLOPT_PROTOCOLS_STR, "https")
            && set (CURLOPT_HTTP_VERSION, (long) CURL_HTTP_VERSION_1_1)
            && set (CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L)
            && set (CURLOPT_NOSIGNAL, 1L)
            && set (CURLOPT_TCP_KEEPALIVE, 1L)
            && set (CURLOPT_BUFFERSIZE, receiveBufferSize)
            && set (CURLOPT_USERAGENT, "ZORVA-Hub")
            && set (CURLOPT_HEADERFUNCTION, &Pimpl::headerArrived)
            && set (CURLOPT_HEADERDATA, static_cast<void*> (this))
            && set (CURLOPT_WRITEFUNCTION, &Pimpl::bodyArrived)
            && set (CURLOPT_WRITEDATA, static_cast<void*> (this));
    }

    bool setTimeout (int timeoutMs)
    {
        return timeoutMs <= 0
            || (curl_easy_setopt (easy.get(), CURLOPT_CONNECTTIMEOUT_MS, (long) timeoutMs) == CURLE_OK
                && curl_easy_setopt (easy.get(), CURLOPT_LOW_SPEED_LIMIT, 1L) == CURLE_OK
                && curl_easy_setopt (easy.get(), CURLOPT_LOW_SPEED_TIME, ((long) timeoutMs + 999) / 1000) == CURLE_OK);
    }

    void leaveMulti()
    {
        if (std::exchange (isInMulti, false))
            curl_multi_remove_handle (multi.get(), easy.get());
    }

    void end (CURLcode code)
    {
        isFinished = true;
        result = code;
    }

    //==============================================================================
    /** Lets the transfer go on until the condition holds; false when it ends before. */
    template <typename Condition>
    bool runUntil (Condition&& holds)
    {
        for (;;)
        {
            if (isCancelled)
                end (CURLE_ABORTED_BY_CALLBACK);
            else if (! isFinished)
                perform();

            if (! isCancelled && holds())
                return true;

            if (isFinished)
                return false;

            curl_multi_poll (multi.get(), nullptr, 0, longestPollMs, nullptr);
        }
    }

    void perform()
    {
        int running = 0, remaining = 0;

        if (curl_multi_perform (multi.get(), &running) != CURLM_OK)
            end (CURLE_FAILED_INIT);

        while (const auto* message = curl_multi_info_read (multi.get(), &remaining))
            if (message->msg == CURLMSG_DONE)
                end (message->data.result);
    }

    void resume()
    {
        if (std::exchange (isPaused, false) && ! isFinished)
            if (const auto code = curl_easy_pause (easy.get(), CURLPAUSE_CONT); code != CURLE_OK)
                end (code);
    }

    void takeLeftOver()
    {
        const auto count = std::min (room, leftOver.size() - leftOverStart);

        if (count == 0)
            return;

        std::memcpy (target, leftOver.data() + leftOverStart, count);
        leftOverStart += count;
        target += count;
        room -= count;
    }

    //==============================================================================
    void takeHeader (const juce::String& line)
    {
        if (line.startsWithIgnoreCase ("HTTP/"))
        {
            isHeadComplete = false;
            location.clear();
        }
        else if (line.isEmpty())
        {
            isHeadComplete = true;
        }
        else if (line.startsWithIgnoreCase ("Location:") && ! isHeadComplete)
        {
            location = line.fromFirstOccurrenceOf (":", false, false).trim();
        }
    }

    /** What the reader has no room for is kept once; after that the library waits until the reader has caught up. */
    size_t takeBody (const char* data, size_t size)
    {
        if (leftOverStart < leftOver.size())
        {
            isPaused = true;
            return CURL_WRITEFUNC_PAUSE;
        }

        const auto count = std::min (room, size);

        if (count > 0)
            std::memcpy (target, data, count);

        target += count;
        room -= count;
        leftOver.assign (data + count, data + size);
        leftOverStart = 0;
        return size;
    }

    static size_t headerArrived (char* data, size_t one, size_t size, void* self)
    {
        static_cast<Pimpl*> (self)->takeHeader (juce::String::createStringFromData (data, (int) (one * size)).trimEnd());
        return one * size;
    }

    static size_t bodyArrived (char* data, size_t one, size_t size, void* self)
    {
        return static_cast<Pimpl*> (self)->takeBody (data, one * size);
    }

    //==============================================================================
    CURLcode result = CURLE_OK;
    bool isInMulti = false, isHeadComplete = false, isPaused = false, isFinished = false;
    char* target = nullptr;
    size_t room = 0;
    std::vector<char> leftOver;
    size_t leftOverStart = 0;
};

//==============================================================================
HttpsRequest::HttpsRequest (int timeoutMs) : pimpl (std::make_unique<Pimpl> (timeoutMs)) {}
HttpsRequest::~HttpsRequest() = default;

bool HttpsRequest::open (const juce::String& httpsAddress)    { return pimpl->open (httpsAddress); }
int HttpsRequest::statusCode() const                          { return pimpl->statusCode(); }
juce::String HttpsRequest::location() const                   { return pimpl->location; }
juce::int64 HttpsRequest::bodyLength() const                  { return pimpl->bodyLength(); }
int HttpsRequest::read (void* buffer, int size)               { return pimpl->read (buffer, size); }
bool HttpsRequest::isBroken() const                           { return pimpl->isBroken(); }
void HttpsRequest::cancel()                                   { pimpl->cancel(); }
}
