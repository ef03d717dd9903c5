#include "FuzzHome.h"

#include "catalogue/ManifestParser.h"

/** Whatever arrives, the parser and the checker agree on whether the document is usable. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const auto text = fuzz::textOf (data, size);
    const auto products = parseManifest (text);
    const auto problems = checkManifest (text);
    const bool fatal = ! problems.empty() && problems.back().fatal;

    if (fatal && ! products.empty())
        std::abort();

    return 0;
}
