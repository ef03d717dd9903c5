#include "catalogue/ManifestParser.h"
#include "support/ManifestBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** The ids of what a manifest gives, joined by blanks. */
std::string idsIn (const juce::String& text)
{
    juce::StringArray ids;

    for (const auto& product : parseManifest (text))
        ids.add (product.id);

    return ids.joinIntoString (" ").toStdString();
}

const juce::String notSafe ("not safe/at all");

juce::var nameless (const juce::var& product)    { return with (product, "name", ""); }
}

//==============================================================================
TEST (ManifestParser, GivesNothingForWhatIsNoJsonObject)
{
    const struct { const char* name; juce::String text; } cases[]
    {
        { "empty", "" }, { "blanks", "  \r\n" }, { "null", "null" }, { "number", "1" }, { "string", "\"manifestVersion\"" },
        { "array", "[ " + manifest ({ application ("a") }) + " ]" }, { "page", "<!DOCTYPE html><html><body>404</body></html>" },
        { "cut off", manifest ({ application ("a") }).dropLastCharacters (3) },
        { "nested beyond reason", juce::String::repeatedString ("[", 100000) },
        { "objects nested beyond reason", juce::String::repeatedString ("{\"a\":", 100000) },
    };

    for (const auto& test : cases)
        EXPECT_EQ (idsIn (test.text), "") << test.name;
}

TEST (ManifestParser, ReadsTheVersionOfTheFormatAsAnInteger)
{
    const auto good = document ({ application ("a") });
    const struct { juce::var version; bool accepted; } cases[]
    {
        { 1, true }, { "1", true }, { 1.0, true }, { 0, false }, { 2, false }, { -1, false }, { "2", false }, { "", false },
        { "one", false }, { juce::var(), false }, { juce::int64 (4294967297), false }, { 1e30, false }, { -1e30, false },
        { juce::var (juce::Array<juce::var> (1)), false },
    };

    for (const auto& test : cases)
        EXPECT_EQ (idsIn (json (with (good, "manifestVersion", test.version))), test.accepted ? "a" : "") << json (test.version);

    EXPECT_EQ (idsIn (json (without (good, "manifestVersion"))), "") << "an absent key counts as 0";
}

TEST (ManifestParser, NeedsAnArrayOfProducts)
{
    const auto good = document ({ application ("a") });

    EXPECT_EQ (idsIn (json (without (good, "products"))), "");

    for (const auto& products : { juce::var(), juce::var ("a"), juce::var (1), application ("a"), list ({}) })
        EXPECT_EQ (idsIn (json (with (good, "products", products))), "") << json (products);
}

TEST (ManifestParser, KeepsTheOrderOfTheDocument)
{
    EXPECT_EQ (idsIn (manifest ({ application ("zz"), application ("aa"), soundPack ("mm") })), "zz aa mm");
}

TEST (ManifestParser, PassesOverEntriesThatAreNoObjects)
{
    EXPECT_EQ (idsIn (manifest ({ juce::var(), 1, "text", true, list ({ application ("x") }), application ("a") })), "a");
    EXPECT_EQ (idsIn (manifest ({ juce::var(), "text" })), "");
}

TEST (ManifestParser, IgnoresKeysItDoesNotKnowAtEveryLevel)
{
    auto product = withPlatform (soundPack ("a"), with (platform(), "minimumOS", "10"));
    product = with (product, "content.extra", list ({ 1, 2 }));
    product = with (product, "releaseNotes", list ({ with (with (with (application ("n"), "title", "T"), "summary", "S"), "extra", 1) }));
    product = with (product, "extra.deeper", 1);

    EXPECT_EQ (idsIn (json (with (document ({ product }), "comment", "hello"))), "a");
}

//==============================================================================
TEST (ManifestParser, StoresTheTextsOfAnApplicationAsWritten)
{
    auto entry = with (application ("Zorva.App_1", "13.0.0"), "name", utf8 (" Größe 音 "));
    entry = with (with (entry, "vendor", " V "), "description", " line\nline ");
    entry = with (with (entry, "category", " C "), "releaseDate", "not a date ");
    const auto products = parseManifest (manifest ({ entry }));

    ASSERT_EQ (products.size(), 1u);
    const auto& product = products.front();
    EXPECT_EQ (product.id, "Zorva.App_1");
    EXPECT_EQ (product.name, utf8 (" Größe 音 "));
    EXPECT_EQ (product.vendor, " V ");
    EXPECT_EQ (product.version, "13.0.0");
    EXPECT_EQ (product.description, " line\nline ");
    EXPECT_EQ (product.category, " C ");
    EXPECT_EQ (product.releaseDate, "not a date ");
    EXPECT_EQ (product.sizeBytes, 0);
    EXPECT_EQ (product.installType, Product::InstallType::application);
    EXPECT_TRUE (product.releaseNotes.empty());
    EXPECT_TRUE (product.platforms.empty());
    EXPECT_TRUE (product.image.isNull());
}

