#include "InstallRun.h"
#include "support/ZipBuilder.h"

using namespace zorva::test;

namespace
{
const char* const notOneProgram = "failed: The Windows package must contain exactly one application executable.";
const char* const noPackage = "failed: The Windows package is empty or corrupt.";
const std::string notExtracted = "failed: Could not extract the Windows package: ";

std::string installPackage (const std::string& archive)
{
    return putAndInstall ("app", "app.zip", archive);
}

/** Expects that an archive is refused while it is unpacked, with a reason, and that nothing but the previous install is there. */
void expectNotExtracted (const char* what, const std::string& archive)
{
    write (installedFile ("app/old.exe"), "old program");
    const auto home = HubPaths::productsDirectory().getParentDirectory();
    const auto before = treeOf (home);

    const auto end = installPackage (archive);
    EXPECT_EQ (end.substr (0, notExtracted.size()), notExtracted) << what;
    EXPECT_GT (end.size(), notExtracted.size()) << what << ": with a reason";
    EXPECT_EQ (treeOf (home), before) << what;
    EXPECT_FALSE (isThere (HubPaths::installRecordFile())) << what;
}
}

//==============================================================================
TEST (InstallService, APackageIsUnpackedWithItsOneProgram)
{
    const auto archive = ZipBuilder().folder ("App").file ("App/bin/My App.exe", "program").file ("App/data/presets.json", "{}")
                                     .file ("App/empty", "").file ("readme.txt", "read me").bytes();

    EXPECT_EQ (installPackage (archive), installedTo ("app"));
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()),
               (Tree { { "app", "folder" }, { "app/App", "folder" }, { "app/App/bin", "folder" }, { "app/App/bin/My App.exe", "file: program" },
                       { "app/App/data", "folder" }, { "app/App/data/presets.json", "file: {}" }, { "app/App/empty", "file: " },
                       { "app/readme.txt", "file: read me" } }));

    const auto program = installedFile ("app/App/bin/My App.exe");
    EXPECT_EQ (juce::JSON::parse (HubPaths::installRecordFile())["app"]["path"].toString(), program.getFullPathName());
    EXPECT_EQ (InstallService::findInstalledExecutable ("app").getFullPathName(), program.getFullPathName());
}

TEST (InstallService, APackageReplacesThePreviousInstallWhole)
{
    write (installedFile ("app/old.exe"), "old program");
    write (installedFile ("app/data/old"), "old data");

    EXPECT_EQ (installPackage (ZipBuilder().file ("new.exe", "new").bytes()), installedTo ("app"));
    EXPECT_EQ (treeOf (HubPaths::productsDirectory()), (Tree { { "app", "folder" }, { "app/new.exe", "file: new" } }));
}

TEST (InstallService, APackageMustHoldExactlyOneProgramAnywhere)
{
    const struct { const char* what; std::string archive; } refused[]
    {
        { "none", ZipBuilder().file ("readme.txt", "x").bytes() },
        { "only folders", ZipBuilder().folder ("a").folder ("a/b").bytes() },
        { "a folder of that name", ZipBuilder().folder ("app.exe").file ("app.exe/readme.txt", "x").bytes() },
        { "a similar name", ZipBuilder().file ("app.exe.txt", "x").file ("appexe", "x").bytes() },
        { "two beside each other", ZipBuilder().file ("a.exe", "x").file ("b.exe", "x").bytes() },
        { "two far apart", ZipBuilder().file ("a.exe", "x").file ("deep/er/b.exe", "x").bytes() },
        { "one in capitals", ZipBuilder().file ("a.exe", "x").file ("deep/B.EXE", "x").bytes() },
        { "a hidden one", ZipBuilder().file ("a.exe", "x").file (".hidden/.b.exe", "x").bytes() },
    };

    for (const auto& row : refused)
    {
        EXPECT_EQ (installPackage (row.archive), notOneProgram) << row.what;
        EXPECT_EQ (treeOf (HubPaths::productsDirectory()), Tree()) << row.what;
    }

    EXPECT_EQ (installPackage (ZipBuilder().file ("deep/APP.EXE", "x").folder ("folder.exe").bytes()), installedTo ("app"));
    EXPECT_EQ (InstallService::findInstalledExecutable ("app").getFileName(), "APP.EXE");
}

