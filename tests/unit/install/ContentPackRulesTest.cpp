#include "InstallRun.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"

#include <functional>

using namespace zorva::test;

namespace
{
const char* const missingParts = "The archive is missing its trusted instrument patch or license.";
const char* const unsafeTree = "The extracted content contains an unsafe link or escaped path.";

/** An unpacked archive that is in order. */
juce::File freshStaging()
{
    const auto staging = freshFolder ("staging");
    write (in (staging, "pack/patches/first.json"), "patch");
    write (in (staging, "pack/LICENSE.txt"), "licence");
    return staging;
}

std::string verify (const juce::File& staging)
{
    juce::String error;
    return InstallService::verifyExtractedContent (staging, packOf ("sounds", "1.0.0", "x"), error) ? ("good" + error).toStdString() : error.toStdString();
}
}

//==============================================================================
TEST (InstallService, AContentProductMustBeCompleteAndSafe)
{
    const struct { const char* what; std::function<void (Product&)> change; bool valid; } rows[]
    {
        { "as it is", [] (Product&) {}, true },
        { "a file name as version", [] (Product& p) { p.version = "1.0 beta"; }, true },
        { "a licence at the root", [] (Product& p) { p.licenseFile = "pack/L"; }, true },
        { "no platform", [] (Product& p) { p.platforms.clear(); }, true },

        { "an application", [] (Product& p) { p.installType = Product::InstallType::application; }, false },
        { "another pack", [] (Product& p) { p.packId = "other"; }, false },
        { "the pack in another case", [] (Product& p) { p.packId = "Sounds"; }, false },
        { "an unsafe identity", [] (Product& p) { p.id = p.packId = "../sounds"; }, false },
        { "no identity", [] (Product& p) { p.id = p.packId = ""; }, false },
        { "no version", [] (Product& p) { p.version = ""; }, false },
        { "a version that leads up", [] (Product& p) { p.version = ".."; }, false },
        { "a version of two steps", [] (Product& p) { p.version = "1/0"; }, false },
        { "a version with a blank at its end", [] (Product& p) { p.version = "1.0 "; }, false },
        { "a device as version", [] (Product& p) { p.version = "nul"; }, false },
        { "no root", [] (Product& p) { p.archiveRoot = ""; }, false },
        { "a root of two steps", [] (Product& p) { p.archiveRoot = "pack/patches"; }, false },
        { "a root as a directory", [] (Product& p) { p.archiveRoot = "pack/"; }, false },
        { "a root that leads up", [] (Product& p) { p.archiveRoot = ".."; p.defaultPatch = "../a"; p.licenseFile = "../b"; }, false },
        { "a device as root", [] (Product& p) { p.archiveRoot = "con"; p.defaultPatch = "con/a"; p.licenseFile = "con/b"; }, false },
        { "no patch", [] (Product& p) { p.defaultPatch = ""; }, false },
        { "a patch outside", [] (Product& p) { p.defaultPatch = "other/first.json"; }, false },
        { "a patch beside", [] (Product& p) { p.defaultPatch = "packs/first.json"; }, false },
        { "a patch that leads up", [] (Product& p) { p.defaultPatch = "pack/../first.json"; }, false },
        { "a patch as a directory", [] (Product& p) { p.defaultPatch = "pack/patches/"; }, false },
        { "the root as patch", [] (Product& p) { p.defaultPatch = "pack"; }, false },
        { "a device as patch", [] (Product& p) { p.defaultPatch = "pack/LPT1.json"; }, false },
        { "a patch in a device", [] (Product& p) { p.defaultPatch = "pack/aux/first.json"; }, false },
        { "no licence file", [] (Product& p) { p.licenseFile = ""; }, false },
        { "a licence outside", [] (Product& p) { p.licenseFile = "LICENSE.txt"; }, false },
        { "an absolute licence", [] (Product& p) { p.licenseFile = "/pack/LICENSE.txt"; }, false },
        { "a device as licence", [] (Product& p) { p.licenseFile = "pack/nul"; }, false },
        { "no licence identifier", [] (Product& p) { p.licenseId = ""; }, false },
    };

    for (const auto& row : rows)
    {
        auto product = packOf ("sounds", "1.0.0", "x");
        row.change (product);
        EXPECT_EQ (InstallService::validateContentProduct (product), row.valid) << row.what;
    }
}

TEST (InstallService, PathsAreUniqueOnlyWithoutRegardToCase)
{
    const struct { juce::StringArray names; bool unique; } rows[]
    {
        { {}, true },
        { { "a" }, true },
        { { "a", "b", "a/b", "a/c", "ab" }, true },
        { { "Read.txt", "read.TXT" }, false },
        { { "a", "b", "a" }, false },
        { { "a/", "A" }, false },              // a directory and a file
        { { "a/", "a/b", "a/c/" }, true },
        { { "a/B", "A/b" }, false },
        { { utf8 ("É.txt"), utf8 ("é.txt") }, false },
        { { utf8 ("É.txt"), utf8 ("e.txt") }, true },
        { { " a", "a" }, true },               // names count as they are written
        { { "../a" }, false }, { { "/a" }, false }, { { "a\\b" }, false }, { { "" }, false }, { { "a//b" }, false },
        { { "ok", "a." }, false },
    };

    for (const auto& row : rows)
        EXPECT_EQ (InstallService::hasUniquePaths (row.names), row.unique) << row.names.joinIntoString (" ");
}

