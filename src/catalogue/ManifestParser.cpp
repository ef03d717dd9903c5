#include "catalogue/ManifestParser.h"

#include "app/PathTrust.h"
#include "catalogue/ManifestRules.h"
#include "platform/CaseFold.h"
#include "support/BoundedJson.h"

#include <set>

namespace
{
constexpr int formatVersion = 1;
constexpr int maximumReleaseNotes = 8;

/** The names of the format. One a process, never freed: a worker may still be reading while the process ends. */
struct Keys
{
    const juce::Identifier manifestVersion { "manifestVersion" }, products { "products" };
    const juce::Identifier id { "id" }, name { "name" }, vendor { "vendor" }, version { "version" }, description { "description" },
                           category { "category" }, releaseDate { "releaseDate" }, sizeBytes { "sizeBytes" },
                           installType { "installType" }, content { "content" }, releaseNotes { "releaseNotes" },
                           platforms { "platforms" };
    const juce::Identifier packId { "packId" }, archiveRoot { "archiveRoot" }, defaultPatch { "defaultPatch" },
                           licenseFile { "licenseFile" }, licenseId { "licenseId" }, credit { "credit" }, sourceUrl { "sourceUrl" };
    const juce::Identifier title { "title" }, summary { "summary" }, url { "url" }, sha256 { "sha256" };

    static const Keys& get()
    {
        static const auto& instance = *new Keys();
        return instance;
    }
};

//==============================================================================
/** Walks one document in the order that decides which broken rule is met first. Functions that answer false have met a fatal one. */
class ManifestReader
{
public:
    bool read (const juce::String& text)
    {
        const auto document = BoundedJson::parse (text);

        if (BoundedJson::objectIn (document) == nullptr)
            return refuse ("The text must be a JSON object.");

        if (BoundedJson::integerIn (document, keys.manifestVersion) != formatVersion)
            return refuse ("\"manifestVersion\" must be 1.");

        const auto* entries = document[keys.products].getArray();

        if (entries == nullptr)
            return refuse ("\"products\" must be an array.");

        for (int i = 0; i < entries->size(); ++i)
            if (! readEntry (entries->getReference (i), i))
                return false;

        return true;
    }

    std::vector<Product> products;
    std::vector<ManifestProblem> problems;

private:
    bool readEntry (const juce::var& entry, int index)
    {
        subject = BoundedJson::textIn (entry, keys.id);

        if (subject.isEmpty())
            subject = "products[" + juce::String (index) + "]";

        if (BoundedJson::objectIn (entry) == nullptr)
            return leaveOut ("The entry is not an object.");

        return readProduct (entry);
    }

    bool readProduct (const juce::var& entry)
    {
        Product product;
        readTexts (entry, product);

        if (! readInstallType (entry, product))
            return false;

        readReleaseNotes (entry, product);

        if (! takeId (product.id))
            return false;

        if (product.name.isEmpty())
            return leaveOut ("\"name\" is empty.");

        if (product.version.isEmpty())
            return leaveOut ("\"version\" is empty.");

        if (! PathTrust::isSafeFileName (product.version))
            return refuse ("\"version\" must be a safe file name.");

        if (! readPlatforms (entry, product))
            return false;

        products.push_back (std::move (product));
        return true;
    }

    void readTexts (const juce::var& entry, Product& product) const
    {
        product.id = BoundedJson::textIn (entry, keys.id);
        product.name = BoundedJson::textIn (entry, keys.name);
        product.vendor = BoundedJson::textIn (entry, keys.vendor);
        product.version = BoundedJson::textIn (entry, keys.version);
        product.description = BoundedJson::textIn (entry, keys.description);
        product.category = BoundedJson::textIn (entry, keys.category);
        product.releaseDate = BoundedJson::textIn (entry, keys.releaseDate);
        product.sizeBytes = BoundedJson::integerIn (entry, keys.sizeBytes);
    }

    bool readInstallType (const juce::var& entry, Product& product)
    {
        const auto type = entry.hasProperty (keys.installType) ? BoundedJson::textIn (entry, keys.installType).trim()
                                                               : juce::String ("application");
        if (type == "factory-content")
            return readContent (entry[keys.content], product);

        return type == "application" || refuse ("\"installType\" must be \"application\" or \"factory-content\".");
    }

    bool readContent (const juce::var& content, Product& product)
    {
        if (BoundedJson::objectIn (content) == nullptr)
            return refuse ("\"content\" must be an object.");

        product.installType = Product::InstallType::factoryContent;
        product.packId = BoundedJson::textIn (content, keys.packId).trim();
        product.archiveRoot = BoundedJson::textIn (content, keys.archiveRoot).trim();
        product.defaultPatch = BoundedJson::textIn (content, keys.defaultPatch).trim();
        product.licenseFile = BoundedJson::textIn (content, keys.licenseFile).trim();
        product.licenseId = BoundedJson::textIn (content, keys.licenseId).trim();
        product.credit = BoundedJson::textIn (content, keys.credit).trim();
        product.sourceUrl = BoundedJson::textIn (content, keys.sourceUrl).trim();

        if (const auto* broken = brokenContentRule (product))
            return refuse ("content: " + juce::String (broken));

        return true;
    }

