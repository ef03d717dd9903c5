#include "InstallRun.h"
#include "support/ZipBuilder.h"

using namespace zorva::test;

namespace
{
const char* const wrongNumber = "failed: The content archive is empty, corrupt, or exceeds the safe entry limit.";
const char* const unsafeEntry = "failed: The content archive contains an unsafe path, link, or size.";
const char* const colliding = "failed: The content archive contains duplicate or case-colliding paths.";
const std::string notExtracted = "failed: Could not extract the verified content archive: ";

constexpr std::uint32_t twoGiB = 2147483648u;

std::string installPack (const std::string& archive)
{
    const auto product = packOf ("sounds", "1.0.0", "hashing large archives would take the time, and nothing here compares");
    const auto file = writeBytes (vaultFile ("sounds/pack.zip"), archive);
    juce::String message;
    const bool ok = InstallService::installContent (product, file, message, {});
    return (ok ? "done: " : "failed: ") + message.toStdString();
}

/** Expects a refusal before anything was written. */
void expectRefused (const std::string& what, const ZipBuilder& archive, const char* message)
{
    EXPECT_EQ (installPack (archive.bytes()), message) << what;
    EXPECT_FALSE (isThere (HubPaths::factoryContentDirectory())) << what;
}

ZipBuilder goodPack()
{
    return ZipBuilder().file ("pack/patches/first.json", "patch").file ("pack/LICENSE.txt", "licence");
}

/** A pack of so many entries in all. */
ZipBuilder packOfEntries (int count)
{
    auto builder = goodPack();

    for (int i = 2; i < count; ++i)
        builder.add ({ .name = "pack/" + std::to_string (i / 500) + "/" + std::to_string (i), .content = {}, .method = 0 });

    return builder;
}
}

//==============================================================================
TEST (InstallService, APackHasAtLeastOneEntry)
{
    const auto whole = goodPack().bytes();

    for (const auto& archive : { ZipBuilder().bytes(), std::string ("no archive at all"), whole.substr (0, whole.size() - 30), std::string() })
    {
        EXPECT_EQ (installPack (archive), wrongNumber);
        EXPECT_FALSE (isThere (HubPaths::factoryContentDirectory()));
    }
}

TEST (InstallService, APackOfFiftyThousandEntriesInstalls)
{
    EXPECT_EQ (installPack (packOfEntries (50000).bytes()),
               "done: Installed Name of sounds to " + HubPaths::factoryContentDirectory().getFullPathName().toStdString() + "/sounds/1.0.0.");
    EXPECT_TRUE (isThere (in (HubPaths::factoryContentDirectory(), "sounds/1.0.0/pack/99/49999")));
}

TEST (InstallService, APackOfMoreThanFiftyThousandEntriesIsRefused)
{
    expectRefused ("50,001", packOfEntries (50001), wrongNumber);
    expectRefused ("65,535", packOfEntries (65535), wrongNumber);
}

TEST (InstallService, AnEntryOfExactlyTwoGiBIsNotTooLarge)
{
    // The claim is a lie, which only the unpacking finds.
    const auto end = installPack (goodPack().claim ("pack/large", twoGiB).bytes());
    EXPECT_EQ (end.substr (0, notExtracted.size()), notExtracted);

    HubPaths::factoryContentDirectory().deleteRecursively();
    expectRefused ("two entries of the same name", goodPack().claim ("pack/large", twoGiB).file ("pack/LARGE", "x"), colliding);
}

TEST (InstallService, AnEntryOfMoreThanTwoGiBIsRefused)
{
    expectRefused ("one byte more", goodPack().claim ("pack/large", twoGiB + 1), unsafeEntry);
    expectRefused ("the largest size there is", goodPack().claim ("pack/large", 0xfffffffeu), unsafeEntry);
    expectRefused ("a size stated elsewhere", goodPack().claim ("pack/large", 0xffffffffu), unsafeEntry);
}

TEST (InstallService, APackOfExactlyEightGiBIsNotTooLarge)
{
    auto builder = ZipBuilder();

    for (int i = 0; i < 4; ++i)
        builder.claim ("pack/" + std::to_string (i), twoGiB);

    const auto end = installPack (builder.bytes());
    EXPECT_EQ (end.substr (0, notExtracted.size()), notExtracted);

    HubPaths::factoryContentDirectory().deleteRecursively();
    expectRefused ("with two names alike", builder.folder ("PACK/0"), colliding);
}

