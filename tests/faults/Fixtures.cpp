#include "Fixtures.h"

#include "support/FileHash.h"

namespace faults
{
static juce::String payloadText (const juce::String& word)
{
    return juce::String::repeatedString (word + " ", 40000 / (word.length() + 1));
}

Product productFor (Product::InstallType type, const juce::String& version, const juce::File& payload)
{
    Product product;
    product.id = "zorva-test";
    product.name = "Test";
    product.version = version;
    product.installType = type;
    product.platforms["win"] = { "https://example.com/" + payload.getFileName(), sha256OfFile (payload), payload.getSize() };

    if (type == Product::InstallType::factoryContent)
    {
        product.packId = product.id;
        product.archiveRoot = "pack";
        product.defaultPatch = "pack/first.patch";
        product.licenseFile = "pack/licence.txt";
        product.licenseId = "TEST-1";
    }

    return product;
}

void writePayload (const juce::File& file, const juce::String& word)
{
    file.getParentDirectory().createDirectory();
    file.replaceWithText (payloadText (word));
}

static void writeArchive (const juce::File& file, const juce::StringPairArray& entries)
{
    juce::ZipFile::Builder builder;

    for (const auto& name : entries.getAllKeys())
        builder.addEntry (new juce::MemoryInputStream (juce::MemoryBlock (entries[name].toRawUTF8(), entries[name].getNumBytesAsUTF8()), true),
                          6, name, juce::Time (2026, 0, 1, 0, 0));

    file.getParentDirectory().createDirectory();
    file.deleteFile();    // a stream on an existing file would append
    juce::FileOutputStream out (file);
    builder.writeToStream (out, nullptr);
}

void writeApplicationArchive (const juce::File& file, const juce::String& word)
{
    juce::StringPairArray entries;
    entries.set ("bin/Test.exe", payloadText (word));
    entries.set ("data/notes.txt", word);
    writeArchive (file, entries);
}

void writeContentArchive (const juce::File& file, const juce::String& word)
{
    juce::StringPairArray entries;
    entries.set ("pack/first.patch", payloadText (word));
    entries.set ("pack/licence.txt", word);
    writeArchive (file, entries);
}

juce::File inbox (const juce::String& name)
{
    return juce::File::getSpecialLocation (juce::File::userHomeDirectory).getChildFile ("inbox").getChildFile (name);
}
}
