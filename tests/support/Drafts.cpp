#include "support/Drafts.h"

#include "support/Files.h"
#include "support/WavBuilder.h"

namespace zorva::test
{
juce::File writeRender()
{
    constexpr int seconds = 31;
    return writeBytes (freshFolder ("Renders").getChildFile ("song.wav"),
                       WavBuilder().format().data (seconds * (int) WavBuilder::Format().byteRate).bytes());
}

juce::String draftOf (const juce::File& render, const juce::String& jobId, const juce::String& title)
{
    const juce::DynamicObject::Ptr draft (new juce::DynamicObject());
    draft->setProperty ("schemaVersion", 1);
    draft->setProperty ("jobId", jobId);
    draft->setProperty ("sourcePath", render.getFullPathName());
    draft->setProperty ("title", title);
    draft->setProperty ("description", "");
    draft->setProperty ("genre", "Ambient");
    draft->setProperty ("visibility", "private");
    draft->setProperty ("rightsConfirmed", true);
    draft->setProperty ("rightsConfirmedAt", "2026-05-04T12:34:56.789Z");
    draft->setProperty ("origin", "zorva-daw-render-complete");
    draft->setProperty ("previewStartSeconds", 0);
    draft->setProperty ("previewDurationSeconds", 30);
    draft->setProperty ("tags", juce::Array<juce::var>());
    return juce::JSON::toString (draft.get(), true);
}
}
