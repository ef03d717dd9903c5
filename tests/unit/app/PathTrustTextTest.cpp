#include "app/PathTrust.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    juce::String text;
    bool expected;
};

void check (bool (*rule) (const juce::String&), const std::vector<Case>& cases)
{
    for (const auto& test : cases)
        EXPECT_EQ (rule (test.text), test.expected)
            << "\"" << test.text.substring (0, 40) << "\" of " << test.text.length() << " characters";
}

juce::String times (const char* text, int count)
{
    return juce::String::repeatedString (utf8 (text), count);
}

juce::String withCode (const char* before, juce::juce_wchar code, const char* after)
{
    return before + juce::String::charToString (code) + after;
}
}

//==============================================================================
TEST (PathTrust, HttpsUrlNeedsTheSchemeAndAHost)
{
    check (PathTrust::isHttpsUrl,
    {
        { "https://a.example", true }, { "https://a.example/", true }, { "https://a.example/x/y.zip?z=1#f", true },
        { "https://a.example:8443/x", true }, { "https://127.0.0.1/x", true }, { "https://localhost", true },
        { "  https://a.example/x \r\n", true }, { "HTTPS://a.example/x", true }, { "HttpS://A.EXAMPLE", true },
        { utf8 ("https://münchen.example/größe"), true },
        { "", false }, { "   ", false }, { "http://a.example/x", false }, { "ftp://a.example/x", false },
        { "file:///etc/passwd", false }, { "a.example/x", false }, { "//a.example/x", false }, { "https", false },
        { "https:", false }, { "https:/", false }, { "https://", false }, { "https:///x", false }, { " https:// ", false },
        { "httpss://a.example", false }, { "xhttps://a.example", false },
    });
}

TEST (PathTrust, Sha256IsExactly64HexadecimalDigitsAfterTrimming)
{
    const auto digits = times ("0123456789abcdef", 4);

    check (PathTrust::isValidSha256,
    {
        { digits, true }, { digits.toUpperCase(), true }, { times ("aB3dE6", 10) + "F0f0", true },
        { " \t" + digits + "\r\n", true },
        { "", false }, { digits.substring (1), false }, { digits + "0", false }, { " " + digits.substring (1), false },
        { digits.substring (1) + "g", false }, { digits.substring (1) + " " + "0", false }, { "0x" + digits.substring (2), false },
        { digits.substring (1) + utf8 ("０"), false }, { digits.substring (1) + "-", false },
    });
}

TEST (PathTrust, DownloadSourceNeedsAddressDigestAndSize)
{
    const juce::String url ("https://a.example/x.exe"), digest (times ("0123456789ABCDEF", 4));

    EXPECT_TRUE (PathTrust::isValidDownloadSource (url, digest, 1));
    EXPECT_TRUE (PathTrust::isValidDownloadSource (" " + url + " ", " " + digest + " ", std::numeric_limits<juce::int64>::max()));
    EXPECT_FALSE (PathTrust::isValidDownloadSource (url, digest, 0));
    EXPECT_FALSE (PathTrust::isValidDownloadSource (url, digest, -1));
    EXPECT_FALSE (PathTrust::isValidDownloadSource ("http://a.example/x.exe", digest, 1));
    EXPECT_FALSE (PathTrust::isValidDownloadSource ("", digest, 1));
    EXPECT_FALSE (PathTrust::isValidDownloadSource (url, digest.substring (1), 1));
    EXPECT_FALSE (PathTrust::isValidDownloadSource (url, "", 1));
}

//==============================================================================
TEST (PathTrust, RelativePathIsMadeOfOrdinarySteps)
{
    check (PathTrust::isSafeRelativePath,
    {
        { "a", true }, { "a/b", true }, { "a/b/", true }, { "a/b/c.txt", true }, { " a/b ", true }, { "a/ b", true },
        { "a b/c d", true }, { ".hidden/x", true }, { "a/..b", true }, { "a/...b", true }, { "a/b..c", true }, { "~x/y", true },
        { utf8 ("Größe/音/🎹"), true }, { "nul/con", true }, { "a/$(x)", true },
        { "", false }, { "   ", false }, { "/", false }, { "/a", false }, { " /a", false }, { "\\a", false }, { "a\\b", false },
        { "a//b", false }, { "a//", false }, { "//", false }, { "C:/a", false }, { "C:", false }, { "a/b:c", false },
        { ".", false }, { "..", false }, { "./", false }, { "../", false }, { "./a", false }, { "a/.", false }, { "a/./b", false },
        { "../a", false }, { "a/..", false }, { "a/../b", false }, { "a/../", false }, { "a/b.", false }, { "a./b", false },
        { "a /b", false }, { "a/b /", false }, { "a/ /b", false }, { "a/.../b", false }, { "a/b./", false },
    });
}

TEST (PathTrust, RelativePathHoldsNoControlCharacter)
{
    for (juce::juce_wchar code = 1; code < 32; ++code)
        EXPECT_FALSE (PathTrust::isSafeRelativePath (withCode ("a/b", code, "c"))) << (int) code;

    EXPECT_FALSE (PathTrust::isSafeRelativePath (withCode ("a/b", 127, "c")));
    EXPECT_TRUE (PathTrust::isSafeRelativePath (withCode ("a/b", 32, "c")));
    EXPECT_TRUE (PathTrust::isSafeRelativePath (withCode ("a/b", 126, "c")));
    EXPECT_TRUE (PathTrust::isSafeRelativePath (withCode ("a/b", 128, "c")));
}

