#pragma once

#include <juce_gui_basics/juce_gui_basics.h>
#include <memory>
#include <optional>
#include <vector>

namespace PictureLoader { class User; }

/** A picture that is compiled in, shown scaled. A worker decodes it and scales it to the very pixels of its place, so that neither
    start nor painting waits for it; until it comes, nothing is drawn, or what there is of another size. Only what is shown is kept,
    never the whole picture. Message thread. */
class AssetPicture
{
public:
    /** A name that is not compiled in, or a picture that cannot be decoded, is never drawn. The owner is what draws it, and is
        repainted when it comes. */
    AssetPicture (juce::Component& owner, juce::String resourceName);
    ~AssetPicture();

    /** Draws the whole picture centred in the box, never larger than it is. */
    void drawWhole (juce::Graphics& g, juce::Rectangle<int> box);

    /** Fills the box without distortion; where the picture is wider than the box, it is cut around focus, a fraction of its
        width. */
    void drawCover (juce::Graphics& g, juce::Rectangle<int> box, float focus);

    /** True while a worker is busy for any picture: for tests and for measuring. Any thread. */
    static bool isAnyLoading();

    /** The memory of all that is kept of all pictures, in bytes: for tests and for measuring. Message thread. */
    static size_t bytesHeld();

    /** How a picture is to be made ready. */
    struct Request
    {
        bool covers = false;                ///< else whole
        int width = 0, height = 0;          ///< of the box, in logical pixels
        float focus = 0.5f;
        float pixelsPerUnit = 1.0f;

        bool operator== (const Request& other) const
        {
            return covers == other.covers && width == other.width && height == other.height && juce::exactlyEqual (focus, other.focus)
                && juce::exactlyEqual (pixelsPerUnit, other.pixelsPerUnit);
        }
    };

private:
    struct Copy
    {
        Request request;
        juce::Image image;
    };

    void draw (juce::Graphics& g, juce::Rectangle<int> box, const Request& request);
    void ask (const Request& request);
    void take (const Request& request, const juce::Image& image);

    juce::Component& owner;
    const juce::String resourceName;
    std::vector<Copy> copies;                   ///< the oldest first
    std::optional<Request> pending;
    bool failed = false;
    std::unique_ptr<PictureLoader::User> loaderUser;

    JUCE_DECLARE_WEAK_REFERENCEABLE (AssetPicture)
    JUCE_DECLARE_NON_COPYABLE (AssetPicture)
};
