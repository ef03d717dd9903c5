#include "catalogue/ManifestParser.h"
#include "support/ManifestBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
bool accepts (const juce::var& product)
{
    return ! parseManifest (manifest ({ product })).empty();
}

juce::var packWith (const char* key, const juce::var& value)
{
    return with (soundPack ("pack-1"), "content." + juce::String (key), value);
}

juce::var packFrom (const juce::String& credit, const juce::String& sourceUrl)
{
    return with (packWith ("credit", credit), "content.sourceUrl", sourceUrl);
}

juce::String times (const char* text, int count)
{
    return juce::String::repeatedString (utf8 (text), count);
}

void checkKey (const char* key, std::initializer_list<juce::var> accepted, std::initializer_list<juce::var> refused)
{
    for (const auto& value : accepted)
        EXPECT_TRUE (accepts (packWith (key, value))) << key << " " << json (value);

    for (const auto& value : refused)
        EXPECT_FALSE (accepts (packWith (key, value))) << key << " " << json (value);

    EXPECT_FALSE (accepts (without (soundPack ("pack-1"), "content." + juce::String (key)))) << key << " absent";
}
}

TEST (ManifestParser, ReadsTheSevenTextsOfASoundPackTrimmed)
{
    auto entry = soundPack ("pack-1");

    for (const char* key : { "packId", "archiveRoot", "defaultPatch", "licenseFile", "licenseId", "credit", "sourceUrl" })
        entry = with (entry, "content." + juce::String (key), " \t" + entry["content"][key].toString() + "\r\n");

    const auto products = parseManifest (manifest ({ entry }));
    ASSERT_EQ (products.size(), 1u);
    EXPECT_EQ (products[0].installType, Product::InstallType::factoryContent);
    EXPECT_EQ (products[0].packId, "pack-1");
    EXPECT_EQ (products[0].archiveRoot, "pack");
    EXPECT_EQ (products[0].defaultPatch, "pack/patches/first.json");
    EXPECT_EQ (products[0].licenseFile, "pack/LICENSE.txt");
    EXPECT_EQ (products[0].licenseId, "CC-BY-4.0");
    EXPECT_EQ (products[0].credit, "Somebody");
    EXPECT_EQ (products[0].sourceUrl, "https://sounds.example/pack");
}

TEST (ManifestParser, DoesNotReadTheContentOfAnApplication)
{
    auto entry = with (soundPack ("pack-1"), "installType", "application");
    entry = with (entry, "content.packId", "something else");
    const auto products = parseManifest (manifest ({ entry }));

    ASSERT_EQ (products.size(), 1u);
    EXPECT_EQ (products[0].packId, "");
    EXPECT_EQ (products[0].archiveRoot, "");
    EXPECT_EQ (products[0].licenseId, "");
    EXPECT_TRUE (accepts (with (application ("a"), "content", "text")));
}

TEST (ManifestParser, ASoundPackNeedsAContentObject)
{
    EXPECT_FALSE (accepts (without (soundPack ("a"), "content")));

    for (const auto& content : { juce::var(), juce::var ("text"), juce::var (1), list ({}), list ({ soundPack ("a")["content"] }) })
        EXPECT_FALSE (accepts (with (soundPack ("a"), "content", content))) << json (content);
}

TEST (ManifestParser, ThePackIdIsExactlyTheId)
{
    checkKey ("packId", { "pack-1", " pack-1 " }, { "Pack-1", "pack-2", "", juce::var() });

    // An id that is no safe identity is fatal by itself, also when the pack repeats it.
    EXPECT_FALSE (accepts (with (with (soundPack ("x"), "id", "a b"), "content.packId", "a b")));
}

