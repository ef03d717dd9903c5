#include "vault/VaultRecord.h"

#include "app/PathTrust.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"
#include "support/IsoTime.h"
#include "support/RegularFile.h"

namespace VaultRecord
{
namespace
{
constexpr const char* recordName = "vault.json";
constexpr const char* applicationType = "application";
constexpr const char* contentType = "factory-content";

bool isPlainFile (const juce::File& file)
{
    return isRegularFile (file) && ! PathTrust::isReparseOrSymlink (file);
}

bool isSafeContentPath (const juce::String& path)
{
    return PathTrust::isSafeRelativeFilePath (path) && ! PathTrust::hasReservedDeviceStep (path.trim());
}

bool hasSafeContentFields (const Product& product)
{
    const auto below = product.archiveRoot + "/";

    return product.packId == product.id
        && isSafeContentPath (product.archiveRoot)
        && isSafeContentPath (product.defaultPatch)
        && isSafeContentPath (product.licenseFile)
        && ! product.archiveRoot.containsChar ('/')
        && product.defaultPatch.startsWith (below)
        && product.licenseFile.startsWith (below);
}

/** False when the record's install type is unknown or a sound pack's fields break a rule. */
bool readInstallType (const juce::var& record, Product& product)
{
    if (! record.hasProperty ("installType"))
        return true;

    const auto type = BoundedJson::textIn (record, "installType");

    if (type == applicationType)
        return true;

    const auto& content = record["content"];

    if (type != contentType || BoundedJson::objectIn (content) == nullptr)
        return false;

    product.installType = Product::InstallType::factoryContent;
    product.packId = BoundedJson::textIn (content, "packId");
    product.archiveRoot = BoundedJson::textIn (content, "archiveRoot");
    product.defaultPatch = BoundedJson::textIn (content, "defaultPatch");
    product.licenseFile = BoundedJson::textIn (content, "licenseFile");
    product.licenseId = BoundedJson::textIn (content, "licenseId");

    return hasSafeContentFields (product);
}

juce::var contentObject (const Product& product)
{
    auto* const object = new juce::DynamicObject();
    const juce::var content (object);

    object->setProperty ("packId", product.packId);
    object->setProperty ("archiveRoot", product.archiveRoot);
    object->setProperty ("defaultPatch", product.defaultPatch);
    object->setProperty ("licenseFile", product.licenseFile);
    object->setProperty ("licenseId", product.licenseId);
    return content;
}

/** The entry that the installer was downloaded from; null when product and installer don't fit the rules. */
const ProductPlatform* acceptedPlatform (const Product& product, const juce::String& platformKey, const juce::File& installer)
{
    if (platformKey != "mac" && platformKey != "win")
        return nullptr;

    if (! isPlainFile (installer) || ! PathTrust::isSafeFileName (installer.getFileName()))
        return nullptr;

    const auto entry = product.platforms.find (platformKey.toStdString());

    if (entry == product.platforms.end() || ! PathTrust::isValidSha256 (entry->second.sha256)
        || entry->second.sizeBytes != installer.getSize())
        return nullptr;

    if (product.installType == Product::InstallType::factoryContent
        && ! (PathTrust::isHttpsUrl (entry->second.url) && hasSafeContentFields (product)))
        return nullptr;

    return &entry->second;
}
}

juce::File fileIn (const juce::File& folder)
{
    return childOf (folder, recordName);
}

juce::var read (const juce::File& folder)
{
    const auto file = fileIn (folder);

    if (! isPlainFile (file) || ! PathTrust::isTrustedPathUnder (folder, file, true))
        return {};

    const auto record = BoundedJson::parseFile (file);
    return BoundedJson::textIn (record, "id") == folder.getFileName() ? record : juce::var();
}

juce::File installerOf (const juce::var& record, const juce::File& folder)
{
    const auto name = BoundedJson::textIn (record, "fileName");

    if (! PathTrust::isSafeFileName (name))
        return {};

    const auto file = childOf (folder, name);
    return PathTrust::isTrustedPathUnder (folder, file, true) && isPlainFile (file) ? file : juce::File();
}

std::optional<ProductCardModel> modelOf (const juce::var& record, const juce::File& installer)
{
    ProductCardModel model;
    auto& product = model.product;

    product.id = BoundedJson::textIn (record, "id");
    product.name = BoundedJson::textIn (record, "name");
    product.vendor = BoundedJson::textIn (record, "vendor");
    product.version = BoundedJson::textIn (record, "version");
    product.description = BoundedJson::textIn (record, "description");
    product.category = BoundedJson::textIn (record, "category");
    product.sizeBytes = installer.getSize();

    if (! readInstallType (record, product))
        return {};

    product.platforms[BoundedJson::textIn (record, "platform").toStdString()] = { BoundedJson::textIn (record, "url"),
                                                                                  BoundedJson::textIn (record, "sha256"),
                                                                                  product.sizeBytes };
    model.state = ProductCardState::cached;
    model.vaultFile = installer;
    return model;
}

std::optional<juce::var> create (const Product& product, const juce::String& platformKey, const juce::File& installer)
{
    const auto* const entry = acceptedPlatform (product, platformKey, installer);

    if (entry == nullptr)
        return {};

    const bool isContent = product.installType == Product::InstallType::factoryContent;
    auto* const object = new juce::DynamicObject();
    const juce::var record (object);

    object->setProperty ("id", product.id);
    object->setProperty ("name", product.name);
    object->setProperty ("vendor", product.vendor);
    object->setProperty ("version", product.version);
    object->setProperty ("description", product.description);
    object->setProperty ("category", product.category);
    object->setProperty ("platform", platformKey);
    object->setProperty ("fileName", installer.getFileName());
    object->setProperty ("sizeBytes", installer.getSize());
    object->setProperty ("downloadedAt", isoTime (juce::Time::getCurrentTime()));
    object->setProperty ("sha256", entry->sha256.toLowerCase());
    object->setProperty ("url", entry->url);
    object->setProperty ("installType", isContent ? contentType : applicationType);

    if (isContent)
        object->setProperty ("content", contentObject (product));

    return record;
}
}
