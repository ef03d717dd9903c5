#include "Host.h"
#include "support/Links.h"

#include "platform/windows/WindowsHeaders.h"

namespace zorva::test
{
namespace
{
DWORD attributesOf (const juce::File& file)    { return ::GetFileAttributesW (file.getFullPathName().toWideCharPointer()); }
}

juce::String makeLink (const juce::File& at, const juce::String& destination)
{
    if (const auto answer = askHost ({ "link", at.getFullPathName(), destination }))
        return *answer;

    const auto target = juce::File::isAbsolutePath (destination) ? juce::File (destination) : at.getParentDirectory().getChildFile (destination);
    const auto kind = target.isDirectory() ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;

    if (::CreateSymbolicLinkW (at.getFullPathName().toWideCharPointer(), destination.toWideCharPointer(),
                               (DWORD) (kind | SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE)))
        return {};

    return "error " + juce::String (::GetLastError()) + "; links need the developer mode";
}

std::optional<juce::String> linkText (const juce::File& at)
{
    const auto attributes = attributesOf (at);
    const bool isLink = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return isLink ? std::optional<juce::String> ("(somewhere)") : std::nullopt;
}

bool isThere (const juce::File& file)    { return attributesOf (file) != INVALID_FILE_ATTRIBUTES; }
}
