#ifndef UNICODE
 #define UNICODE
#endif

#include <windows.h>

#include <shellapi.h>
#include <string>
#include <vector>

// A program for tests to start: it writes down how it was started, into a file beside it that has its name and ".report" behind it, and
// that appears when it is whole. The lines, in UTF-8: its working folder, then each of its arguments, the program itself first.
namespace
{
std::wstring ownPath()
{
    std::vector<wchar_t> path (32768);
    return { path.data(), ::GetModuleFileNameW (nullptr, path.data(), (DWORD) path.size()) };
}

std::wstring workingFolder()
{
    std::vector<wchar_t> path (32768);
    return { path.data(), ::GetCurrentDirectoryW ((DWORD) path.size(), path.data()) };
}

std::wstring report()
{
    int count = 0;
    auto** const arguments = ::CommandLineToArgvW (::GetCommandLineW(), &count);
    auto text = workingFolder() + L"\n";

    for (int i = 0; i < count; ++i)
        text += arguments[i] + std::wstring (L"\n");

    ::LocalFree (arguments);
    return text;
}

std::string utf8 (const std::wstring& text)
{
    std::string bytes (text.size() * 3, '\0');
    bytes.resize ((size_t) ::WideCharToMultiByte (CP_UTF8, 0, text.data(), (int) text.size(), bytes.data(), (int) bytes.size(), nullptr, nullptr));
    return bytes;
}

bool writeWhole (const std::wstring& path, const std::string& bytes)
{
    const auto part = path + L".part";
    const auto file = ::CreateFileW (part.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    const bool ok = file != INVALID_HANDLE_VALUE && ::WriteFile (file, bytes.data(), (DWORD) bytes.size(), &written, nullptr);
    ::CloseHandle (file);
    return ok && ::MoveFileExW (part.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
}
}

int WINAPI WinMain (HINSTANCE, HINSTANCE, LPSTR, int)
{
    return writeWhole (ownPath() + L".report", utf8 (report())) ? 0 : 1;
}
