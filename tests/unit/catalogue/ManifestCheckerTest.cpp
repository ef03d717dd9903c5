#include "catalogue/ManifestParser.h"
#include "support/FileHash.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
/** The problems as lines: product, rule, and "fatal" or "left out", with bars between. */
std::string problemsIn (const juce::String& text)
{
    juce::StringArray lines;

    for (const auto& problem : checkManifest (text))
        lines.add (problem.product + "|" + problem.rule + "|" + (problem.fatal ? "fatal" : "left out"));

    return lines.joinIntoString ("\n").toStdString();
}

std::string problemsOf (const juce::var& product)
{
    return problemsIn (manifest ({ product }));
}

juce::var nameless (const juce::String& id)
{
    return with (application (id), "name", "");
}

juce::var note (const juce::String& title, const juce::String& summary)
{
    juce::DynamicObject::Ptr object = new juce::DynamicObject();
    object->setProperty ("title", title);
    object->setProperty ("summary", summary);
    return object.get();
}

juce::String times (int count)
{
    return juce::String::repeatedString ("x", count);
}

juce::var packWith (const char* key, const juce::String& value)
{
    return with (soundPack ("p"), "content." + juce::String (key), value);
}
}

//==============================================================================
TEST (CheckManifest, FindsNothingInAGoodManifest)
{
    EXPECT_EQ (problemsIn (manifest ({ withPlatform (application ("a"), platform()), soundPack ("b") })), "");
}

TEST (CheckManifest, NamesWhatIsWrongWithTheDocument)
{
    const struct { juce::String text; const char* rule; } cases[]
    {
        { "", "The text must be a JSON object." }, { "[]", "The text must be a JSON object." },
        { juce::String::repeatedString ("[", 100000), "The text must be a JSON object." },
        { json (without (document ({ application ("a") }), "manifestVersion")), "\"manifestVersion\" must be 1." },
        { json (without (document ({}), "products")), "\"products\" must be an array." },
        { manifest ({}), "The document must hold a product that can be used." },
    };

    for (const auto& test : cases)
        EXPECT_EQ (problemsIn (test.text), "|" + std::string (test.rule) + "|fatal") << test.text.substring (0, 60);
}

TEST (CheckManifest, NamesTheRuleThatMakesTheDocumentUnusable)
{
    const struct { juce::var product; const char* problem; } cases[]
    {
        { with (application ("a"), "installType", "app"), "a|\"installType\" must be \"application\" or \"factory-content\".|fatal" },
        { without (soundPack ("p"), "content"), "p|\"content\" must be an object.|fatal" },
        { packWith ("packId", "P"), "p|content: \"packId\" must equal the product's \"id\" exactly.|fatal" },
        { with (with (soundPack ("p"), "id", "a b"), "content.packId", "a b"), "a b|content: \"packId\" must be a safe identity.|fatal" },
        { packWith ("archiveRoot", ""), "p|content: \"archiveRoot\" must be a safe relative path.|fatal" },
        { packWith ("archiveRoot", "pack/"), "p|content: \"archiveRoot\" must be one directory name, without \"/\".|fatal" },
        { packWith ("defaultPatch", "pack/"), "p|content: \"defaultPatch\" must be a safe relative path of a file.|fatal" },
        { packWith ("licenseFile", ""), "p|content: \"licenseFile\" must be a safe relative path of a file.|fatal" },
        { packWith ("defaultPatch", "other/x"), "p|content: \"defaultPatch\" must begin with \"archiveRoot\" and \"/\".|fatal" },
        { packWith ("licenseFile", "other/x"), "p|content: \"licenseFile\" must begin with \"archiveRoot\" and \"/\".|fatal" },
        { packWith ("licenseId", " "), "p|content: \"licenseId\" must not be empty.|fatal" },
        { packWith ("licenseId", times (65)), "p|content: \"licenseId\" must have at most 64 characters.|fatal" },
        { packWith ("credit", ""), "p|content: \"credit\" and \"sourceUrl\" must both be present or both be absent.|fatal" },
        { packWith ("credit", times (241)), "p|content: \"credit\" must have at most 240 characters.|fatal" },
        { packWith ("credit", "a\nb"), "p|content: \"credit\" must hold no line end and no tab.|fatal" },
        { packWith ("sourceUrl", "http://a.example"), "p|content: \"sourceUrl\" must be an https address.|fatal" },
        { application ("-a"), "-a|\"id\" must be a safe identity.|fatal" },
        { without (application ("a"), "id"), "products[0]|\"id\" must be a safe identity.|fatal" },
        { application ("a", "1/2"), "a|\"version\" must be a safe file name.|fatal" },
        { with (application ("a"), "platforms.mac", 1), "a|platforms.mac: The value must be an object.|fatal" },
        { withPlatform (application ("a"), platform ("http://a.example/x")), "a|platforms.win: \"url\" must be an https address.|fatal" },
        { withPlatform (application ("a"), platform ("https://a.example/x", "12")), "a|platforms.win: \"sha256\" must have 64 hexadecimal digits.|fatal" },
        { withPlatform (application ("a"), platform ("https://a.example/x", someSha256, 0)), "a|platforms.win: \"sizeBytes\" must be at least 1.|fatal" },
    };

    for (const auto& test : cases)
        EXPECT_EQ (problemsOf (test.product), test.problem);

    EXPECT_EQ (problemsIn (manifest ({ application ("Zorva"), application ("zorva") })), "zorva|\"id\" must be unique without regard to case.|fatal");
}

