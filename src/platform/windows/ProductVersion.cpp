#include "platform/ProductVersion.h"

#include "platform/windows/WindowsHeaders.h"

#include <vector>

namespace platform
{
juce::String productVersionOf (const juce::File& program)
{
    constexpr DWORD fixedBlockSignature = 0xFEEF04BD;
    constexpr DWORD largestResource = 0x100000;     // one says its own length in 16 bits; the system adds room of its own

    const auto path = program.getFullPathName();
    const auto size = ::GetFileVersionInfoSizeW (path.toWideCharPointer(), nullptr);

    if (size == 0 || size > largestResource)
        return {};

    std::vector<juce::uint8> resource (size);
    void* block = nullptr;
    UINT blockSize = 0;

    if (! ::GetFileVersionInfoW (path.toWideCharPointer(), 0, size, resource.data())
         || ! ::VerQueryValueW (resource.data(), L"\\", &block, &blockSize)
         || block == nullptr || blockSize < sizeof (VS_FIXEDFILEINFO))
        return {};

    const auto& info = *static_cast<const VS_FIXEDFILEINFO*> (block);

    if (info.dwSignature != fixedBlockSignature)
        return {};

    return juce::String ((int) HIWORD (info.dwProductVersionMS)) + "." + juce::String ((int) LOWORD (info.dwProductVersionMS)) + "."
         + juce::String ((int) HIWORD (info.dwProductVersionLS));
}
}
