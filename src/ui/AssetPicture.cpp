#include "ui/AssetPicture.h"

#include "ui/PictureLoader.h"

#include <algorithm>

/** As many sizes as the Hub shows of one picture at once. */
static constexpr size_t maximumCopies = 2;

static size_t bytesOfAll = 0;

static size_t bytesOf (const juce::Image& image)
{
    const juce::Image::BitmapData data (image, juce::Image::BitmapData::readOnly);
    return data.size;
}

AssetPicture::AssetPicture (juce::Component& picturesOwner, juce::String name)
    : owner (picturesOwner), resourceName (std::move (name)), loaderUser (std::make_unique<PictureLoader::User>())
{
}

AssetPicture::~AssetPicture()
{
    masterReference.clear();

    for (const auto& copy : copies)
        bytesOfAll -= bytesOf (copy.image);
}

size_t AssetPicture::bytesHeld()
{
    return bytesOfAll;
}

bool AssetPicture::isAnyLoading()
{
    return PictureLoader::isBusy();
}

void AssetPicture::drawWhole (juce::Graphics& g, juce::Rectangle<int> box)
{
    draw (g, box, { .covers = false, .width = box.getWidth(), .height = box.getHeight() });
}

void AssetPicture::drawCover (juce::Graphics& g, juce::Rectangle<int> box, float focus)
{
    draw (g, box, { .covers = true, .width = box.getWidth(), .height = box.getHeight(), .focus = focus });
}

void AssetPicture::draw (juce::Graphics& g, juce::Rectangle<int> box, const Request& wanted)
{
    if (failed || box.isEmpty())
        return;

    auto request = wanted;
    request.pixelsPerUnit = g.getInternalContext().getPhysicalPixelScaleFactor();

    const auto found = std::find_if (copies.begin(), copies.end(), [&request] (const Copy& copy) { return copy.request == request; });

    if (found == copies.end())
    {
        ask (request);

        if (copies.empty())
            return;
    }

    const auto& image = found != copies.end() ? found->image : copies.back().image;
    const auto scale = request.pixelsPerUnit;
    g.setOpacity (1.0f);

    if (found == copies.end())      // for the moment until the right one is there
    {
        g.drawImage (image, box.toFloat(), request.covers ? juce::RectanglePlacement::fillDestination
                                                           : juce::RectanglePlacement::centred);
        return;
    }

    // On whole pixels, so that the copy is copied and not filtered once more.
    const auto middle = box.toFloat().getCentre() * scale;
    const juce::Point<int> corner (juce::roundToInt (middle.x - (float) image.getWidth() * 0.5f),
                                   juce::roundToInt (middle.y - (float) image.getHeight() * 0.5f));
    g.drawImageTransformed (image, juce::AffineTransform::translation (corner.toFloat()).scaled (1.0f / scale));
}

void AssetPicture::ask (const Request& request)
{
    if (pending.has_value())
        return;     // what comes repaints the owner, and that asks again if it is not the right one

    pending = request;
    const auto onReady = [safeThis = juce::WeakReference<AssetPicture> (this), request] (const juce::Image& image)
    {
        if (auto* picture = safeThis.get())
            picture->take (request, image);
    };

    if (! PictureLoader::load (resourceName, request, onReady))
        pending.reset();    // the next painting tries again
}

void AssetPicture::take (const Request& request, const juce::Image& image)
{
    pending.reset();
    failed = ! image.isValid();

    if (failed)
        return;

    if (copies.size() >= maximumCopies)
    {
        bytesOfAll -= bytesOf (copies.front().image);
        copies.erase (copies.begin());
    }

    bytesOfAll += bytesOf (image);
    copies.push_back ({ request, image });
    owner.repaint();
}