TEST (ManifestParser, TheArchiveRootIsOneDirectoryName)
{
    const auto rootOf = [] (const juce::String& root)
    {
        const auto entry = with (packWith ("archiveRoot", root), "content.defaultPatch", root.trim() + "/patch");
        return with (entry, "content.licenseFile", root.trim() + "/licence");
    };

    for (const char* root : { "pack", " pack ", "Pack 1", ".pack", "~x" })
        EXPECT_TRUE (accepts (rootOf (root))) << root;

    for (const char* root : { "", "pack/sub", "pack/", "/pack", "pack\\sub", ".", "..", "pack.", "C:pack", "a//b", "/" })
        EXPECT_FALSE (accepts (rootOf (root))) << root;

    EXPECT_TRUE (accepts (rootOf (times ("a", 1016)))) << "the licence's path then has 1024 characters";
    EXPECT_FALSE (accepts (rootOf (times ("a", 1017))));
    checkKey ("archiveRoot", { "pack" }, { "pack/sub", "pack/", "", "other", "Pack" });
}

TEST (ManifestParser, TheDefaultPatchIsAFileInTheArchiveRoot)
{
    checkKey ("defaultPatch",
              { "pack/x", "pack/a/b/c.json", " pack/x ", "pack/" + times ("a", 1019) },
              { "", "pack", "pack/", "pack/a/", "other/patch", "packs/patch", "Pack/patch", "/pack/x", "pack/../x", "pack//x",
                "pack\\x", "pack/x.", "pack/a:b", "x/pack/y", "pack/" + times ("a", 1020) });
}

TEST (ManifestParser, TheLicenceIsAFileInTheArchiveRoot)
{
    checkKey ("licenseFile",
              { "pack/x", "pack/legal/LICENSE.txt", " pack/x ", "pack/" + times ("a", 1019) },
              { "", "pack", "pack/", "pack/a/", "other/LICENSE", "packs/LICENSE", "PACK/LICENSE", "/pack/x", "pack/../x", "pack//x",
                "pack\\x", "pack/x ./y", "pack/" + times ("a", 1020) });
}

TEST (ManifestParser, TheLicenceIdHasOneTo64Characters)
{
    checkKey ("licenseId", { "X", times ("a", 64), times ("音", 64), " " + times ("a", 64) + " ", "two words" },
              { "", "   ", times ("a", 65), times ("音", 65) });
}

TEST (ManifestParser, TheCreditHasAtMost240CharactersOnOneLine)
{
    const juce::String url ("https://a.example/");

    for (const auto& credit : { juce::String ("X"), times ("c", 240), times ("é", 240), " " + times ("c", 240) + "\n", juce::String ("ends\r\n"), juce::String ("\tbegins") })
        EXPECT_TRUE (accepts (packFrom (credit, url))) << credit.length();

    for (const auto& credit : { times ("c", 241), times ("é", 241), juce::String ("two\nlines"), juce::String ("two\rlines"), juce::String ("two\tcolumns") })
        EXPECT_FALSE (accepts (packFrom (credit, url))) << credit.length();
}

TEST (ManifestParser, CreditAndSourceGoTogether)
{
    EXPECT_TRUE (accepts (packFrom ("", "")));
    EXPECT_TRUE (accepts (packFrom (" ", "\n")));
    EXPECT_TRUE (accepts (packFrom ("Somebody", "https://a.example/")));
    EXPECT_FALSE (accepts (packFrom ("Somebody", "")));
    EXPECT_FALSE (accepts (packFrom ("", "https://a.example/")));
    EXPECT_FALSE (accepts (packFrom ("Somebody", " ")));
    EXPECT_TRUE (accepts (without (without (soundPack ("a"), "content.credit"), "content.sourceUrl")));
    EXPECT_FALSE (accepts (without (soundPack ("a"), "content.credit")));
    EXPECT_FALSE (accepts (without (soundPack ("a"), "content.sourceUrl")));
}

TEST (ManifestParser, TheSourceIsAnHttpsAddress)
{
    for (const char* url : { "https://a.example", " HTTPS://a.example/x " })
        EXPECT_TRUE (accepts (packFrom ("Somebody", url))) << url;

    for (const char* url : { "http://a.example", "a.example", "https://", "ftp://a.example", "mailto:x@a.example" })
        EXPECT_FALSE (accepts (packFrom ("Somebody", url))) << url;
}