TEST (InstallService, APackageWithoutEntriesIsEmptyOrCorrupt)
{
    const auto whole = ZipBuilder().file ("app.exe", "program").bytes();

    for (const auto& archive : { ZipBuilder().bytes(), std::string ("no archive at all"), whole.substr (0, whole.size() / 2) })
    {
        EXPECT_EQ (installPackage (archive), noPackage);
        EXPECT_EQ (treeOf (HubPaths::productsDirectory()), Tree());
    }
}

//==============================================================================
TEST (InstallService, APackageThatLiesAboutItsContentIsNotInstalled)
{
    const std::string content (100000, 'x');
    auto damaged = ZipBuilder().file ("app.exe", "x").add ({ .name = "data", .content = "stored bytes", .method = 0 }).bytes();
    damaged[damaged.find ("stored bytes")] = 'S';

    expectNotExtracted ("more bytes than stated", ZipBuilder().file ("app.exe", "x").add ({ .name = "data", .content = content, .statedSize = 10 }).bytes());
    expectNotExtracted ("fewer bytes than stated", ZipBuilder().file ("app.exe", "x").add ({ .name = "data", .content = "x", .statedSize = 10 }).bytes());
    expectNotExtracted ("a wrong checksum", ZipBuilder().add ({ .name = "app.exe", .content = "x", .statedCrc = 0 }).bytes());
    expectNotExtracted ("a damaged byte", damaged);
    expectNotExtracted ("an unknown method", ZipBuilder().file ("app.exe", "x").add ({ .name = "data", .content = "x", .method = 12 }).bytes());
    expectNotExtracted ("an encrypted file", ZipBuilder().file ("app.exe", "x").add ({ .name = "data", .content = "x", .flags = 0x0801 }).bytes());
}

TEST (InstallService, APackageThatLeadsOutsideIsNotInstalled)
{
    const auto outside = freshFolder ("outside");
    const auto way = outside.getFullPathName().toStdString();

    expectNotExtracted ("a step up", ZipBuilder().file ("app.exe", "x").file ("../evil.txt", "x").bytes());
    expectNotExtracted ("a step up in the middle", ZipBuilder().file ("app.exe", "x").file ("a/../../evil.txt", "x").bytes());
    expectNotExtracted ("a step up with backslashes", ZipBuilder().file ("app.exe", "x").file ("..\\evil.txt", "x").bytes());
    expectNotExtracted ("an absolute path", ZipBuilder().file ("app.exe", "x").file (way + "/evil.txt", "x").bytes());
    expectNotExtracted ("a link", ZipBuilder().file ("app.exe", "x").link ("way", way).bytes());
    expectNotExtracted ("a link and a file in it", ZipBuilder().file ("app.exe", "x").link ("way", way).file ("way/evil.txt", "x").bytes());
    expectNotExtracted ("a link and a file of its name",
                        ZipBuilder().file ("app.exe", "x").link ("way", way + "/evil.txt").file ("way", "x").bytes());
    expectNotExtracted ("a program that is a link", ZipBuilder().link ("app.exe", way).bytes());
    EXPECT_EQ (treeOf (outside), Tree());
}

TEST (InstallService, APackageOfManyFilesInstalls)
{
    ZipBuilder builder;
    builder.file ("app.exe", "program");

    for (int i = 0; i < 1500; ++i)
        builder.file ("data/" + std::to_string (i % 7) + "/" + std::to_string (i), std::to_string (i));

    EXPECT_EQ (installPackage (builder.bytes()), installedTo ("app"));
    EXPECT_EQ (treeOf (installedFile ("app")).size(), (size_t) (1 + 1500 + 8));
    EXPECT_EQ (read (installedFile ("app/data/0/1498")), "1498");
}
