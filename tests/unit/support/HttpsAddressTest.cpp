#include "support/HttpsAddress.h"
#include "support/Text.h"

#include <gtest/gtest.h>

TEST (HttpsAddress, NeedsTheSchemeAndAHost)
{
    const struct { juce::String text; bool expected; } cases[]
    {
        { "https://a.example", true }, { " HTTPS://a.example/x \n", true }, { "hTTps://a:1?q#f", true }, { "https://user@a.example/x", true },
        { "https://a.example/x y", true }, { utf8 ("https://größe.example"), true }, { "https://[::1]/x", true },
        { "", false }, { "https", false }, { "https:/", false }, { "https:/a", false }, { "https://", false }, { "https:///a", false },
        { "https://?a", false }, { "https://#a", false }, { "https://:80/a", false }, { "https://user@/a", false }, { "https://user:word@/a", false },
        { "https://user@:80/a", false }, { "http://a.example", false }, { "httpss://a", false }, { "xhttps://a", false }, { "https//a", false },
        { utf8 ("httpſ://a.example"), false }, { utf8 ("ｈttps://a.example"), false },
    };

    for (const auto& test : cases)
        EXPECT_EQ (isHttpsAddress (test.text), test.expected) << test.text;
}

TEST (HttpsAddress, JudgesAVeryLongAddressInNoTime)
{
    const auto before = juce::Time::getMillisecondCounterHiRes();

    EXPECT_TRUE (isHttpsAddress ("https://a.example/?" + juce::String::repeatedString ("a&", 2000000)));
    EXPECT_FALSE (isHttpsAddress (juce::String::repeatedString ("a", 4000000)));
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - before, 5000.0);
}

TEST (HttpsAddress, ARedirectIsResolvedAgainstTheAddressThatGaveIt)
{
    const auto deep = "https://a.example:8443/x/y/z.json?q=1/2#f";
    const struct { const char* address; const char* location; const char* expected; } cases[]
    {
        { deep, "https://b.example/n", "https://b.example/n" }, { deep, " https://b.example/n\r\n", "https://b.example/n" },
        { deep, "http://b.example/n", "http://b.example/n" }, { deep, "file:///etc/passwd", "file:///etc/passwd" },
        { deep, "//b.example/n", "https://b.example/n" }, { deep, "/n?m=2", "https://a.example:8443/n?m=2" },
        { deep, "n", "https://a.example:8443/x/y/n" }, { deep, "../n", "https://a.example:8443/x/y/../n" },
        { deep, "n?u=https://c.example/", "https://a.example:8443/x/y/n?u=https://c.example/" },
        { deep, "?m=2", "https://a.example:8443/x/y/z.json?m=2" }, { deep, "#g", "https://a.example:8443/x/y/z.json?q=1/2#g" },
        { deep, "", "https://a.example:8443/x/y/z.json?q=1/2" },
        { "https://a.example", "n", "https://a.example/n" }, { "https://a.example", "/n", "https://a.example/n" },
        { "https://a.example", "?n", "https://a.example?n" }, { "https://a.example?q=/x/", "n", "https://a.example/n" },
        { "https://a.example/", "n", "https://a.example/n" },
    };

    for (const auto& test : cases)
        EXPECT_EQ (redirectTarget (test.address, test.location), test.expected) << test.address << " -> " << test.location;
}