TEST (ManifestParser, NeedsOnlyIdNameAndVersionOfAnApplication)
{
    const auto products = parseManifest (R"({ "manifestVersion": 1, "products": [ { "id": "a", "name": "A", "version": "1" } ] })");

    ASSERT_EQ (products.size(), 1u);

    for (const auto* text : { &products[0].vendor, &products[0].description, &products[0].category, &products[0].releaseDate })
        EXPECT_TRUE (text->isEmpty());
}

TEST (ManifestParser, ReadsNumbersThatAreWrittenAsText)
{
    const auto products = parseManifest (R"({ "manifestVersion": "1", "products": [ { "id": "a", "name": "A", "version": 2.5, "sizeBytes": "77",
        "platforms": { "win": { "url": "https://a.example/x", "sizeBytes": "88",
        "sha256": "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef" } } } ] })");

    ASSERT_EQ (products.size(), 1u);
    EXPECT_EQ (products[0].version, "2.5");
    EXPECT_EQ (products[0].sizeBytes, 77);
    EXPECT_EQ (products[0].platforms.at ("win").sizeBytes, 88);
}

TEST (ManifestParser, ReadsTheInstallTypeTrimmedAndExact)
{
    const struct { juce::var type; bool accepted; } cases[]
    {
        { "application", true }, { " application\n", true }, { "", false }, { "  ", false }, { juce::var(), false },
        { "Application", false }, { "app", false }, { "factory_content", false }, { "Factory-Content", false }, { 0, false },
    };

    for (const auto& test : cases)
        EXPECT_EQ (idsIn (manifest ({ with (application ("a"), "installType", test.type) })), test.accepted ? "a" : "") << json (test.type);

    EXPECT_EQ (idsIn (manifest ({ without (application ("a"), "installType") })), "a");
    EXPECT_EQ (parseManifest (manifest ({ with (soundPack ("a"), "installType", " factory-content ") }))[0].installType,
               Product::InstallType::factoryContent);
}

TEST (ManifestParser, TakesTheSizeOfTheWindowsPlatformOnlyWhenItsOwnIsMissing)
{
    const auto win = withPlatform (application ("a"), platform()), mac = withPlatform (application ("a"), platform(), "mac");
    const struct { const char* name; juce::var product; juce::int64 expected; } cases[]
    {
        { "absent, win", win, 1000 }, { "0, win", with (win, "sizeBytes", 0), 1000 }, { "negative, win", with (win, "sizeBytes", -5), 1000 },
        { "1, win", with (win, "sizeBytes", 1), 1 }, { "own, win", with (win, "sizeBytes", 5), 5 }, { "absent, mac", mac, 0 },
        { "0, mac", with (mac, "sizeBytes", 0), 0 }, { "absent, none", application ("a"), 0 },
        { "own, none", with (application ("a"), "sizeBytes", juce::int64 (5000000000)), 5000000000 },
        { "mac and win", withPlatform (mac, platform ("https://a.example/x", someSha256, 2000)), 2000 },
    };

    for (const auto& test : cases)
    {
        const auto products = parseManifest (manifest ({ test.product }));
        ASSERT_EQ (products.size(), 1u) << test.name;
        EXPECT_EQ (products[0].sizeBytes, test.expected) << test.name;
    }
}

//==============================================================================
TEST (ManifestParser, OneBadProductMakesTheWholeDocumentUnusable)
{
    const juce::var bad[]
    {
        with (application ("d"), "installType", "something-else"), with (soundPack ("d"), "content.licenseId", ""),
        application ("-d"), application ("b"), application ("d", "1/2"), withPlatform (application ("d"), platform ("http://a.example/x")),
    };

    for (const auto& product : bad)
    {
        EXPECT_EQ (idsIn (manifest ({ application ("a"), application ("b"), application ("c"), product })), "") << json (product);
        EXPECT_EQ (idsIn (manifest ({ product, application ("b") })), "") << json (product);
    }
}