TEST (InstallService, TheContentRootIsTheDawsUnlessToldOtherwise)
{
    EXPECT_EQ (InstallService::contentRoot ({}).getFullPathName(), HubPaths::factoryContentDirectory().getFullPathName());
    const auto other = freshFolder ("other");
    EXPECT_EQ (InstallService::contentRoot (other).getFullPathName(), other.getFullPathName());
}

//==============================================================================
TEST (InstallService, AnUnpackedPackMustHoldItsPatchAndLicence)
{
    EXPECT_EQ (verify (freshStaging()), "good");
    const auto outside = write (in (freshFolder ("outside"), "file"), "x");

    const struct { const char* what; std::function<void (const juce::File&)> change; } rows[]
    {
        { "no patch", [] (const juce::File& s) { in (s, "pack/patches/first.json").deleteFile(); } },
        { "no licence", [] (const juce::File& s) { in (s, "pack/LICENSE.txt").deleteFile(); } },
        { "nothing", [] (const juce::File& s) { in (s, "pack").deleteRecursively(); } },
        { "a patch that is a directory", [] (const juce::File& s) { in (s, "pack/patches/first.json").deleteFile(); write (in (s, "pack/patches/first.json/x"), "x"); } },
        { "a licence that is a link", [&] (const juce::File& s) { in (s, "pack/LICENSE.txt").deleteFile(); link (in (s, "pack/LICENSE.txt"), outside.getFullPathName()); } },
        { "a patch that is a link inside", [] (const juce::File& s) { in (s, "pack/patches/first.json").deleteFile(); link (in (s, "pack/patches/first.json"), "../LICENSE.txt"); } },
        { "a root that is a link", [] (const juce::File& s) { in (s, "pack").moveFileTo (in (s, "real")); link (in (s, "pack"), in (s, "real").getFullPathName()); } },
        { "a patch through a link", [] (const juce::File& s) { in (s, "pack/patches").moveFileTo (in (s, "pack/real")); link (in (s, "pack/patches"), "real"); } },
        { "names in another case", [] (const juce::File& s) { in (s, "pack/LICENSE.txt").moveFileTo (in (s, "pack/licence.txt")); } },
    };

    for (const auto& row : rows)
    {
        const auto staging = freshStaging();
        row.change (staging);
        EXPECT_EQ (verify (staging), missingParts) << row.what;
    }
}

TEST (InstallService, AnUnpackedPackHoldsNoLinks)
{
    const auto outside = freshFolder ("outside").getFullPathName();

    for (const auto& destination : { juce::String ("first.json"), outside, juce::String ("../../.."), juce::String ("/nowhere/at/all"), juce::String (".") })
    {
        const auto staging = freshStaging();
        link (in (staging, "pack/patches/deep/er/link"), destination);
        EXPECT_EQ (verify (staging), unsafeTree) << destination;
    }

    const auto staging = freshStaging();
    link (in (staging, "top"), "pack");
    EXPECT_EQ (verify (staging), unsafeTree);
}

//==============================================================================
TEST (InstallService, WritesTheCanonicalManifestByteForByte)
{
    const auto staging = freshStaging();
    auto product = packOf ("sounds", "1.2.0", "archive", "https://downloads.example/sounds.zip");
    product.name = utf8 ("Größe");
    product.sourceUrl = "https://elsewhere.example/";
    product.platforms["win"].sha256 = product.platforms["win"].sha256.toUpperCase();
    write (in (staging, "manifest.json"), "the archive's own, much longer than anything that the Hub would ever write about a pack: "
                                          + juce::String::repeatedString ("x", 2000));
    juce::String error;

    ASSERT_TRUE (InstallService::writeContentManifest (product, staging, error)) << error;
    EXPECT_EQ (error, "");
    const auto text = juce::String::fromUTF8 (read (in (staging, "manifest.json")).c_str());
    EXPECT_EQ (juce::JSON::parse (text)["displayName"].toString(), product.name);
    EXPECT_EQ (text.toStdString(),
               "{\r\n"
               "  \"schema\": 1,\r\n"
               "  \"packId\": \"sounds\",\r\n"
               "  \"version\": \"1.2.0\",\r\n"
               "  \"displayName\": \"Größe\",\r\n"
               "  \"license\": \"CC-BY-4.0\",\r\n"
               "  \"defaultPatch\": \"pack/patches/first.json\",\r\n"
               "  \"sourceUrl\": \"https://downloads.example/sounds.zip\",\r\n"
               "  \"archiveSha256\": \"" + sha256Of ("archive").toStdString() + "\"\r\n"
               "}");
}

TEST (InstallService, SaysWhyTheCanonicalManifestWasNotWritten)
{
    const auto staging = freshStaging();
    auto product = packOf ("sounds", "1.0.0", "archive");
    juce::String error;

    {
        const ReadOnlyFolder shut (staging);
        EXPECT_FALSE (InstallService::writeContentManifest (product, staging, error));
        EXPECT_EQ (error, "Could not create the canonical content manifest.");
    }

    write (in (staging, "manifest.json/inside"), "x");
    EXPECT_FALSE (InstallService::writeContentManifest (product, staging, error));
    EXPECT_EQ (error, "Could not create the canonical content manifest.");

    product.platforms["mac"] = product.platforms["win"];
    product.platforms.erase ("win");
    EXPECT_FALSE (InstallService::writeContentManifest (product, staging, error));
    EXPECT_EQ (error, "The content archive identity is missing for this platform.");
}
