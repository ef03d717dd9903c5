#include <curl/curl.h>

// The linker has every call of curl_easy_init in the program end here, so that the framework's connections get an option that it does not
// know: without it the end of a cancelled request waits for a name server that doesn't answer, with the locks held for which the
// message thread waits when the Hub is closed.
extern "C"
{
CURL* __real_curl_easy_init();
CURL* __wrap_curl_easy_init();

CURL* __wrap_curl_easy_init()
{
    auto* const handle = __real_curl_easy_init();

    if (handle != nullptr)
        curl_easy_setopt (handle, CURLOPT_QUICK_EXIT, 1L);

    return handle;
}
}
