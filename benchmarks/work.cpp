#include "install/ArchiveExtractor.h"
#include "support/FileHash.h"
#include "vault/HttpsDownloadTask.h"

#include <iostream>
#include <sys/resource.h>

// work verify FILE | download URL TARGET SIZE | extract ARCHIVE FOLDER: does one piece of the Hub's work and prints its peak memory in
// KiB. Timed from outside, process start included, as its peer is.

namespace
{
class Waiter final : public juce::URL::DownloadTaskListener
{
public:
    void finished (juce::URL::DownloadTask*, bool succeeded) override
    {
        success = succeeded;
        done.signal();
    }

    juce::WaitableEvent done;
    bool success = false;
};

bool verify (const juce::String& file)
{
    const auto digest = sha256OfFile (juce::File (file));
    std::cout << digest << "\n";
    return digest.isNotEmpty();
}

bool download (const juce::String& address, const juce::String& target, juce::int64 size)
{
    Waiter waiter;
    const auto task = HttpsDownloadTask::start (address, juce::File (target), size, waiter);

    if (task == nullptr)
        return false;

    waiter.done.wait (-1);
    return waiter.success && juce::File (target).getSize() == size;
}

bool extract (const juce::String& archive, const juce::String& folder)
{
    ZipArchive zip (juce::File (archive).createInputStream());
    return ! zip.getEntries().empty() && ArchiveExtractor::extractAll (zip, juce::File (folder)).wasOk();
}
}

int main (int argc, char** argv)
{
    const juce::StringArray arguments (argv + 1, argc - 1);
    bool ok = false;

    if (arguments.size() == 2 && arguments[0] == "verify")
        ok = verify (arguments[1]);
    else if (arguments.size() == 4 && arguments[0] == "download")
        ok = download (arguments[1], arguments[2], arguments[3].getLargeIntValue());
    else if (arguments.size() == 3 && arguments[0] == "extract")
        ok = extract (arguments[1], arguments[2]);

    rusage usage {};
    ::getrusage (RUSAGE_SELF, &usage);
    std::cout << "peak " << usage.ru_maxrss << "\n";
    return ok ? 0 : 1;
}
