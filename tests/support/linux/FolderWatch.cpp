#include "support/FolderWatch.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace zorva::test
{
struct FolderWatch::Pimpl
{
    explicit Pimpl (const juce::File& folder) : handle (::inotify_init1 (IN_NONBLOCK | IN_CLOEXEC))
    {
        constexpr uint32_t mask = IN_CREATE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM | IN_CLOSE_NOWRITE | IN_ONLYDIR;

        if (handle < 0 || ::inotify_add_watch (handle, folder.getFullPathName().toRawUTF8(), mask) < 0)
            ADD_FAILURE() << "Could not watch " << folder.getFullPathName() << ": " << std::strerror (errno);
    }

    ~Pimpl()
    {
        if (handle >= 0)
            ::close (handle);
    }

    const int handle;
};

FolderWatch::FolderWatch (const juce::File& folder) : pimpl (std::make_unique<Pimpl> (folder)) {}
FolderWatch::~FolderWatch() = default;

const std::vector<std::string>& FolderWatch::events()
{
    alignas (inotify_event) char buffer[65536];

    for (;;)
    {
        const auto size = ::read (pimpl->handle, buffer, sizeof (buffer));

        if (size <= 0)
            return collected;

        for (const char* at = buffer; at < buffer + size;)
        {
            inotify_event event;
            std::memcpy (&event, at, sizeof (event));
            const auto name = event.len > 0 ? std::string (at + sizeof (event)) : std::string();

            if ((event.mask & IN_Q_OVERFLOW) != 0)
                ADD_FAILURE() << "The watch lost events.";
            else if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0)
                collected.push_back ("appeared " + name);
            else if ((event.mask & (IN_DELETE | IN_MOVED_FROM)) != 0)
                collected.push_back ("vanished " + name);
            else if ((event.mask & IN_CLOSE_NOWRITE) != 0)
                collected.push_back ("read " + name);

            at += sizeof (event) + event.len;
        }
    }
}

int FolderWatch::count (const std::string& event)
{
    const auto& all = events();
    return (int) std::count (all.begin(), all.end(), event);
}
}
