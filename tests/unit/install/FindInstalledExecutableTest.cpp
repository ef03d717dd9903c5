#include "app/HubPaths.h"
#include "install/InstallService.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
juce::File installedFile (const juce::String& relativePath)    { return in (HubPaths::productsDirectory(), relativePath); }

std::string found (const juce::String& id)    { return InstallService::findInstalledExecutable (id).getFullPathName().toStdString(); }

std::string pathOf (const juce::File& file)    { return file.getFullPathName().toStdString(); }

void putRecord (const juce::String& id, const juce::var& path)
{
    juce::DynamicObject::Ptr entry = new juce::DynamicObject(), record = new juce::DynamicObject();
    entry->setProperty ("path", path);
    record->setProperty (id, entry.get());
    write (HubPaths::installRecordFile(), json (record.get()));
}
}

//==============================================================================
TEST (InstallService, NothingIsInstalledAtFirst)
{
    EXPECT_EQ (found ("app"), "");
    EXPECT_FALSE (InstallService::launch ("app"));
    EXPECT_FALSE (isThere (HubPaths::productsDirectory()));
    EXPECT_FALSE (isThere (HubPaths::root()));
}

TEST (InstallService, FindsTheRecordedProgram)
{
    const auto program = write (installedFile ("app/bin/Any Name.exe"), "x");
    write (installedFile ("app/app.exe"), "x");
    putRecord ("app", program.getFullPathName());
    EXPECT_EQ (found ("app"), pathOf (program)) << "though another bears the product's name";
}

TEST (InstallService, ARecordedPathThatIsNotTheProductsOwnProgramIsIgnored)
{
    const auto outside = write (in (freshFolder ("outside"), "app.exe"), "x");
    const auto byName = write (installedFile ("app/app.exe"), "x");
    const auto other = write (installedFile ("other/app.exe"), "x");
    write (installedFile ("app/readme.txt"), "x");
    ASSERT_TRUE (installedFile ("app/folder.exe").createDirectory().wasOk());
    link (installedFile ("app/link.exe"), outside.getFullPathName());
    link (installedFile ("app/way"), outside.getParentDirectory().getFullPathName());
    const auto products = HubPaths::productsDirectory().getFullPathName();

    const juce::var paths[]
    {
        outside.getFullPathName(), other.getFullPathName(), products + "/app/../other/app.exe", products + "/app/missing.exe",
        products + "/app/readme.txt", products + "/app/folder.exe", products + "/app/link.exe", products + "/app/way/app.exe",
        products + "/app", products + "/app/", "", "app.exe", "bin/app.exe", "~/app.exe", "~root/app.exe", "..", 7, juce::var(),
    };

    for (const auto& path : paths)
    {
        putRecord ("app", path);
        EXPECT_EQ (found ("app"), pathOf (byName)) << path.toString();
    }
}

TEST (InstallService, TheRecordOfAnotherSpellingIsNotTheProducts)
{
    const auto program = write (installedFile ("app/tool.exe"), "x");
    putRecord ("App", program.getFullPathName());
    EXPECT_EQ (found ("app"), "");
}

TEST (InstallService, WithoutARecordTheProgramsNameDecides)
{
    const struct { const char* id; const char* file; bool isFound; } rows[]
    {
        { "my-product", "My Product.exe", true },
        { "my-product", "my-product.exe", true },
        { "my-product", "MY-PRODUCT.EXE", true },
        { "my-product", "deep/er/my product.exe", true },
        { "my-product", "My_Product.exe", false },
        { "my-product", "myproduct.exe", false },
        { "my-product", "My Product 2.exe", false },
        { "my-product", "My Product", false },
        { "my-product", "My Product.txt", false },
        { "my-product", "my-product.exe.bak", false },
        { "a-b-c", "a b c.exe", true },
        { "a-b-c", "a b-c.exe", false },
        { "pack_1.2", "pack_1.2.exe", true },
    };

    for (const auto& row : rows)
    {
        const auto file = write (installedFile (row.id + juce::String ("/") + row.file), "x");
        EXPECT_EQ (found (row.id), row.isFound ? pathOf (file) : "") << row.file;
        installedFile (row.id).deleteRecursively();
    }
}