TEST (CheckManifest, NamesWhatIsLeftOutAndGoesOn)
{
    auto notes = with (application ("notes"), "releaseNotes", list ({ note ("", "S"), note ("T", " "), note (times (81), "S"), note ("T", times (321)), "text" }));
    const auto nine = list ({ note ("T", "S"), note ("T", "S"), note ("T", "S"), note ("T", "S"), note ("T", "S"), note ("T", "S"), note ("T", "S"), note ("T", "S"), note ("T", "S") });

    EXPECT_EQ (problemsIn (manifest ({ "text", nameless ("unnamed"), application ("unversioned", ""), notes, with (application ("nine"), "releaseNotes", nine),
                                       with (with (application ("odd"), "releaseNotes", 1), "platforms", 1) })),
               "products[0]|The entry is not an object.|left out\n"
               "unnamed|\"name\" is empty.|left out\n"
               "unversioned|\"version\" is empty.|left out\n"
               "notes|releaseNotes[0]: \"title\" must not be empty.|left out\n"
               "notes|releaseNotes[1]: \"summary\" must not be empty.|left out\n"
               "notes|releaseNotes[2]: \"title\" must have at most 80 characters.|left out\n"
               "notes|releaseNotes[3]: \"summary\" must have at most 320 characters.|left out\n"
               "notes|releaseNotes[4]: The entry is not an object.|left out\n"
               "nine|Only the first 8 entries of \"releaseNotes\" are read.|left out\n"
               "odd|\"releaseNotes\" is not an array.|left out\n"
               "odd|\"platforms\" is not an object.|left out");
}

TEST (CheckManifest, TheFatalProblemIsTheLast)
{
    EXPECT_EQ (problemsIn (manifest ({ nameless ("a"), application ("b", "1/2"), application ("c", "1/2") })),
               "a|\"name\" is empty.|left out\nb|\"version\" must be a safe file name.|fatal");
    EXPECT_EQ (problemsIn (manifest ({ nameless ("a") })),
               "a|\"name\" is empty.|left out\n|The document must hold a product that can be used.|fatal");
}

//==============================================================================
namespace
{
struct Outcome
{
    int exitCode = -1;
    std::string output;    ///< what was printed, on both streams unless told
};

constexpr int bothStreams = juce::ChildProcess::wantStdOut | juce::ChildProcess::wantStdErr;

Outcome check (juce::StringArray arguments, int streams = bothStreams)
{
    arguments.insert (0, HUB_MANIFEST_CHECKER);
    juce::ChildProcess process;

    if (! process.start (arguments, streams))
        return { -1, "could not be started" };

    auto output = process.readAllProcessOutput();
    EXPECT_TRUE (process.waitForProcessToFinish (20000));

    // A debug build of the framework announces itself.
    if (output.startsWith ("JUCE v"))
        output = output.fromFirstOccurrenceOf ("\n", false, false);

    return { (int) process.getExitCode(), output.toStdString() };
}

struct ManifestCheckerTool : testing::Test
{
    juce::String pathOf (const juce::String& name) const    { return in (folder, name).getFullPathName(); }

