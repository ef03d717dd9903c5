#pragma once

#include <vector>

/** Empty property names in JSON text (RFC 8259). The framework's parser refuses them, and reports each as a programming error when
    debugging, which text from outside must not be able to cause. */
namespace EmptyNames
{
/** The opening quote of every empty name in the text's first array or object, which is all that the parser reads, whether or not a
    colon follows. The text ends with a zero. Pure; any thread. */
std::vector<const char*> find (const char* json);
}
