#pragma once

#include <filesystem>
#include <juce_core/juce_core.h>

/** Decides whether a path, a file name, a product identity or a download address may be used.

    The catalogue comes from the network and the records can be edited by anyone who can write the user's files, so nothing from
    outside reaches the file system before it has passed these checks. A doubtful path is refused, never repaired.

    All are free functions without state or locks; they answer false and never throw; any thread may call them. A check and the
    use that follows are not one step, so whoever replaces something checks again immediately before acting. */
namespace PathTrust
{
/** Computes the weakly canonical form: what exists is resolved through the file system, the rest is normalised. True only if no
    error was reported and the path is not empty; the output is untouched otherwise. */
bool canonicalPath (const juce::File& file, std::filesystem::path& canonical);

/** The file exists and is a symbolic link, or redirects in another way (junction, mount point). A dangling link exists. */
bool isReparseOrSymlink (const juce::File& file);

/** Neither the file nor any existing ancestor, up to the root, is a link or another redirection. */
bool hasNoReparseAncestry (const juce::File& file);

/** Where child really leads lies inside parent, compared component by component without regard to case. The parent is not
    inside itself. With directChildOnly the child's parent directory must be the parent. A child on another volume or network share
    is refused by its text, before anything is looked up. */
bool isCanonicallyInside (const juce::File& parent, const juce::File& child, bool directChildOnly);

/** root is a directory without redirections in its ancestry, child lies inside it, and child's ancestry has no redirection
    either. */
bool isTrustedPathUnder (const juce::File& root, const juce::File& child, bool directChildOnly);

/** An https address with a host. Surrounding blanks and the case of the scheme don't matter. */
bool isHttpsUrl (const juce::String& text);

/** After trimming, exactly 64 hexadecimal digits of either case. */
bool isValidSha256 (const juce::String& text);

/** An https address, a SHA-256 and a size of at least one byte. */
bool isValidDownloadSource (const juce::String& url, const juce::String& sha256, juce::int64 sizeBytes);

/** A relative path with "/" between its steps, at most 1024 characters after trimming, each step an ordinary name; one trailing
    "/" is allowed. Device names are not tested here. */
bool isSafeRelativePath (const juce::String& text);

/** As isSafeRelativePath, and not written as a directory. */
bool isSafeRelativeFilePath (const juce::String& text);

/** A plain file name of 1 to 255 characters that every file system takes. Not trimmed. */
bool isSafeFileName (const juce::String& text);

/** A product identity: 1 to 64 ASCII letters, digits, "-", "." or "_", beginning and ending with a letter or digit, without
    "..", and no device name. Not trimmed. */
bool isSafeIdentity (const juce::String& text);

/** The text before its first "." is a device name of Windows, such as "nul" or "COM7". */
bool isReservedDeviceName (const juce::String& text);

/** True when a step of the relative path, split at "/", is a reserved device name. */
bool hasReservedDeviceStep (const juce::String& relativePath);
}