    juce::String writeManifest (std::initializer_list<juce::var> products) const
    {
        return write (in (folder, "manifest.json"), manifest (products)).getFullPathName();
    }

    juce::File folder = freshFolder ("publisher");
};
}

TEST_F (ManifestCheckerTool, SaysNothingAboutAGoodManifest)
{
    const auto outcome = check ({ writeManifest ({ application ("a") }) });
    EXPECT_EQ (outcome.exitCode, 0);
    EXPECT_EQ (outcome.output, "");
}

TEST_F (ManifestCheckerTool, PrintsEachProblemWithItsProduct)
{
    const auto outcome = check ({ writeManifest ({ nameless ("a"), application ("b", "1/2") }) });
    EXPECT_EQ (outcome.exitCode, 1);
    EXPECT_EQ (outcome.output, "a: \"name\" is empty. (left out)\nb: \"version\" must be a safe file name.\n");

    write (in (folder, "page.html"), "<html></html>");
    EXPECT_EQ (check ({ pathOf ("page.html") }).output, "manifest: The text must be a JSON object.\n");
}

TEST_F (ManifestCheckerTool, PrintsNoControlCharacterOfAManifest)
{
    EXPECT_EQ (check ({ writeManifest ({ application (juce::String::charToString (27) + utf8 ("]0;größe") + juce::String::charToString (0x9b)) }) }).output,
               "]0;gr\xc3\xb6\xc3\x9f" "e: \"id\" must be a safe identity.\n");
}

TEST_F (ManifestCheckerTool, CannotRunWithoutAReadableManifestOrWithAnUnknownOption)
{
    const auto good = writeManifest ({ application ("a") });

    for (const auto& arguments : { juce::StringArray(), { pathOf ("absent.json") }, { folder.getFullPathName() }, { good, good }, { good, "--quiet" },
                                   { good, "--files" }, { good, "--output", pathOf ("out.json") }, { good, "--files", pathOf ("absent") } })
    {
        const auto outcome = check (arguments);
        EXPECT_EQ (outcome.exitCode, 2) << arguments.joinIntoString (" ");
        EXPECT_NE (outcome.output, "") << arguments.joinIntoString (" ");
    }

    EXPECT_FALSE (isThere (in (folder, "out.json")));
    EXPECT_EQ (check ({ "--help" }).exitCode, 0);
}

TEST_F (ManifestCheckerTool, FillsSizeAndDigestFromFiles)
{
    const auto installer = write (in (folder, "files/Setup 1.exe"), "installer"), pack = write (in (folder, "files/a+b.zip"), "pack");
    auto app = withPlatform (application ("app"), with (platform ("https://a.example/d/Setup%201.exe?token=1#x", "", 0), "minimumOS", "10"));
    app = with (app, "description", utf8 ("Größe"));
    const auto source = writeManifest ({ app, withPlatform (soundPack ("pack"), platform ("https://a.example/a+b.zip", "", 0)) });
    const auto before = read (juce::File (source));
    const auto outcome = check ({ source, "--files", pathOf ("files") }, juce::ChildProcess::wantStdOut);

    EXPECT_EQ (outcome.exitCode, 0);
    EXPECT_EQ (read (juce::File (source)), before) << "the manifest itself is only read";
    const auto products = parseManifest (juce::String::fromUTF8 (outcome.output.c_str()));
    ASSERT_EQ (products.size(), 2u);
    EXPECT_EQ (products[0].platforms.at ("win").sizeBytes, 9);
    EXPECT_EQ (products[0].platforms.at ("win").sha256, sha256OfFile (installer));
    EXPECT_EQ (products[0].description, utf8 ("Größe"));
    EXPECT_EQ (products[1].platforms.at ("win").sizeBytes, 4);
    EXPECT_EQ (products[1].platforms.at ("win").sha256, sha256OfFile (pack));

    const auto filled = juce::JSON::parse (juce::String::fromUTF8 (outcome.output.c_str()));
    EXPECT_EQ (filled["products"][0]["platforms"]["win"]["minimumOS"].toString(), "10") << "what the Hub does not know is kept";
    EXPECT_NE (outcome.output.find ("Gr\xc3\xb6\xc3\x9f" "e"), std::string::npos) << "letters stay readable";
}

