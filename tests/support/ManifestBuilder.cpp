#include "support/ManifestBuilder.h"

namespace zorva::test
{
const char* const someSha256 = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";

namespace
{
juce::var object (std::initializer_list<std::pair<const char*, juce::var>> properties)
{
    juce::DynamicObject::Ptr result = new juce::DynamicObject();

    for (const auto& [name, value] : properties)
        result->setProperty (name, value);

    return result.get();
}

/** The object that holds the path's last step; objects on the way are made when they are missing. */
juce::DynamicObject* ownerOf (const juce::var& root, const juce::StringArray& steps)
{
    auto* owner = root.getDynamicObject();

    for (int i = 0; i < steps.size() - 1; ++i)
    {
        const juce::Identifier name (steps[i]);

        if (owner->getProperty (name).getDynamicObject() == nullptr)
            owner->setProperty (name, new juce::DynamicObject());

        owner = owner->getProperty (name).getDynamicObject();
    }

    return owner;
}
}

juce::var application (const juce::String& id, const juce::String& version)
{
    return object ({ { "id", id }, { "name", "Name of " + id }, { "vendor", "Vendor" }, { "version", version },
                     { "description", "Description" }, { "category", "Category" }, { "releaseDate", "2026-01-31" } });
}

juce::var soundPack (const juce::String& id, const juce::String& version)
{
    const auto content = object ({ { "packId", id }, { "archiveRoot", "pack" }, { "defaultPatch", "pack/patches/first.json" },
                                   { "licenseFile", "pack/LICENSE.txt" }, { "licenseId", "CC-BY-4.0" },
                                   { "credit", "Somebody" }, { "sourceUrl", "https://sounds.example/pack" } });

    return with (with (application (id, version), "installType", "factory-content"), "content", content);
}

juce::var platform (const juce::String& url, const juce::String& sha256, juce::int64 sizeBytes)
{
    return object ({ { "url", url }, { "sha256", sha256 }, { "sizeBytes", sizeBytes } });
}

juce::var withPlatform (const juce::var& product, const juce::var& entry, const juce::String& key)
{
    return with (product, "platforms." + key, entry);
}

juce::var with (const juce::var& original, const juce::String& path, const juce::var& value)
{
    const auto copy = original.clone();
    const auto steps = juce::StringArray::fromTokens (path, ".", {});
    ownerOf (copy, steps)->setProperty (steps[steps.size() - 1], value);
    return copy;
}

juce::var without (const juce::var& original, const juce::String& path)
{
    const auto copy = original.clone();
    const auto steps = juce::StringArray::fromTokens (path, ".", {});
    ownerOf (copy, steps)->removeProperty (steps[steps.size() - 1]);
    return copy;
}

juce::var list (std::initializer_list<juce::var> values)
{
    juce::Array<juce::var> result;

    for (const auto& value : values)
        result.add (value);

    return result;
}

juce::var document (std::initializer_list<juce::var> products)
{
    return object ({ { "manifestVersion", 1 }, { "products", list (products) } });
}

juce::String json (const juce::var& value)
{
    return juce::JSON::toString (value);
}

juce::String manifest (std::initializer_list<juce::var> products)
{
    return json (document (products));
}
}
