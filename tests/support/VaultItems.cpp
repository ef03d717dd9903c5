#include "support/VaultItems.h"
#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"

#include <juce_cryptography/juce_cryptography.h>

namespace zorva::test
{
juce::String sha256Of (const std::string& bytes)
{
    return juce::SHA256 (bytes.data(), bytes.size()).toHexString();
}

Product applicationOf (const juce::String& id, const juce::String& version, const std::string& installer, const juce::String& url)
{
    Product product;
    product.id = id;
    product.name = "Name of " + id;
    product.vendor = "Vendor";
    product.version = version;
    product.description = "Description";
    product.category = "Category";
    product.sizeBytes = (juce::int64) installer.size();
    product.platforms["win"] = { url, sha256Of (installer), (juce::int64) installer.size() };
    return product;
}

Product packOf (const juce::String& id, const juce::String& version, const std::string& archive, const juce::String& url)
{
    auto product = applicationOf (id, version, archive, url);
    product.installType = Product::InstallType::factoryContent;
    product.packId = id;
    product.archiveRoot = "pack";
    product.defaultPatch = "pack/patches/first.json";
    product.licenseFile = "pack/LICENSE.txt";
    product.licenseId = "CC-BY-4.0";
    return product;
}

juce::var vaultRecordOf (const Product& product, const juce::String& fileName, juce::int64 size)
{
    const bool isPack = product.installType == Product::InstallType::factoryContent;
    const auto entry = product.platforms.find ("win");

    juce::DynamicObject::Ptr record = new juce::DynamicObject();
    record->setProperty ("id", product.id);
    record->setProperty ("name", product.name);
    record->setProperty ("vendor", product.vendor);
    record->setProperty ("version", product.version);
    record->setProperty ("description", product.description);
    record->setProperty ("category", product.category);
    record->setProperty ("platform", "win");
    record->setProperty ("fileName", fileName);
    record->setProperty ("sizeBytes", size);
    record->setProperty ("downloadedAt", "2026-01-31T12:00:00.000Z");
    record->setProperty ("sha256", entry != product.platforms.end() ? entry->second.sha256 : juce::String (someSha256));
    record->setProperty ("url", entry != product.platforms.end() ? entry->second.url : juce::String());
    record->setProperty ("installType", isPack ? "factory-content" : "application");

    if (! isPack)
        return record.get();

    juce::DynamicObject::Ptr content = new juce::DynamicObject();
    content->setProperty ("packId", product.packId);
    content->setProperty ("archiveRoot", product.archiveRoot);
    content->setProperty ("defaultPatch", product.defaultPatch);
    content->setProperty ("licenseFile", product.licenseFile);
    content->setProperty ("licenseId", product.licenseId);
    record->setProperty ("content", content.get());
    return record.get();
}

juce::File vaultFile (const juce::String& relativePath)
{
    return in (HubPaths::vaultDirectory(), relativePath);
}

juce::File putInVault (const Product& product, const juce::String& fileName, const std::string& installer)
{
    write (vaultFile (product.id + "/vault.json"), json (vaultRecordOf (product, fileName, (juce::int64) installer.size())));
    return writeBytes (vaultFile (product.id + "/" + fileName), installer);
}
}
