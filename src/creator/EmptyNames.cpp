#include "creator/EmptyNames.h"

#include "support/JsonScan.h"

#include <cstring>
#include <string>

namespace EmptyNames
{
using namespace JsonScan;

namespace
{
/** The next sign from here on that tells names from values. */
const char* toSign (const char* position)
{
    return position + std::strcspn (position, "\"'[]{},:");
}
}

std::vector<const char*> find (const char* json)
{
    std::vector<const char*> names;
    std::string open;
    char before = 0;

    for (auto position = toSign (json); *position != 0; position = toSign (position))
    {
        const char sign = *position;

        if (isQuote (sign))
        {
            const bool isName = ! open.empty() && open.back() == '{' && (before == '{' || before == ',');

            if (isName && sign == '"' && position[1] == '"')
                names.push_back (position);

            position = afterString (position);
        }
        else
        {
            ++position;
        }

        if (isOpeningBracket (sign))
            open += sign;
        else if (isClosingBracket (sign) && ! open.empty())
            open.pop_back();

        if (isClosingBracket (sign) && open.empty())
            break;

        before = sign;
    }

    return names;
}
}
