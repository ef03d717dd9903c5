#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// A program for tests to install and start: it makes an empty file of the path that stands at its own end, behind which stands the
// path's size in four bytes.
int wmain (int, wchar_t** arguments)
{
    std::ifstream self (std::filesystem::path (arguments[0]), std::ios::binary);
    const std::string bytes { std::istreambuf_iterator<char> (self), {} };
    std::uint32_t size = 0;

    if (bytes.size() < sizeof (size))
        return 1;

    const auto end = bytes.size() - sizeof (size);
    bytes.copy (reinterpret_cast<char*> (&size), sizeof (size), end);

    if (size > end)
        return 1;

    const std::u8string path (bytes.begin() + (std::ptrdiff_t) (end - size), bytes.begin() + (std::ptrdiff_t) end);
    return std::ofstream (std::filesystem::path (path)).good() ? 0 : 1;
}
