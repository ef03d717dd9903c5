#include "support/HttpsAddress.h"

#include <algorithm>
#include <string_view>

namespace
{
// The framework's URL class takes quadratic time for a long scheme or a query of many parts, and these texts are not ours.
constexpr std::string_view prefix ("https://");
constexpr int prefixLength = (int) prefix.size();

bool hasHttpsPrefix (std::string_view address)
{
    return address.size() >= prefix.size()
        && std::equal (prefix.begin(), prefix.end(), address.begin(),
                       [] (char wanted, char c) { return wanted == (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); });
}

bool hasScheme (const juce::String& reference)
{
    const auto colon = reference.indexOfChar (':'), otherDelimiter = reference.indexOfAnyOf ("/?#");
    return colon > 0 && (otherDelimiter < 0 || colon < otherDelimiter);
}

juce::String upTo (const juce::String& text, int index)
{
    return index < 0 ? text : text.substring (0, index);
}
}

bool isHttpsAddress (const juce::String& text)
{
    const auto trimmed = text.trim();
    const std::string_view address (trimmed.toRawUTF8());

    if (! hasHttpsPrefix (address))
        return false;

    const auto rest = address.substr (prefix.size());
    const auto authority = rest.substr (0, rest.find_first_of ("/?#"));
    const auto host = authority.substr (authority.rfind ('@') + 1);    // after any user name
    return ! host.empty() && host.front() != ':';
}

juce::String redirectTarget (const juce::String& address, const juce::String& location)
{
    const auto reference = location.trim();

    if (hasScheme (reference))
        return reference;

    if (reference.startsWith ("//"))
        return "https:" + reference;

    const auto resource = upTo (address, address.indexOfAnyOf ("?#"));
    const auto origin = upTo (resource, resource.indexOfChar (prefixLength, '/'));

    if (reference.startsWithChar ('/'))
        return origin + reference;

    if (reference.startsWithChar ('?'))
        return resource + reference;

    if (reference.isEmpty() || reference.startsWithChar ('#'))
        return upTo (address, address.indexOfChar ('#')) + reference;

    return (origin == resource ? origin + "/" : resource.upToLastOccurrenceOf ("/", true, false)) + reference;
}
