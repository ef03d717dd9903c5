#include "support/Files.h"

#include "support/NativePath.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace zorva::test
{
namespace
{
namespace fs = std::filesystem;

fs::path pathOf (const juce::File& file)    { return nativePath (file).value_or (fs::path()); }

std::string textOf (const fs::path& path)
{
    const auto text = path.generic_u8string();
    return { text.begin(), text.end() };
}
}

juce::File freshFolder (const juce::String& name)
{
    const juce::File folder (juce::String::fromUTF8 (std::getenv ("HOME")) + "/" + name);
    std::error_code error;
    fs::remove_all (pathOf (folder), error);
    EXPECT_TRUE (fs::create_directories (pathOf (folder), error)) << folder.getFullPathName();
    return folder;
}

juce::File in (const juce::File& folder, const juce::String& relativePath)
{
    return juce::File (folder.getFullPathName() + "/" + relativePath);
}

juce::File write (const juce::File& file, const juce::String& content)
{
    return writeBytes (file, content.toStdString());
}

juce::File writeBytes (const juce::File& file, const std::string& bytes)
{
    std::error_code error;
    fs::create_directories (pathOf (file).parent_path(), error);
    std::ofstream stream (pathOf (file), std::ios::binary | std::ios::trunc);
    stream.write (bytes.data(), (std::streamsize) bytes.size());
    stream.close();
    EXPECT_TRUE (stream.good()) << "Could not write " << file.getFullPathName();
    return file;
}

std::string read (const juce::File& file)
{
    std::ifstream stream (pathOf (file), std::ios::binary);

    if (! stream.is_open())
        return "(absent)";

    return { std::istreambuf_iterator<char> (stream), std::istreambuf_iterator<char>() };
}

juce::File link (const juce::File& at, const juce::String& destination)
{
    std::error_code error;
    fs::create_directories (pathOf (at).parent_path(), error);
    EXPECT_EQ (makeLink (at, destination), "") << at.getFullPathName();
    return at;
}

Tree treeOf (const juce::File& folder)
{
    Tree tree;
    std::error_code error;

    for (fs::recursive_directory_iterator entry (pathOf (folder), error), end; entry != end; entry.increment (error))
    {
        const auto name = textOf (entry->path().lexically_relative (pathOf (folder)));
        const juce::File file (folder.getFullPathName() + "/" + juce::String::fromUTF8 (name.c_str()));

        if (const auto destination = linkText (file))
        {
            tree[name] = "link: " + destination->toStdString();
            entry.disable_recursion_pending();
        }
        else if (entry->is_directory (error))
        {
            tree[name] = "folder";
        }
        else
        {
            tree[name] = "file: " + read (file);
        }
    }

    EXPECT_FALSE (error) << "Could not list " << folder.getFullPathName() << ": " << error.message();
    return tree;
}
}
