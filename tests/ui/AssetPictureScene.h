#pragma once

#include "PaintRecorder.h"

namespace zorva::test
{
inline constexpr const char* wideName = "zorvadawstagewellhubbannerv1_jpg";     // 1600 x 720
inline constexpr const char* squareName = "zorvasynthspack_png";

/** Shows one picture, and nothing else. */
class PictureOwner final : public juce::Component
{
public:
    explicit PictureOwner (const char* name) : picture (*this, name)
    {
        setSize (400, 300);
        setVisible (true);      // what is hidden is not repainted
    }

    void paint (juce::Graphics& g) override
    {
        if (covers)
            picture.drawCover (g, box, focus);
        else
            picture.drawWhole (g, box);
    }

    juce::Rectangle<int> box { 20, 10, 320, 144 };
    bool covers = false;
    float focus = 0.5f;

private:
    AssetPicture picture;
};

/** Paints it and looks at nothing. */
inline void ask (PictureOwner& owner)
{
    recordOf (owner);
}

/** Owners of so many large pictures, each of them painted once, that the worker is busy for a good while. */
inline std::vector<std::unique_ptr<PictureOwner>> askForMany()
{
    std::vector<std::unique_ptr<PictureOwner>> owners;

    for (const auto* name : { wideName, squareName, "drums_bg_png", "electronic_drums_bg_png", "bass_bg_png", "keys_bg_png", "guitar_bg_png",
                              "synth_bg_png", "sound_designer_bg_png", "zorva_community_hero_people_v1_png" })
    {
        owners.push_back (std::make_unique<PictureOwner> (name));
        ask (*owners.back());
    }

    return owners;
}

inline bool isBlank (PictureOwner& owner)
{
    const auto picture = pictureOn (juce::Colours::transparentBlack, owner);
    return pixelsOf (picture, juce::Colours::transparentBlack, picture.getBounds()) == picture.getWidth() * picture.getHeight();
}

inline void load (PictureOwner& owner)
{
    isBlank (owner);
    waitForPictures();
}

/** Waits for the worker with the message loop standing still; false on time-out. */
inline bool waitWithoutMessages()
{
    for (int i = 0; i < 30000; ++i)
    {
        if (! AssetPicture::isAnyLoading())
            return true;

        juce::Thread::sleep (1);
    }

    return false;
}

/** The picture that is drawn now; without one the image is invalid. */
inline DrawnImage drawnBy (PictureOwner& owner, float scale = 1.0f)
{
    const auto record = recordOf (owner, scale);
    EXPECT_LE (record.images.size(), (size_t) 1);
    return record.images.empty() ? DrawnImage() : record.images[0];
}

/** The memory of a copy of this size of a picture without transparency. */
inline size_t bytesOfCopy (int width, int height)
{
    const juce::Image image (juce::Image::RGB, width, height, false);
    const juce::Image::BitmapData data (image, juce::Image::BitmapData::readOnly);
    return data.size;
}
}
