#pragma once

#include <juce_core/juce_core.h>

/** Judging and resolving https addresses (RFC 3986). Pure functions, any thread, in time proportional to the text. */
/** An https address with a host. Surrounding blanks and the case of the scheme don't matter. */
bool isHttpsAddress (const juce::String& text);

/** Where a redirect leads: the Location header of the answer to a request for an address, as an absolute address. Not judged:
    a header that names another scheme gives an address of that scheme. */
juce::String redirectTarget (const juce::String& address, const juce::String& location);
