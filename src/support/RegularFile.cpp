#include "support/RegularFile.h"

#include "support/NativePath.h"

bool isRegularFile (const juce::File& file)
{
    const auto path = nativePath (file);
    std::error_code error;
    return path.has_value() && std::filesystem::is_regular_file (*path, error);
}
