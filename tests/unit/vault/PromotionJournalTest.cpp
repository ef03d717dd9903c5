#include "support/PromotionScene.h"
#include "support/Text.h"

using namespace zorva::test;

namespace
{
const juce::String hexDigits ("0123456789abcdef");

/** The 32 hexadecimal digits at the end of an artefact's name, before the extension of a journal. */
juce::String tokenOf (const juce::File& file)
{
    const auto name = file.getFileName().upToLastOccurrenceOf (".json", false, false);
    return name.substring (name.length() - 32);
}

std::string quoted (const juce::File& file)
{
    return "\"" + file.getFullPathName().toStdString() + "\"";
}
}

//==============================================================================
TEST (PromotionTransaction, TheArtefactsShareOneFreshToken)
{
    juce::StringArray tokens;

    for (int i = 0; i < 2; ++i)
    {
        const PromotionScene scene;
        PromotionTransaction promotion;
        scene.activate (promotion);
        const auto token = tokenOf (scene.journal());

        EXPECT_TRUE (token.containsOnly (hexDigits)) << token;
        EXPECT_EQ (scene.journal(), in (scene.folder, ".zorva-promotion-" + token + ".json"));
        EXPECT_EQ (scene.backup(), in (scene.folder, "setup.exe.backup-" + token));
        EXPECT_EQ (scene.metadataBackup(), in (scene.folder, "vault.json.promotion-backup-" + token));
        tokens.addIfNotAlreadyThere (token);
    }

    EXPECT_EQ (tokens.size(), 2);
}

TEST (PromotionTransaction, TheJournalHasItsKeysInOrderWithWindowsLineEndsAndNoByteOrderMark)
{
    const PromotionScene scene (PromotionScene::everything, utf8 ("Größe 音.exe"));
    PromotionTransaction promotion;
    scene.activate (promotion);

    EXPECT_EQ (read (scene.journal()),
               "{\r\n"
               "  \"version\": 1,\r\n"
               "  \"state\": \"activated\",\r\n"
               "  \"staged\": " + quoted (scene.staged) + ",\r\n"
               "  \"target\": " + quoted (scene.target) + ",\r\n"
               "  \"backup\": " + quoted (scene.backup()) + ",\r\n"
               "  \"hadTarget\": true,\r\n"
               "  \"metadata\": " + quoted (scene.metadata) + ",\r\n"
               "  \"metadataBackup\": " + quoted (scene.metadataBackup()) + ",\r\n"
               "  \"metadataExisted\": true\r\n"
               "}");
}

TEST (PromotionTransaction, WithoutARecordTheJournalNamesNone)
{
    const PromotionScene scene (PromotionScene::nothing);
    PromotionTransaction promotion;
    juce::String error;
    ASSERT_TRUE (promotion.activate (scene.staged, scene.target, error, juce::File())) << error;
    const auto journal = juce::JSON::parse (scene.journal().loadFileAsString());

    for (const char* key : { "metadata", "metadataBackup" })
    {
        EXPECT_TRUE (journal.hasProperty (key)) << key;
        EXPECT_EQ (journal[key].toString(), "") << key;
    }

    for (const char* key : { "hadTarget", "metadataExisted" })
    {
        EXPECT_TRUE (journal[key].isBool()) << key;
        EXPECT_FALSE ((bool) journal[key]) << key;
    }
}

TEST (PromotionTransaction, ARecordThatDoesNotExistYetStillHasItsBackupNamed)
{
    const PromotionScene scene (PromotionScene::withTarget);
    PromotionTransaction promotion;
    scene.activate (promotion);
    const auto journal = juce::JSON::parse (scene.journal().loadFileAsString());

    EXPECT_FALSE ((bool) journal["metadataExisted"]);
    EXPECT_EQ (journal["metadataBackup"].toString(), scene.metadata.getFullPathName() + ".promotion-backup-" + tokenOf (scene.journal()));
    EXPECT_FALSE (isThere (juce::File (journal["metadataBackup"].toString())));
}

TEST (PromotionTransaction, ARecordInAnotherFolderHasItsSnapshotBesideIt)
{
    const PromotionScene scene (PromotionScene::withTarget);
    const auto elsewhere = freshFolder ("records");
    const auto record = write (in (elsewhere, "installed.json"), "record");
    PromotionTransaction promotion;
    juce::String error, note;
    ASSERT_TRUE (promotion.activate (scene.staged, scene.target, error, record)) << error;
    EXPECT_EQ (treeOf (elsewhere), (Tree { { "installed.json", "file: record" },
                                           { "installed.json.promotion-backup-" + tokenOf (scene.journal()).toStdString(), "file: record" } }));

    EXPECT_TRUE (promotion.commit (note));
    EXPECT_EQ (treeOf (elsewhere), (Tree { { "installed.json", "file: record" } }));
}