    void readReleaseNotes (const juce::var& entry, Product& product)
    {
        const auto* notes = entry[keys.releaseNotes].getArray();

        if (notes == nullptr)
        {
            if (entry.hasProperty (keys.releaseNotes))
                leaveOut ("\"releaseNotes\" is not an array.");

            return;
        }

        for (int i = 0; i < juce::jmin (maximumReleaseNotes, notes->size()); ++i)
            readReleaseNote (notes->getReference (i), i, product);

        if (notes->size() > maximumReleaseNotes)
            leaveOut ("Only the first " + juce::String (maximumReleaseNotes) + " entries of \"releaseNotes\" are read.");
    }

    void readReleaseNote (const juce::var& entry, int index, Product& product)
    {
        ReleaseNote note { BoundedJson::textIn (entry, keys.title).trim(), BoundedJson::textIn (entry, keys.summary).trim() };
        const auto* broken = BoundedJson::objectIn (entry) == nullptr ? "The entry is not an object." : brokenNoteRule (note);

        if (broken == nullptr)
            product.releaseNotes.push_back (std::move (note));
        else
            leaveOut ("releaseNotes[" + juce::String (index) + "]: " + broken);
    }

    bool takeId (const juce::String& id)
    {
        const auto normalised = normalisedId (id);

        if (normalised.isEmpty())
            return refuse ("\"id\" must be a safe identity.");

        return seenIds.insert (normalised).second || refuse ("\"id\" must be unique without regard to case.");
    }

    bool readPlatforms (const juce::var& entry, Product& product)
    {
        const auto* platforms = BoundedJson::objectIn (entry[keys.platforms]);

        if (platforms == nullptr)
        {
            if (entry.hasProperty (keys.platforms))
                leaveOut ("\"platforms\" is not an object.");

            return true;
        }

        for (const auto& property : platforms->getProperties())
            if (! readPlatform (property.name.toString(), property.value, product))
                return false;

        if (const auto* windows = product.windowsPlatform(); windows != nullptr && product.sizeBytes < 1)
            product.sizeBytes = windows->sizeBytes;

        return true;
    }

    bool readPlatform (const juce::String& name, const juce::var& entry, Product& product)
    {
        ProductPlatform platform { BoundedJson::textIn (entry, keys.url), platform::foldCase (BoundedJson::textIn (entry, keys.sha256)),
                                   BoundedJson::integerIn (entry, keys.sizeBytes) };
        const auto* broken = BoundedJson::objectIn (entry) == nullptr ? "The value must be an object." : brokenPlatformRule (platform);

        if (broken != nullptr)
            return refuse ("platforms." + name + ": " + broken);

        product.platforms[name.toStdString()] = std::move (platform);
        return true;
    }

    //==============================================================================
    /** Notes a fatal problem; false, for the caller to pass on. */
    bool refuse (const juce::String& rule)
    {
        problems.push_back ({ subject, rule, true });
        return false;
    }

    /** Notes what is left out; true, since the reading goes on. */
    bool leaveOut (const juce::String& rule)
    {
        problems.push_back ({ subject, rule, false });
        return true;
    }

    const Keys& keys = Keys::get();
    juce::String subject;                ///< what a problem is about
    std::set<juce::String> seenIds;      ///< a tree, because a hostile manifest could choose ids that collide in a hash table
};
}

//==============================================================================
std::vector<Product> parseManifest (const juce::String& text)
{
    ManifestReader reader;
    return reader.read (text) ? std::move (reader.products) : std::vector<Product>();
}

std::vector<ManifestProblem> checkManifest (const juce::String& text)
{
    ManifestReader reader;

    if (reader.read (text) && reader.products.empty())
        reader.problems.push_back ({ {}, "The document must hold a product that can be used.", true });

    return std::move (reader.problems);
}

int compareVersions (const juce::String& a, const juce::String& b)
{
    const auto partsOfA = juce::StringArray::fromTokens (a, ".", {}), partsOfB = juce::StringArray::fromTokens (b, ".", {});

    for (int i = 0; i < juce::jmax (partsOfA.size(), partsOfB.size()); ++i)
    {
        // A part that is missing reads as the empty text, whose value is 0.
        const auto partOfA = partsOfA[i].getIntValue(), partOfB = partsOfB[i].getIntValue();

        if (partOfA != partOfB)
            return partOfA > partOfB ? 1 : -1;
    }

    return 0;
}
