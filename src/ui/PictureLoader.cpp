#include "ui/PictureLoader.h"

#include "support/Worker.h"
#include "ui/PictureScaling.h"

#include <BinaryData.h>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace
{
struct Job
{
    juce::String resourceName;
    AssetPicture::Request request;
    std::function<void (const juce::Image&)> callback;
};

struct Queue
{
    std::mutex lock;
    std::condition_variable ended;
    std::deque<Job> jobs;
    bool isRunning = false;
    int numUsers = 0;
};

Queue& queue()
{
    static auto* const theQueue = new Queue;    // never destroyed: a worker may outlive the program's end
    return *theQueue;
}

juce::Image decode (const juce::String& resourceName)
{
    int size = 0;
    const auto* data = BinaryData::getNamedResource (resourceName.toRawUTF8(), size);
    return data != nullptr ? juce::ImageFileFormat::loadFrom (data, (size_t) size) : juce::Image();
}

juce::Image makeReady (const Job& job)
{
    const auto picture = decode (job.resourceName);

    if (! picture.isValid())
        return {};

    const auto& request = job.request;
    const auto whole = picture.getBounds().toFloat();
    const auto width = (float) request.width, height = (float) request.height;
    const auto toPixels = [&request] (float length) { return juce::jmax (1, juce::roundToInt (length * request.pixelsPerUnit)); };

    if (! request.covers)
    {
        const auto size = wholeSize (whole, width, height);
        return scaledTo (picture, toPixels (size.getWidth()), toPixels (size.getHeight()));
    }

    const auto part = coveringPart (whole, width, height, request.focus).toNearestInt().getIntersection (picture.getBounds());
    return scaledTo (picture.getClippedImage (part).createCopy(), toPixels (width), toPixels (height));
}

/** The next job, or none, and then the worker counts as ended. */
std::optional<Job> nextJob()
{
    const std::scoped_lock guard (queue().lock);

    if (queue().jobs.empty())
    {
        queue().isRunning = false;
        queue().ended.notify_all();
        return {};
    }

    auto job = std::move (queue().jobs.front());
    queue().jobs.pop_front();
    return job;
}

void workOff()
{
    while (auto job = nextJob())
        juce::MessageManager::callAsync ([callback = std::move (job->callback), image = makeReady (*job)] { callback (image); });
}
}

PictureLoader::User::User()
{
    const std::scoped_lock guard (queue().lock);
    ++queue().numUsers;
}

PictureLoader::User::~User()
{
    std::deque<Job> dropped;    // released without the lock
    std::unique_lock guard (queue().lock);

    if (--queue().numUsers > 0)
        return;

    dropped.swap (queue().jobs);
    queue().ended.wait (guard, [] { return ! queue().isRunning; });
}

bool PictureLoader::load (const juce::String& resourceName, const AssetPicture::Request& request,
                          std::function<void (const juce::Image&)> callback)
{
    {
        const std::scoped_lock guard (queue().lock);
        queue().jobs.push_back ({ resourceName, request, std::move (callback) });

        if (queue().isRunning)
            return true;

        queue().isRunning = true;
    }

    if (launchWorker (workOff))
        return true;

    const std::scoped_lock guard (queue().lock);
    queue().isRunning = false;
    queue().jobs.clear();       // this one alone: only a worker leaves none behind
    return false;
}

bool PictureLoader::isBusy()
{
    const std::scoped_lock guard (queue().lock);
    return queue().isRunning;
}
