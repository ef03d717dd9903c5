#pragma once

#include "catalogue/Product.h"

/** What the parts of a product in a manifest must be. Each function answers with the first broken rule, in the order in which the
    format tests them, as one sentence; null when none is broken. Pure, any thread. */
/** The "content" texts of a sound pack, trimmed, and the product's id. */
const char* brokenContentRule (const Product& soundPack);

/** A release note, trimmed. */
const char* brokenNoteRule (const ReleaseNote& note);

/** One entry of "platforms". */
const char* brokenPlatformRule (const ProductPlatform& platform);
