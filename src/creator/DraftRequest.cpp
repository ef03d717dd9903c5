#include "creator/DraftRequest.h"

#include "creator/DraftPath.h"
#include "creator/EmptyNames.h"
#include "creator/ImageRules.h"
#include "creator/TextRules.h"
#include "creator/WavDuration.h"
#include "support/BoundedJson.h"

namespace DraftRequest
{
namespace
{
constexpr size_t maximumTextBytes = 0x40000;
constexpr int schemaVersion = 1;
constexpr int jobIdDigits = 32;
constexpr int longestTitle = 160, longestDescription = 4000, longestGenre = 64, longestTime = 64;
constexpr int mostTags = 16, longestTag = 48;
constexpr juce::int64 maximumSourceBytes = 68719476736;
constexpr double toleranceSeconds = 0.001;

bool isInteger (const juce::var& value)
{
    return value.isInt() || value.isInt64();
}

juce::String text (const juce::DynamicObject& request, const char* name)
{
    return request.getProperty (name).toString();
}

juce::int64 integer (const juce::DynamicObject& request, const char* name)
{
    return (juce::int64) request.getProperty (name);
}

bool hasTheRightTypes (const juce::DynamicObject& request)
{
    for (const auto* name : { "jobId", "sourcePath", "title", "description", "genre", "visibility", "rightsConfirmedAt", "origin" })
        if (! request.getProperty (name).isString())
            return false;

    return isInteger (request.getProperty ("previewStartSeconds"))
        && isInteger (request.getProperty ("previewDurationSeconds"))
        && request.getProperty ("rightsConfirmed").isBool();
}

bool isJobId (const juce::String& jobId)
{
    return jobId.length() == jobIdDigits && jobId.containsOnly ("0123456789abcdef") && ! jobId.containsOnly ("0");
}

bool isShortProse (const juce::String& prose, int longest)
{
    return prose.length() <= longest && TextRules::isProse (prose);
}

bool isPreviewLength (juce::int64 seconds)
{
    return seconds == 30 || seconds == 60 || seconds == 90;
}

bool isPointInTime (const juce::String& time)
{
    return time.length() <= longestTime && juce::Time::fromISO8601 (time).toMilliseconds() >= 1;
}

bool keepsItsRules (const juce::DynamicObject& request)
{
    const auto title = text (request, "title");
    const auto releaseUrl = text (request, "fullReleaseUrl");

    return isJobId (text (request, "jobId"))
        && title.trim().isNotEmpty() && isShortProse (title, longestTitle)
        && isShortProse (text (request, "description"), longestDescription)
        && isShortProse (text (request, "genre"), longestGenre)
        && integer (request, "previewStartSeconds") >= 0
        && isPreviewLength (integer (request, "previewDurationSeconds"))
        && text (request, "visibility") == "private"
        && (bool) request.getProperty ("rightsConfirmed")
        && text (request, "origin") == "zorva-daw-render-complete"
        && isPointInTime (text (request, "rightsConfirmedAt"))
        && (releaseUrl.isEmpty() || TextRules::isSecureAddress (releaseUrl));
}

bool isTag (const juce::var& tag)
{
    return tag.isString() && tag.toString().trim().isNotEmpty() && isShortProse (tag.toString(), longestTag);
}

bool areTags (const juce::var& tags)
{
    const auto* const list = tags.getArray();
    return list != nullptr && list->size() <= mostTags && std::all_of (list->begin(), list->end(), isTag);
}

bool fitsInto (const juce::DynamicObject& request, const juce::File& source)
{
    const auto duration = wavDurationInSeconds (source);
    const auto end = (double) integer (request, "previewStartSeconds") + (double) integer (request, "previewDurationSeconds");
    return duration.has_value() && end - *duration <= toleranceSeconds;
}

bool isCoverArt (const juce::String& path, juce::File& outFile)
{
    juce::File file;

    if (! isAcceptableDraftPath (path, { ".png", ".jpg", ".jpeg" }, maximumImageBytes, file)
        || ! isAcceptableImageHeader (file) || ! decodesWithinLimits (file))
        return false;

    outFile = file;
    return true;
}
}

juce::var parse (const juce::String& text, juce::String& outReason)
{
    const auto size = text.getNumBytesAsUTF8();

    if (size < 1 || size > maximumTextBytes)
    {
        outReason = "payload_size";
        return {};
    }

    auto request = EmptyNames::find (text.toRawUTF8()).empty() ? BoundedJson::parse (text) : juce::var();
    const auto* const object = BoundedJson::objectIn (request);
    const auto version = object != nullptr ? object->getProperty ("schemaVersion") : juce::var();

    if (! isInteger (version) || (juce::int64) version != schemaVersion)
    {
        outReason = "unsupported_schema";
        return {};
    }

    outReason.clear();
    return request;
}

juce::String firstBreach (const juce::DynamicObject& request, DraftFiles& outFiles)
{
    if (! hasTheRightTypes (request) || ! keepsItsRules (request))
        return "invalid_metadata";

    if (! areTags (request.getProperty ("tags")))
        return "invalid_tags";

    DraftFiles files;

    if (! isAcceptableDraftPath (text (request, "sourcePath"), { ".wav" }, maximumSourceBytes, files.source))
        return "invalid_source_wav";

    if (! fitsInto (request, files.source))
        return "preview_out_of_range";

    const auto coverArt = text (request, "coverArtPath");

    if (coverArt.isNotEmpty() && ! isCoverArt (coverArt, files.coverArt))
        return "invalid_cover_art";

    outFiles = files;
    return {};
}
}
