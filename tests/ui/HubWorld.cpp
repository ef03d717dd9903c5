#include "HubWorld.h"

#include "app/HubPaths.h"
#include "platform/Programs.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/PeImage.h"
#include "support/RunnableProgram.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace zorva::test
{
namespace
{
juce::File home()    { return juce::File (juce::String::fromUTF8 (std::getenv ("HOME"))); }

/** The product as an entry of a manifest. */
juce::var entryOf (const Product& product)
{
    const bool isPack = product.installType == Product::InstallType::factoryContent;
    auto entry = isPack ? soundPack (product.id, product.version) : application (product.id, product.version);

    for (const auto& [key, text] : { std::pair { "name", product.name }, { "vendor", product.vendor }, { "description", product.description },
                                     { "category", product.category }, { "releaseDate", product.releaseDate } })
        entry = with (entry, key, text);

    if (product.sizeBytes > 0)
        entry = with (entry, "sizeBytes", product.sizeBytes);

    if (isPack)
        for (const auto& [key, text] : { std::pair { "content.packId", product.packId }, { "content.archiveRoot", product.archiveRoot },
                                         { "content.defaultPatch", product.defaultPatch }, { "content.licenseFile", product.licenseFile },
                                         { "content.licenseId", product.licenseId }, { "content.credit", product.credit },
                                         { "content.sourceUrl", product.sourceUrl } })
            entry = with (entry, key, text);

    juce::Array<juce::var> notes;

    for (const auto& note : product.releaseNotes)
        notes.add (with (with (new juce::DynamicObject(), "title", note.title), "summary", note.summary));

    entry = with (entry, "releaseNotes", notes);

    for (const auto& [key, p] : product.platforms)
        entry = withPlatform (entry, platform (p.url, p.sha256, p.sizeBytes), key);

    return entry;
}
}

std::string programOfVersion (int major, int minor, int build)
{
    return PeImage (PeImage::Format::pe32Plus, (std::uint32_t) (major << 16 | minor), (std::uint32_t) (build << 16)).bytes;
}

std::string programThatRuns()
{
    return programThatMakes (startedFile());
}

juce::File startedFile()
{
    return in (home(), "started");
}

juce::File putInstalled (const juce::String& id, const std::string& program)
{
    const auto file = writeBytes (in (HubPaths::productsDirectory(), id + "/" + id + ".exe"), program);
    EXPECT_TRUE (platform::allowExecution (file));

    const auto recordFile = HubPaths::installRecordFile();
    auto record = juce::JSON::parse (recordFile.loadFileAsString());

    if (record.getDynamicObject() == nullptr)
        record = new juce::DynamicObject();

    juce::DynamicObject::Ptr entry = new juce::DynamicObject();
    entry->setProperty ("path", file.getFullPathName());
    entry->setProperty ("installedAt", "2026-01-31T12:00:00.000Z");
    record.getDynamicObject()->setProperty (id, entry.get());
    write (recordFile, json (record));
    return file;
}

juce::File putPackInstalled (const Product& pack)
{
    const auto folder = in (HubPaths::factoryContentDirectory(), pack.id + "/" + pack.version);
    juce::DynamicObject::Ptr record = new juce::DynamicObject();
    record->setProperty ("schema", 1);
    record->setProperty ("packId", pack.packId);
    record->setProperty ("version", pack.version);
    record->setProperty ("license", pack.licenseId);
    record->setProperty ("defaultPatch", pack.defaultPatch);

    write (in (folder, pack.defaultPatch), "patch");
    write (in (folder, pack.licenseFile), "licence");
    write (in (folder, "manifest.json"), json (record.get()));
    return folder;
}

juce::String manifestOf (const std::vector<Product>& products)
{
    juce::Array<juce::var> entries;

    for (const auto& product : products)
        entries.add (entryOf (product));

    return json (with (document ({}), "products", entries));
}

void putLocalManifest (const std::vector<Product>& products)     { write (HubPaths::manifestLocalFile(), manifestOf (products)); }
void putCachedManifest (const std::vector<Product>& products)    { write (HubPaths::manifestCacheFile(), manifestOf (products)); }

void useCatalogueAt (const juce::String& url)
{
    write (HubPaths::settingsFile(), json (with (new juce::DynamicObject(), "manifestUrl", url)));
}

void stayOffline()
{
    useCatalogueAt ("no address");
}

TrustedTestServer::Answer answerOf (const std::string& bytes)
{
    TrustedTestServer::Answer answer;
    answer.body.append (bytes.data(), bytes.size());
    return answer;
}

Product served (TrustedTestServer& server, Product product, const std::string& published, const juce::String& fileName,
                const TrustedTestServer::Answer& answer)
{
    const auto path = "/files/" + product.id + "/" + fileName;
    server.serve (path, answer);
    product.platforms["win"] = { server.url (path), sha256Of (published), (juce::int64) published.size() };
    return product;
}

Product served (TrustedTestServer& server, Product product, const std::string& published, const juce::String& fileName)
{
    return served (server, std::move (product), published, fileName, answerOf (published));
}

void serveCatalogue (TrustedTestServer& server, const std::vector<Product>& products)
{
    server.serve ("/manifest.json", TrustedTestServer::Answer::text (manifestOf (products)));
    useCatalogueAt (server.url ("/manifest.json"));
}
}
