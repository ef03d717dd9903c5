#include "install/InstallRecord.h"

#include "app/HubPaths.h"
#include "platform/CaseFold.h"
#include "support/BoundedJson.h"
#include "support/IsoTime.h"
#include "support/RecordFile.h"

#include <map>

namespace InstallRecord
{
namespace
{
/** Never freed: a worker may still hold it while the process ends. */
juce::CriticalSection& recordLock()
{
    static auto& lock = *new juce::CriticalSection();
    return lock;
}

juce::var readRecord()
{
    return BoundedJson::parseFile (HubPaths::installRecordFile());
}

/** The record has an entry for the same id in another case. */
bool hasCaseCollision (const juce::DynamicObject& record, const juce::String& id)
{
    const auto folded = platform::foldCase (id);

    for (const auto& entry : record.getProperties())
        if (const auto& key = entry.name.toString(); key != id && platform::foldCase (key) == folded)
            return true;

    return false;
}

juce::var entryFor (const juce::File& executable)
{
    auto entry = std::make_unique<juce::DynamicObject>();
    entry->setProperty ("path", executable.getFullPathName());
    entry->setProperty ("installedAt", isoTime (juce::Time::getCurrentTime()));
    return entry.release();
}
}

juce::StringPairArray readPaths()
{
    const juce::ScopedLock lock (recordLock());
    const auto record = readRecord();
    std::map<juce::String, juce::String> paths;

    if (const auto* object = BoundedJson::objectIn (record))
        for (const auto& entry : object->getProperties())
            if (const auto path = BoundedJson::textIn (entry.value, "path"); path.isNotEmpty())
                paths[entry.name.toString()] = path;

    juce::StringPairArray result (false);
    result.addMap (paths);
    return result;
}

juce::String readPath (const juce::String& id)
{
    const juce::ScopedLock lock (recordLock());
    const auto record = readRecord();
    const auto* object = BoundedJson::objectIn (record);

    return object != nullptr && id.isNotEmpty() ? BoundedJson::textIn (object->getProperty (id), "path") : juce::String();
}

bool write (const juce::String& id, const juce::File& executable, juce::String& error)
{
    const juce::ScopedLock lock (recordLock());
    auto record = readRecord();

    if (BoundedJson::objectIn (record) == nullptr)
        record = new juce::DynamicObject();

    auto& object = *BoundedJson::objectIn (record);

    if (hasCaseCollision (object, id))
    {
        error = "A case-colliding product identity already exists in the install record.";
        return false;
    }

    object.setProperty (id, entryFor (executable));
    HubPaths::ensureDirectories();

    switch (RecordFile::replace (HubPaths::installRecordFile(), RecordFile::toText (record)))
    {
        case RecordFile::Outcome::written:        return true;
        case RecordFile::Outcome::notWritten:     error = "Could not write the temporary install record."; break;
        case RecordFile::Outcome::notReplaced:    error = "Could not atomically replace the install record."; break;
    }

    return false;
}
}