TEST (InstallService, APackOfMoreThanEightGiBIsRefused)
{
    auto builder = ZipBuilder();

    for (int i = 0; i < 4; ++i)
        builder.claim ("pack/" + std::to_string (i), twoGiB);

    expectRefused ("one byte at the end", ZipBuilder (builder).claim ("pack/more", 1), unsafeEntry);
    expectRefused ("another large one", ZipBuilder (builder).claim ("pack/more", twoGiB), unsafeEntry);

    auto many = goodPack();

    for (int i = 0; i < 9; ++i)
        many.claim ("pack/" + std::to_string (i), 1000000000);

    expectRefused ("nine thousand million bytes", many, unsafeEntry);
}

//==============================================================================
TEST (InstallService, APackWithAnUnsafeNameIsRefused)
{
    const std::string tooLong (1025, 'a'), elsewhere = freshFolder ("elsewhere").getFullPathName().toStdString();

    for (const auto& name : { std::string ("../evil"), std::string ("pack/../../evil"), std::string ("pack/.."), std::string ("."),
                              elsewhere + "/evil", std::string ("\\evil"), std::string ("pack\\evil"), std::string ("..\\evil"),
                              std::string ("C:/evil"), std::string ("C:evil"), std::string ("pack/a:b"), std::string ("pack//a"),
                              std::string ("pack/./a"), std::string ("pack/a."), std::string ("pack/a /b"), std::string ("pack/a\nb"),
                              std::string ("pack/a\x7f"), std::string ("/"), std::string (""), std::string ("nul"), std::string ("pack/NUL.txt"),
                              std::string ("CON/a"), std::string ("pack/com1"), std::string ("pack/lpt9.a.b/c"), std::string ("aux/"), tooLong })
        expectRefused ("'" + name + "'", goodPack().file (name, "x"), unsafeEntry);
}

TEST (InstallService, APackMayHaveUnusualNames)
{
    const auto end = installPack (goodPack().file ("pack/~root", "x").file ("~user/file", "x").file ("pack/$(touch x)", "x").file ("pack/.hidden", "x")
                                            .file ("pack/com10", "x").file ("pack/Gr\xc3\xb6\xc3\x9f" "e.wav", "x").file ("a b/c", "x").bytes());
    EXPECT_EQ (end.substr (0, 6), "done: ") << end;

    for (const char* name : { "pack/~root", "~user/file", "pack/$(touch x)", "pack/.hidden", "pack/com10", "a b/c" })
        EXPECT_EQ (read (in (HubPaths::factoryContentDirectory(), juce::String ("sounds/1.0.0/") + name)), "x") << name;

    EXPECT_EQ (read (in (HubPaths::factoryContentDirectory(), juce::String::fromUTF8 ("sounds/1.0.0/pack/Gr\xc3\xb6\xc3\x9f" "e.wav"))), "x");
}

TEST (InstallService, APackWithALinkIsRefused)
{
    const auto elsewhere = freshFolder ("elsewhere").getFullPathName().toStdString();
    expectRefused ("to the outside", goodPack().link ("pack/link", elsewhere), unsafeEntry);
    expectRefused ("to the inside", goodPack().link ("pack/link", "LICENSE.txt"), unsafeEntry);
    expectRefused ("followed by a file of its name", goodPack().link ("pack/link", elsewhere + "/evil").file ("pack/link", "x"), unsafeEntry);
}

TEST (InstallService, APackWhoseNamesDifferOnlyInCaseIsRefused)
{
    expectRefused ("files", goodPack().file ("pack/Read.txt", "x").file ("pack/read.TXT", "y"), colliding);
    expectRefused ("the same name twice", goodPack().file ("pack/a", "x").file ("pack/a", "y"), colliding);
    expectRefused ("a folder and a file", goodPack().folder ("pack/a").file ("pack/A", "y"), colliding);
    expectRefused ("letters outside ASCII", goodPack().file ("pack/\xc3\x89", "x").file ("pack/\xc3\xa9", "y"), colliding);
}