TEST (InstallService, TheSearchFollowsNoLinks)
{
    const auto outside = freshFolder ("outside");
    write (in (outside, "app.exe"), "x");
    link (installedFile ("app/app.exe"), in (outside, "app.exe").getFullPathName());
    link (installedFile ("app/way"), outside.getFullPathName());
    link (installedFile ("app/round"), installedFile ("app").getFullPathName());
    link (installedFile ("app/round2"), installedFile ("app").getFullPathName());
    ASSERT_TRUE (installedFile ("app/folder/app.exe").createDirectory().wasOk());
    EXPECT_EQ (found ("app"), "");

    write (in (outside, "linked/linked.exe"), "x");
    link (installedFile ("linked"), in (outside, "linked").getFullPathName());
    EXPECT_EQ (found ("linked"), "");
}

TEST (InstallService, AProgramBesideTheProductsDirectoryIsNotFound)
{
    write (in (HubPaths::productsDirectory().getParentDirectory(), "app.exe"), "x");
    write (installedFile ("app.exe"), "x");
    write (installedFile ("other/app.exe"), "x");
    EXPECT_EQ (found ("app"), "");
}

TEST (InstallService, AnUnsafeIdentityFindsNothing)
{
    write (installedFile ("app/app.exe"), "x");

    for (const char* id : { "", ".", "..", "../Products/app", "app/", "app/app", "con" })
        EXPECT_EQ (found (id), "") << id;
}

//==============================================================================
TEST (InstallService, MatchesAProductsName)
{
    const struct { const char* stem; const char* id; bool matches; } rows[]
    {
        { "app", "app", true }, { "APP", "app", true }, { "app", "APP", true },
        { "my-product", "my-product", true }, { "my product", "my-product", true }, { "My Product", "MY-product", true },
        { "my-product two", "my-product-two", false }, { "my product two", "my-product-two", true },
        { "my_product", "my-product", false }, { "myproduct", "my-product", false },
        { "app ", "app", false }, { " app", "app", false }, { "", "app", false }, { "ap", "app", false },
        { "..", "..", false }, { "", "", false }, { "a b", "a b", false }, { "con", "con", false }, { "-a", "-a", false },
    };

    for (const auto& row : rows)
        EXPECT_EQ (InstallService::matchesProductName (row.stem, row.id), row.matches) << row.stem << " for " << row.id;
}

TEST (InstallService, OwnsOnlyProgramsInTheProductsOwnDirectory)
{
    const auto program = write (installedFile ("app/app.exe"), "x");
    const auto outside = write (in (freshFolder ("outside"), "app.exe"), "x");

    const struct { const char* what; const char* id; juce::File file; bool owned; } rows[]
    {
        { "the program", "app", program, true },
        { "any name", "app", write (installedFile ("app/Any.EXE"), "x"), true },
        { "deeper", "app", write (installedFile ("app/a/b/c.exe"), "x"), true },
        { "another product's", "app", write (installedFile ("other/app.exe"), "x"), false },
        { "a longer name's", "app", write (installedFile ("app2/app.exe"), "x"), false },
        { "outside", "app", outside, false },
        { "at the top", "app", write (installedFile ("app.exe"), "x"), false },
        { "no program", "app", write (installedFile ("app/app.dll"), "x"), false },
        { "no extension", "app", write (installedFile ("app/app"), "x"), false },
        { "missing", "app", installedFile ("app/missing.exe"), false },
        { "a directory", "app", write (installedFile ("app/dir.exe/x"), "x").getParentDirectory(), false },
        { "a link inside", "app", link (installedFile ("app/in.exe"), program.getFullPathName()), false },
        { "a link outside", "app", link (installedFile ("app/out.exe"), outside.getFullPathName()), false },
        { "a dangling link", "app", link (installedFile ("app/no.exe"), "/nowhere/at/all.exe"), false },
        { "through a link", "app", in (link (installedFile ("app/way"), outside.getParentDirectory().getFullPathName()), "app.exe"), false },
        { "an unsafe identity", "../Products/app", program, false },
        { "no file", "app", juce::File(), false },
    };

    for (const auto& row : rows)
        EXPECT_EQ (InstallService::isOwnedInstallPath (row.id, row.file), row.owned) << row.what;
}

TEST (InstallService, OwnsNothingInADirectoryThatIsALink)
{
    const auto outside = freshFolder ("outside");
    write (in (outside, "app.exe"), "x");
    link (installedFile ("app"), outside.getFullPathName());
    EXPECT_FALSE (InstallService::isOwnedInstallPath ("app", installedFile ("app/app.exe")));
}
