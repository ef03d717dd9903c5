#include "HostileDraft.h"
#include "support/PictureBuilder.h"
#include "support/WavBuilder.h"

#include <filesystem>
#include <sys/stat.h>

namespace
{
using namespace zorva::test;

class PreviewDraftHostileFiles : public HostileDraftTest {};
}

//==============================================================================
TEST_F (PreviewDraftHostileFiles, NothingButAnOrdinaryFileStandsForTheWavOrTheCover)
{
    const auto folder = freshFolder ("odd files");

    for (const bool isCover : { false, true })
    {
        const juce::String end = isCover ? ".png" : ".wav";
        const auto good = isCover ? writeBytes (in (folder, "cover.png"), blankPng (8, 8)) : render;
        const auto reason = [&] (const juce::File& file)
        {
            const auto path = juce::JSON::toString (file.getFullPathName());
            return reasonOf (isCover ? withMore ("\"coverArtPath\": " + path) : with ("sourcePath", path));
        };
        const auto refused = isCover ? "invalid_cover_art" : "invalid_source_wav";
        EXPECT_EQ (reason (good), "");

        EXPECT_EQ (reason (link (in (folder, "link" + end), good.getFullPathName())), refused);
        EXPECT_EQ (reason (link (in (folder, "dangling" + end), "/absent" + end)), refused);
        EXPECT_EQ (reason (link (in (folder, "device" + end), "/dev/zero")), refused);
        EXPECT_EQ (reason (in (link (in (folder, "way" + end), good.getParentDirectory().getFullPathName()), good.getFileName())), refused) << "below a link";
        ASSERT_EQ (::mkfifo (in (folder, "pipe" + end).getFullPathName().toRawUTF8(), 0600), 0);
        EXPECT_EQ (reason (in (folder, "pipe" + end)), refused) << "and returns";
        ASSERT_TRUE (in (folder, "folder" + end).createDirectory());
        EXPECT_EQ (reason (in (folder, "folder" + end)), refused);
        EXPECT_EQ (reason (writeBytes (in (folder, "empty" + end), {})), refused);
        EXPECT_EQ (reason (in (folder, "absent" + end)), refused);
    }
}

TEST_F (PreviewDraftHostileFiles, ACoverIsJudgedByItsHeaderBeforeItIsDecoded)
{
    const auto folder = freshFolder ("covers");
    const auto reason = [&] (const char* name, const std::string& bytes)
    {
        return reasonOf (withMore ("\"coverArtPath\": " + juce::JSON::toString (writeBytes (in (folder, name), bytes).getFullPathName())));
    };

    EXPECT_EQ (reason ("good.png", blankPng (8, 8)), "");
    EXPECT_EQ (reason ("good.jpg", blankJpeg (8, 8)), "");
    EXPECT_EQ (reason ("jpeg inside.png", blankJpeg (8, 8)), "") << "the content decides what it is";
    EXPECT_EQ (reason ("bomb.png", blankPng (8, 8).replace (16, 8, big32 (0x7fffffff) + big32 (0x7fffffff))), "invalid_cover_art");
    EXPECT_EQ (reason ("large.png", pngHeader (8192, 4097)), "invalid_cover_art");
    EXPECT_EQ (reason ("header.png", pngHeader (8, 8)), "invalid_cover_art");
    EXPECT_EQ (reason ("cut.png", blankPng (8, 8).substr (0, 50)), "invalid_cover_art");
    EXPECT_EQ (reason ("bomb.jpg", jpegHeader (65535, 65535)), "invalid_cover_art");
    EXPECT_EQ (reason ("hidden.jpg", jpegStart() + jpegMarker (1) + big16 ((int) jpegFrame (60000, 60000).size() + 2) + jpegFrame (60000, 60000)
                                         + blankJpeg (8, 8).substr (2)), "invalid_cover_art") << "a frame that only the decoder would see";
}

TEST_F (PreviewDraftHostileFiles, TheSourceHasAtMost64Gibibytes)
{
    const auto path = render.getFullPathName().toStdString();
    std::filesystem::resize_file (path, 68719476736);       // sparse, and never read beyond its headers
    EXPECT_EQ (reasonOf (payload()), "");
    std::filesystem::resize_file (path, 68719476737);
    EXPECT_EQ (reasonOf (payload()), "invalid_source_wav");
}

TEST_F (PreviewDraftHostileFiles, ACoverHasAtMost20Mebibytes)
{
    const auto cover = writeBytes (in (freshFolder ("covers"), "cover.png"), blankPng (8, 8));
    const auto text = withMore ("\"coverArtPath\": " + juce::JSON::toString (cover.getFullPathName()));
    std::filesystem::resize_file (cover.getFullPathName().toStdString(), 20971520);
    EXPECT_EQ (reasonOf (text), "");
    std::filesystem::resize_file (cover.getFullPathName().toStdString(), 20971521);
    EXPECT_EQ (reasonOf (text), "invalid_cover_art");
}

TEST_F (PreviewDraftHostileFiles, ARepetitionIsJudgedAnewAndTheRecordStays)
{
    PreviewDraftStore store;
    ASSERT_TRUE (store.save (payload()).accepted);
    const auto written = read (record());

    // Nothing of the WAV is kept, so that of the same length is the same to the store.
    writeBytes (render, WavBuilder().format().data (8000 * 45).bytes());
    EXPECT_TRUE (store.save (payload()).idempotentReplay);
    writeBytes (render, WavBuilder().format().data (8000 * 29).bytes());
    EXPECT_EQ (store.save (payload()).reason, "preview_out_of_range");
    ASSERT_TRUE (render.deleteFile());
    EXPECT_EQ (store.save (payload()).reason, "invalid_source_wav");
    EXPECT_EQ (read (record()), written);
}

TEST_F (PreviewDraftHostileFiles, ARecordsNameNeverLeavesTheDirectory)
{
    const auto around = treeOf (HubPaths::creatorDirectory());

    for (const auto* id : { "../../../../../../../../tmp/a000000", "0123456789abcdef/../../x01234567", "/123456789abcdef0123456789abcdef", "~123456789abcdef0123456789abcdef",
                            ".123456789abcdef0123456789abcdef", "0123456789abcdef0123456789abcde\\n", "0123456789abcdef0123456789abcde " })
        EXPECT_EQ (reasonOf (with ("jobId", "\"" + juce::String (id) + "\"")), "invalid_metadata") << id;

    EXPECT_EQ (treeOf (HubPaths::creatorDirectory()), around);
}

TEST_F (PreviewDraftHostileFiles, WhatStandsInTheRecordsPlaceIsNeitherReadNorReplaced)
{
    ASSERT_TRUE (record().createDirectory());
    EXPECT_EQ (PreviewDraftStore().save (payload()).reason, "draft_save_failed");
    EXPECT_EQ (treeOf (HubPaths::publishDraftsDirectory()), (Tree { { record().getFileName().toStdString(), "folder" } })) << "no sibling is left";
    ASSERT_TRUE (record().deleteFile());

    ASSERT_EQ (::mkfifo (record().getFullPathName().toRawUTF8(), 0600), 0);
    EXPECT_EQ (PreviewDraftStore().save (payload()).reason, "draft_recovery_required") << "and returns";
    ASSERT_TRUE (record().deleteFile());

    const auto other = writeBytes (in (freshFolder ("elsewhere"), "other.json"), "{}");
    link (record(), other.getFullPathName());
    EXPECT_EQ (PreviewDraftStore().save (payload()).reason, "job_id_conflict");
    EXPECT_EQ (read (other), "{}");
    EXPECT_TRUE (record().isSymbolicLink());
}
