#include "ManifestFiller.h"

#include "app/PathTrust.h"
#include "support/BoundedJson.h"
#include "support/ChildFile.h"
#include "support/FileHash.h"

/** Empty when the entry was filled, otherwise the reason why not. */
static juce::String fillEntry (const juce::var& platform, const juce::File& folder)
{
    auto* object = BoundedJson::objectIn (platform);

    if (object == nullptr)
        return "The value is not an object.";

    const auto name = downloadFileName (BoundedJson::textIn (platform, "url"));

    if (name.isEmpty())
        return "The \"url\" does not end with a file name.";

    const auto file = childOf (folder, name);

    if (! file.existsAsFile())
        return "There is no file \"" + name + "\".";

    const auto sha256 = sha256OfFile (file);

    if (sha256.isEmpty())
        return "The file \"" + name + "\" cannot be read.";

    object->setProperty ("sha256", sha256);
    object->setProperty ("sizeBytes", file.getSize());
    return {};
}

juce::String downloadFileName (const juce::String& url)
{
    const auto path = url.trim().upToFirstOccurrenceOf ("#", false, false).upToFirstOccurrenceOf ("?", false, false)
                         .fromFirstOccurrenceOf ("://", false, false).fromFirstOccurrenceOf ("/", false, false);

    // In a path, unlike in a query, a plus sign is no blank.
    const auto name = juce::URL::removeEscapeChars (path.fromLastOccurrenceOf ("/", false, false).replace ("+", "%2B"));
    return PathTrust::isSafeFileName (name) ? name : juce::String();
}

juce::StringArray fillFromFiles (const juce::var& manifest, const juce::File& folder)
{
    juce::StringArray unchanged;
    const auto* products = manifest["products"].getArray();

    if (products == nullptr)
        return unchanged;

    for (const auto& product : *products)
        if (const auto* platforms = BoundedJson::objectIn (product["platforms"]))
            for (const auto& entry : platforms->getProperties())
                if (const auto reason = fillEntry (entry.value, folder); reason.isNotEmpty())
                    unchanged.add (BoundedJson::textIn (product, "id") + ": platforms." + entry.name.toString() + ": " + reason);

    return unchanged;
}