TEST (ManifestParser, EveryIdIsASafeIdentity)
{
    for (const char* id : { "a", "zorva-daw", "pack_1.2", "A9" })
        EXPECT_EQ (idsIn (manifest ({ application (id) })), id);

    for (const char* id : { "", " a", "a ", "-a", "a..b", "CON", "lpt1.pack", "a b", "../a", "gr\xc3\xb6\xc3\x9f" "e" })
        EXPECT_EQ (idsIn (manifest ({ with (application ("x"), "id", utf8 (id)) })), "") << id;

    EXPECT_EQ (idsIn (manifest ({ without (application ("x"), "id") })), "");
    EXPECT_EQ (idsIn (manifest ({ with (application ("x"), "id", juce::String::repeatedString ("a", 64)) })).size(), 64u);
    EXPECT_EQ (idsIn (manifest ({ with (application ("x"), "id", juce::String::repeatedString ("a", 65)) })), "");
}

TEST (ManifestParser, IdsAreUniqueWithoutRegardToCase)
{
    EXPECT_EQ (idsIn (manifest ({ application ("Zorva-Daw"), application ("zorva-daw") })), "");
    EXPECT_EQ (idsIn (manifest ({ application ("a"), application ("b"), application ("a", "2.0") })), "");
    EXPECT_EQ (idsIn (manifest ({ application ("a-b"), application ("a_b"), application ("a.b") })), "a-b a_b a.b");
}

TEST (ManifestParser, LeavesOutAProductWithoutNameOrVersion)
{
    for (const juce::var& missing : { nameless (application ("b")), without (application ("b"), "name"), with (application ("b"), "name", juce::var()),
                                      application ("b", ""), without (application ("b"), "version") })
    {
        EXPECT_EQ (idsIn (manifest ({ application ("a"), missing, application ("c") })), "a c") << json (missing);
        EXPECT_EQ (idsIn (manifest ({ missing })), "") << json (missing);
        EXPECT_EQ (idsIn (manifest ({ missing, application ("B"), application ("c") })), "") << "the id stays taken: " << json (missing);
    }
}

TEST (ManifestParser, ABlankNameIsAName)
{
    EXPECT_EQ (idsIn (manifest ({ with (application ("a"), "name", " ") })), "a");
}

TEST (ManifestParser, TheOrderOfTheRulesDecidesBetweenLeftOutAndFatal)
{
    const struct { const char* name; juce::var product; bool fatal; } cases[]
    {
        { "unknown install type", with (application ("b"), "installType", "x"), true },
        { "content missing", without (soundPack ("b"), "content"), true },
        { "content broken", with (soundPack ("b"), "content.packId", "c"), true },
        { "unsafe id", with (application ("b"), "id", notSafe), true },
        { "no id", without (application ("b"), "id"), true },
        { "duplicate id", application ("a"), true },
        { "unsafe version", application ("b", "1/2"), false },
        { "platform is no object", with (application ("b"), "platforms.win", 1), false },
        { "platform broken", withPlatform (application ("b"), platform ("http://a.example/x")), false },
        { "nothing else", application ("b"), false },
    };

    for (const auto& test : cases)
    {
        EXPECT_EQ (idsIn (manifest ({ application ("a"), nameless (test.product) })), test.fatal ? "" : "a") << "nameless, " << test.name;

        if (! juce::String (test.name).contains ("version"))
            EXPECT_EQ (idsIn (manifest ({ application ("a"), with (test.product, "version", "") })), test.fatal ? "" : "a") << "versionless, " << test.name;
    }
}

TEST (ManifestParser, EveryVersionIsASafeFileName)
{
    for (const char* version : { "1", "13.0.0", "1.0 beta", "x" })
        EXPECT_EQ (idsIn (manifest ({ application ("a", version) })), "a") << version;

    for (const char* version : { ".", "..", "1.", "1 ", "1/2", "1\\2", "1:2", "nul", "aux.1", "1\n2", " " })
        EXPECT_EQ (idsIn (manifest ({ application ("a", version) })), "") << version;

    EXPECT_EQ (idsIn (manifest ({ application ("a", juce::String::repeatedString ("1", 255)) })), "a");
    EXPECT_EQ (idsIn (manifest ({ application ("a", juce::String::repeatedString ("1", 256)) })), "");
}
