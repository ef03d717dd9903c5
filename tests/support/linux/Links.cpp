#include "support/Links.h"

#include <filesystem>

namespace zorva::test
{
namespace
{
namespace fs = std::filesystem;

fs::path pathOf (const juce::File& file)    { return { file.getFullPathName().toStdString() }; }
}

juce::String makeLink (const juce::File& at, const juce::String& destination)
{
    std::error_code error;
    fs::create_symlink (destination.toStdString(), pathOf (at), error);
    return error ? juce::String (error.message()) : juce::String();
}

std::optional<juce::String> linkText (const juce::File& at)
{
    std::error_code error;
    const auto text = fs::read_symlink (pathOf (at), error);
    return error ? std::nullopt : std::optional<juce::String> (juce::String::fromUTF8 (text.c_str()));
}

bool isThere (const juce::File& file)
{
    std::error_code error;
    return fs::symlink_status (pathOf (file), error).type() != fs::file_type::not_found;
}
}
