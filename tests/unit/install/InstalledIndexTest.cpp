#include "install/InstalledIndex.h"
#include "InstallRun.h"
#include "support/ManifestBuilder.h"

using namespace zorva::test;

namespace
{
juce::File packFile (const juce::String& relativePath)
{
    return in (HubPaths::factoryContentDirectory(), relativePath);
}

void putPack (const Product& product, const juce::String& manifestVersion)
{
    const auto folder = product.id + "/" + product.version + "/";
    write (packFile (folder + product.defaultPatch), "patch");
    write (packFile (folder + product.licenseFile), "licence");
    write (packFile (folder + "manifest.json"),
           "{ \"schema\": 1, \"packId\": \"" + product.id + "\", \"version\": \"" + manifestVersion + "\", \"license\": \"CC-BY-4.0\","
           " \"defaultPatch\": \"pack/patches/first.json\" }");
}

/** Products in every condition. */
std::vector<Product> makeMixedInstalls()
{
    juce::DynamicObject::Ptr record = new juce::DynamicObject();
    std::vector<Product> products;

    const auto put = [&] (const juce::String& id, const juce::String& file, const juce::String& recordedPath)
    {
        if (file.isNotEmpty())
            write (installedFile (id + "/" + file), "program");

        if (recordedPath.isNotEmpty())
        {
            juce::DynamicObject::Ptr entry = new juce::DynamicObject();
            entry->setProperty ("path", recordedPath);
            record->setProperty (id, entry.get());
        }

        products.push_back (applicationOf (id, "1.0.0", "x"));
    };

    put ("recorded", "bin/tool.exe", installedFile ("recorded/bin/tool.exe").getFullPathName());
    put ("by-name", "By Name.exe", {});
    put ("other-name", "tool.exe", {});
    put ("moved-away", "moved-away.exe", installedFile ("moved-away/old.exe").getFullPathName());
    put ("outside", "outside.exe", write (in (freshFolder ("outside"), "outside.exe"), "x").getFullPathName());
    put ("of-another", {}, installedFile ("recorded/bin/tool.exe").getFullPathName());
    put ("relative", "relative.exe", "relative.exe");
    put ("gone", {}, installedFile ("gone/gone.exe").getFullPathName());
    put ("unheard-of", {}, {});
    put ("Cased", "Cased.exe", installedFile ("Cased/Cased.exe").getFullPathName());
    products.push_back (applicationOf ("cased", "1.0.0", "x"));
    products.push_back (applicationOf ("../recorded", "1.0.0", "x"));
    record->setProperty ("odd", 7);
    products.push_back (applicationOf ("odd", "1.0.0", "x"));
    write (HubPaths::installRecordFile(), json (record.get()));

    for (const char* version : { "1.0.0", "2.0.0" })
        putPack (packOf ("sounds", version, "x"), version);

    putPack (packOf ("mistaken", "1.0.0", "x"), "1.0.1");

    for (const char* version : { "1.0.0", "2.0.0", "3.0.0" })
        products.push_back (packOf ("sounds", version, "x"));

    products.push_back (packOf ("mistaken", "1.0.0", "x"));
    products.push_back (packOf ("recorded", "1.0.0", "x"));
    return products;
}
}

//==============================================================================
TEST (InstalledIndex, GivesTheSameAnswersAsTheService)
{
    const auto products = makeMixedInstalls();
    const InstalledIndex index;
    int installed = 0;

    for (const auto& product : products)
    {
        const auto expected = InstallService::installedLocation (product).getFullPathName();
        EXPECT_EQ (index.installedLocation (product).getFullPathName().toStdString(), expected.toStdString()) << product.id << " " << product.version;
        installed += expected.isNotEmpty() ? 1 : 0;
    }

    EXPECT_EQ (installed, 8);
}

TEST (InstalledIndex, WithoutARecordTheNamesDecide)
{
    makeMixedInstalls();

    for (const char* content : { "", "{ broken", "[]" })
    {
        write (HubPaths::installRecordFile(), content);
        const InstalledIndex index;

        for (const char* id : { "recorded", "by-name", "Cased", "unheard-of" })
        {
            const auto product = applicationOf (id, "1.0.0", "x");
            EXPECT_EQ (index.installedLocation (product).getFullPathName().toStdString(),
                       InstallService::installedLocation (product).getFullPathName().toStdString()) << id;
        }
    }
}

TEST (InstalledIndex, KnowsNothingWhenNothingIsInstalled)
{
    const InstalledIndex index;
    EXPECT_EQ (index.installedLocation (applicationOf ("app", "1.0.0", "x")).getFullPathName().toStdString(), "");
    EXPECT_EQ (index.installedLocation (packOf ("sounds", "1.0.0", "x")).getFullPathName().toStdString(), "");
}