TEST (PathTrust, RelativePathHasAtMost1024CharactersAfterTrimming)
{
    check (PathTrust::isSafeRelativePath,
    {
        { times ("a", 1024), true }, { times ("a", 1025), false },
        { times ("a", 1023) + "/", true }, { times ("a", 1024) + "/", false },
        { "  " + times ("a", 1024) + "  ", true }, { times ("ab/", 341) + "c", true },
        { times ("🎹", 1024), true }, { times ("🎹", 1025), false },
    });
}

TEST (PathTrust, RelativeFilePathIsNotWrittenAsADirectory)
{
    check (PathTrust::isSafeRelativeFilePath,
    {
        { "a", true }, { "a/b.txt", true }, { " a/b ", true }, { "a/", false }, { "a/b/", false }, { " a/b/ ", false },
        { "", false }, { "/a", false }, { "a/../b", false }, { times ("a", 1025), false },
    });
}

//==============================================================================
TEST (PathTrust, FileNameIsOnePlainStep)
{
    check (PathTrust::isSafeFileName,
    {
        { "a", true }, { "13.0.0", true }, { "setup 1.exe", true }, { " a", true }, { ".hidden", true }, { "...a", true }, { "~x", true },
        { utf8 ("Größe 音 🎹.zip"), true }, { "com0", true }, { "com10.txt", true }, { "console", true }, { "a.nul", true },
        { "", false }, { ".", false }, { "..", false }, { "...", false }, { "13.0.", false }, { "a ", false }, { " ", false },
        { "a/b", false }, { "/", false }, { "a\\b", false }, { "a:b", false }, { "aux", false }, { "AUX", false }, { "NUL.txt", false },
        { "Com7.tar.gz", false }, { "lpt9", false }, { "a\nb", false }, { "a\tb", false },
        { times ("a", 255), true }, { times ("a", 256), false }, { times ("ö", 255), true }, { times ("ö", 256), false },
    });
}

TEST (PathTrust, FileNameHoldsNoControlCharacter)
{
    for (juce::juce_wchar code = 1; code < 32; ++code)
        EXPECT_FALSE (PathTrust::isSafeFileName (withCode ("a", code, "b"))) << (int) code;

    EXPECT_FALSE (PathTrust::isSafeFileName (withCode ("a", 127, "b")));
    EXPECT_TRUE (PathTrust::isSafeFileName (withCode ("a", 128, "b")));
}

TEST (PathTrust, IdentityIsAsciiBetweenLettersOrDigits)
{
    check (PathTrust::isSafeIdentity,
    {
        { "a", true }, { "7", true }, { "Z", true }, { "zorva-daw", true }, { "pack_1.2", true }, { "a.b-c_d", true }, { "a--b", true },
        { "a__b", true }, { "x.part", true }, { "a.-b", true }, { "com0", true }, { "com10", true }, { "lpt", true }, { "a.con", true },
        { "", false }, { ".", false }, { "..", false }, { "-a", false }, { "a-", false }, { ".a", false }, { "a.", false }, { "_a", false },
        { "a_", false }, { "-", false }, { "a..b", false }, { "a...b", false }, { "CON", false }, { "nul", false }, { "lpt1.pack", false },
        { "Com7.x", false }, { "a b", false }, { " a", false }, { "a ", false }, { "a/b", false }, { "a\\b", false }, { "a:b", false },
        { "a+b", false }, { "a~b", false }, { "a\nb", false }, { utf8 ("größe"), false }, { utf8 ("ä"), false }, { utf8 ("a٣b"), false },
        { utf8 ("a音b"), false }, { withCode ("a", 127, "b"), false },
        { times ("a", 64), true }, { times ("a", 65), false },
    });
}

//==============================================================================
TEST (PathTrust, ReservedDeviceNamesAreThoseOfWindows)
{
    check (PathTrust::isReservedDeviceName,
    {
        { "con", true }, { "prn", true }, { "aux", true }, { "nul", true }, { "CON", true }, { "Nul", true }, { "NUL.txt", true },
        { "Com7.tar.gz", true }, { "con.", true },
        { "com0", false }, { "com10", false }, { "com", false }, { "lpt", false }, { "lpt0", false }, { "lpt10", false },
        { "console", false }, { "xcon", false }, { "a.con", false }, { ".con", false }, { "con-1", false }, { "con .txt", false },
        { "com1x", false }, { "clock$", false }, { "conin$", false }, { "", false }, { ".", false }, { utf8 ("com¹"), false },
        { utf8 ("com１"), false },
    });

    for (int digit = 1; digit <= 9; ++digit)
        for (const char* device : { "com", "lpt", "COM", "LPT" })
        {
            EXPECT_TRUE (PathTrust::isReservedDeviceName (device + juce::String (digit))) << device << digit;
            EXPECT_TRUE (PathTrust::isReservedDeviceName (device + juce::String (digit) + ".x")) << device << digit;
        }
}

TEST (PathTrust, ADeviceStepIsFoundAnywhereInARelativePath)
{
    check (PathTrust::hasReservedDeviceStep,
    {
        { "nul", true }, { "a/nul", true }, { "a/NUL.txt/b", true }, { "com1/a", true }, { "a/b/lpt9.x", true }, { "a/aux/", true },
        { "", false }, { "a", false }, { "a/b/c", false }, { "a/console/b", false }, { "a.nul/b", false },
    });
}
