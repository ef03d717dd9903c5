#include "app/PathTrust.h"

#include "platform/CaseFold.h"
#include "platform/PathRedirection.h"
#include "support/HttpsAddress.h"
#include "support/NativePath.h"

#include <algorithm>
#include <string_view>

namespace PathTrust
{
namespace
{
constexpr int maximumRelativePathLength = 1024;
constexpr int maximumFileNameLength = 255;
constexpr int maximumIdentityLength = 64;

/** Also true for a link that leads nowhere. */
bool standsOnDisk (const juce::File& file)
{
    return file.exists() || isReparseOrSymlink (file);
}

/** A part of a path as text in which names that differ only in case are equal; nothing when it is no valid text, since two such
    names could look alike. */
std::optional<juce::String> foldedText (const std::filesystem::path& path)
{
    const auto bytes = path.u8string();
    const auto* text = reinterpret_cast<const char*> (bytes.data());

    if (! juce::CharPointer_UTF8::isValidString (text, (int) bytes.size()))
        return {};

    return platform::foldCase (juce::String::fromUTF8 (text, (int) bytes.size()));
}

bool haveEqualText (const std::filesystem::path& a, const std::filesystem::path& b)
{
    const auto first = foldedText (a);
    const auto second = foldedText (b);
    return first.has_value() && second.has_value() && *first == *second;
}

bool isBelow (const std::filesystem::path& parent, const std::filesystem::path& child)
{
    auto inChild = child.begin();

    for (const auto& step : parent)
    {
        if (inChild == child.end() || ! haveEqualText (step, *inChild))
            return false;

        ++inChild;
    }

    return inChild != child.end();
}

/** Decided by the text alone. Only to ask for a path on a network share would name this user to a stranger's machine, and wait for it. */
bool haveTheSameVolume (const juce::File& a, const juce::File& b)
{
    const auto first = nativePath (a), second = nativePath (b);
    return first.has_value() && second.has_value() && haveEqualText (first->root_name(), second->root_name());
}

bool isDirectChild (const std::filesystem::path& parent, const juce::File& child)
{
    const auto name = child.getFileName();

    // Such a step names no child, though its parent as text is the parent.
    if (name == "." || name == "..")
        return false;

    std::filesystem::path childsParent;
    return canonicalPath (child.getParentDirectory(), childsParent) && haveEqualText (parent, childsParent);
}

bool hasControlCharacter (const juce::String& text)
{
    for (auto position = text.getCharPointer(); ! position.isEmpty();)
        if (const auto c = position.getAndAdvance(); c < 32 || c == 127)
            return true;

    return false;
}

bool endsInDotOrSpace (const juce::String& text)
{
    return text.endsWithChar ('.') || text.endsWithChar (' ');
}

bool isDotStep (const juce::String& text)
{
    return text == "." || text == "..";
}

bool isSafeStep (const juce::String& step)
{
    return step.isNotEmpty() && ! isDotStep (step) && ! endsInDotOrSpace (step) && ! hasControlCharacter (step);
}

bool isAsciiLetterOrDigit (juce::juce_wchar c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isHexadecimalDigit (char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
}

//==============================================================================
bool canonicalPath (const juce::File& file, std::filesystem::path& canonical)
{
    try
    {
        const auto path = nativePath (file);

        if (! path.has_value())
            return false;

        std::error_code error;
        auto result = std::filesystem::weakly_canonical (*path, error);

        if (error || result.empty())
            return false;

        // "x/.." of something that does not exist is normalised to a path with a separator, and so an empty step, at its end.
        if (! result.has_filename() && result.has_relative_path())
            result = result.parent_path();

        canonical = std::move (result);
        return true;
    }
    catch (...)
    {
        return false;    // the library may throw whatever its signature says, for want of memory for one
    }
}

bool isReparseOrSymlink (const juce::File& file)
{
    return platform::isLinkOrRedirection (file);
}

bool hasNoReparseAncestry (const juce::File& file)
{
    auto current = standsOnDisk (file) ? file : file.getParentDirectory();

    for (;;)
    {
        if (current == juce::File() || isReparseOrSymlink (current))
            return false;

        const auto parent = current.getParentDirectory();

        if (parent == current)
            return true;

        current = parent;
    }
}

bool isCanonicallyInside (const juce::File& parent, const juce::File& child, bool directChildOnly)
{
    try
    {
        std::filesystem::path parentPath, childPath;

        if (! haveTheSameVolume (parent, child) || ! canonicalPath (parent, parentPath))
            return false;

        if (directChildOnly)
            return isDirectChild (parentPath, child);

        return canonicalPath (child, childPath) && isBelow (parentPath, childPath);
    }
    catch (...)
    {
        return false;
    }
}

bool isTrustedPathUnder (const juce::File& root, const juce::File& child, bool directChildOnly)
{
    return root.isDirectory()
        && hasNoReparseAncestry (root)
        && isCanonicallyInside (root, child, directChildOnly)
        && hasNoReparseAncestry (child);
}

//==============================================================================
bool isHttpsUrl (const juce::String& text)
{
    return isHttpsAddress (text);
}

bool isValidSha256 (const juce::String& text)
{
    const auto trimmed = text.trim();
    const std::string_view digits (trimmed.toRawUTF8());
    return digits.size() == 64 && std::all_of (digits.begin(), digits.end(), isHexadecimalDigit);
}

bool isValidDownloadSource (const juce::String& url, const juce::String& sha256, juce::int64 sizeBytes)
{
    return isHttpsUrl (url) && isValidSha256 (sha256) && sizeBytes >= 1;
}

//==============================================================================
bool isSafeRelativePath (const juce::String& text)
{
    auto path = text.trim();

    if (path.isEmpty() || path.length() > maximumRelativePathLength || path.startsWithChar ('/')
         || path.containsAnyOf ("\\:") || path.contains ("//"))
        return false;

    if (path.endsWithChar ('/'))
        path = path.dropLastCharacters (1);

    for (const auto& step : juce::StringArray::fromTokens (path, "/", {}))
        if (! isSafeStep (step))
            return false;

    return path.isNotEmpty();
}

bool isSafeRelativeFilePath (const juce::String& text)
{
    return isSafeRelativePath (text) && ! text.trim().endsWithChar ('/');
}

bool isSafeFileName (const juce::String& text)
{
    return text.length() <= maximumFileNameLength
        && isSafeStep (text)
        && ! text.containsAnyOf ("/\\:")
        && ! isReservedDeviceName (text);
}

bool isSafeIdentity (const juce::String& text)
{
    if (text.isEmpty() || text.length() > maximumIdentityLength || text.contains ("..")
         || ! isAsciiLetterOrDigit (text[0]) || ! isAsciiLetterOrDigit (text.getLastCharacter()))
        return false;

    for (auto position = text.getCharPointer(); ! position.isEmpty();)
    {
        const auto c = position.getAndAdvance();

        if (! isAsciiLetterOrDigit (c) && c != '-' && c != '.' && c != '_')
            return false;
    }

    return ! isReservedDeviceName (text);
}

bool isReservedDeviceName (const juce::String& text)
{
    const auto stem = text.upToFirstOccurrenceOf (".", false, false);
    const int length = stem.length();

    if (length != 3 && length != 4)
        return false;

    const auto name = platform::foldCase (stem);

    if (length == 3)
        return name == "con" || name == "prn" || name == "aux" || name == "nul";

    return (name.startsWith ("com") || name.startsWith ("lpt")) && name[3] >= '1' && name[3] <= '9';
}

bool hasReservedDeviceStep (const juce::String& relativePath)
{
    for (const auto& step : juce::StringArray::fromTokens (relativePath, "/", {}))
        if (isReservedDeviceName (step))
            return true;

    return false;
}
}