TEST_F (ManifestCheckerTool, WritesTheFilledManifestInPlace)
{
    write (in (folder, "files/x.exe"), "installer");
    const auto source = writeManifest ({ withPlatform (application ("a"), platform ("https://a.example/x.exe", "", 0)) });
    const auto printed = check ({ source, "--files", pathOf ("files") }, juce::ChildProcess::wantStdOut).output;
    const auto outcome = check ({ source, "--files", pathOf ("files"), "--output", source });

    EXPECT_EQ (outcome.exitCode, 0);
    EXPECT_EQ (outcome.output, "");
    EXPECT_EQ (read (juce::File (source)), printed) << "the same bytes as on the standard output";
    EXPECT_EQ (parseManifest (juce::String::fromUTF8 (printed.c_str())).at (0).sizeBytes, 9);
    EXPECT_EQ (folder.getNumberOfChildFiles (juce::File::findFilesAndDirectories), 2) << "nothing else is left behind";
}

TEST_F (ManifestCheckerTool, NamesTheEntriesThatItCannotFill)
{
    write (in (folder, "files/x.exe"), "installer");
    auto app = withPlatform (application ("a"), platform ("https://a.example/x.exe", "", 0));
    app = withPlatform (app, platform ("https://a.example/x.dmg"), "mac");
    app = withPlatform (app, platform ("https://a.example/"), "other");
    const auto outcome = check ({ writeManifest ({ app }), "--files", pathOf ("files"), "--output", pathOf ("out.json") });

    EXPECT_EQ (outcome.exitCode, 0) << "their own values are good";
    EXPECT_EQ (outcome.output, "a: platforms.mac: There is no file \"x.dmg\". (not filled)\n"
                               "a: platforms.other: The \"url\" does not end with a file name. (not filled)\n");
    const auto products = parseManifest (in (folder, "out.json").loadFileAsString());
    ASSERT_EQ (products.size(), 1u);
    EXPECT_EQ (products[0].platforms.at ("win").sizeBytes, 9);
    EXPECT_EQ (products[0].platforms.at ("mac").sizeBytes, 1000);
}

TEST_F (ManifestCheckerTool, ReadsNoFileOutsideTheFolder)
{
    write (in (folder, "secret"), "secret");
    ASSERT_TRUE (in (folder, "files").createDirectory().wasOk());
    const auto source = writeManifest ({ withPlatform (application ("a"), platform ("https://a.example/..%2Fsecret")) });
    const auto outcome = check ({ source, "--files", pathOf ("files"), "--output", pathOf ("out.json") });

    EXPECT_EQ (outcome.output, "a: platforms.win: The \"url\" does not end with a file name. (not filled)\n");
    EXPECT_EQ (parseManifest (in (folder, "out.json").loadFileAsString()).at (0).sizeBytes, 1000);
}

TEST_F (ManifestCheckerTool, NeverWritesAManifestThatTheHubWouldRefuse)
{
    write (in (folder, "files/empty.exe"), "");
    const auto source = writeManifest ({ withPlatform (application ("a"), platform ("https://a.example/empty.exe")) });
    const auto outcome = check ({ source, "--files", pathOf ("files"), "--output", pathOf ("out.json") });

    EXPECT_EQ (outcome.exitCode, 1);
    EXPECT_EQ (outcome.output, "a: platforms.win: \"sizeBytes\" must be at least 1.\n");
    EXPECT_FALSE (isThere (in (folder, "out.json")));
}

TEST_F (ManifestCheckerTool, SaysWhenTheResultCannotBeWritten)
{
    write (in (folder, "files/x.exe"), "installer");
    const auto source = writeManifest ({ withPlatform (application ("a"), platform ("https://a.example/x.exe")) });
    const auto outcome = check ({ source, "--files", pathOf ("files"), "--output", pathOf ("absent/out.json") });

    EXPECT_EQ (outcome.exitCode, 2);
    EXPECT_EQ (outcome.output, "The filled manifest could not be written.\n");
}
