#include "Models.h"
#include "Painting.h"
#include "support/GuiHarness.h"
#include "ui/FocusRing.h"
#include "ui/HubPalette.h"
#include "ui/PrimaryButton.h"
#include "ui/ProductActions.h"
#include "ui/ScaledPicture.h"
#include "ui/ScrollIntoView.h"
#include "ui/SpaceKey.h"

#include <gtest/gtest.h>

using namespace zorva::test;

//==============================================================================
namespace
{
/** A component with two buttons that shows the ring. */
struct Ringed final : juce::Component
{
    Ringed()
    {
        setSize (300, 200);
        addAndMakeVisible (first);
        addAndMakeVisible (second);
        first.setBounds (40, 40, 100, 30);
        second.setBounds (160, 100, 100, 30);
        ring.watch (first);
        ring.watch (second, -3);
    }

    void paint (juce::Graphics& g) override                { g.fillAll (HubPalette::panel); }
    void paintOverChildren (juce::Graphics& g) override    { ring.paint (g); }

    juce::TextButton first, second;
    FocusRing ring { *this };
};

juce::Image ringAround (juce::Rectangle<int> area)
{
    return painted (300, 200, [&] (juce::Graphics& g) { drawFocusRing (g, area); });
}

/** The pixels that have the ring's colour in both pictures, or in neither. */
std::string ringDifference (const juce::Image& actual, const juce::Image& expected)
{
    const auto onlyRing = [] (const juce::Image& image)
    {
        auto copy = juce::Image (juce::Image::ARGB, image.getWidth(), image.getHeight(), true);

        for (int y = 0; y < image.getHeight(); ++y)
            for (int x = 0; x < image.getWidth(); ++x)
                if (image.getPixelAt (x, y) == HubPalette::accent)
                    copy.setPixelAt (x, y, HubPalette::accent);

        return copy;
    };

    return difference (onlyRing (actual), onlyRing (expected));
}
}

TEST (FocusRing, StandsAroundTheFocusedChildAlone)
{
    HubLook look;
    Ringed component;
    HeadlessWindow window (component);
    juce::Component::unfocusAllComponents();
    EXPECT_EQ (pixelsOf (pictureOf (component), HubPalette::accent, component.getLocalBounds()), 0);

    component.first.grabKeyboardFocus();
    EXPECT_EQ (ringDifference (pictureOf (component), ringAround (component.first.getBounds().expanded (2))), "");

    component.second.grabKeyboardFocus();
    EXPECT_EQ (ringDifference (pictureOf (component), ringAround (component.second.getBounds().reduced (3))), "");
}

TEST (FocusRing, IsNotDrawnAroundWhatHasNoRoom)
{
    HubLook look;
    Ringed component;
    HeadlessWindow window (component);
    component.first.grabKeyboardFocus();

    for (const auto& [width, height] : { std::pair (100, 0), { 0, 30 }, { 0, 0 } })
    {
        component.first.setSize (width, height);
        EXPECT_EQ (pixelsOf (pictureOf (component), HubPalette::accent, component.getLocalBounds()), 0) << width << " x " << height;
    }
}

TEST (FocusRing, RepaintsWhatTheFocusLeavesAndWhereItComes)
{
    HubLook look;
    Ringed component;
    HeadlessWindow window (component);
    component.first.grabKeyboardFocus();
    pump();
    const RepaintWatch repaints (component);
    component.second.grabKeyboardFocus();
    pump();

    juce::RectangleList<int> area;
    for (const auto& repainted : repaints.areas())
        area.add (repainted);

    EXPECT_TRUE (area.containsRectangle (component.first.getBounds().expanded (3)));
    EXPECT_TRUE (area.containsRectangle (component.second.getBounds()));
}

TEST (FocusRing, IsARoundedLineTwoPixelsThickOnTheEdge)
{
    const auto image = ringAround ({ 20, 20, 100, 50 });

    for (const int y : { 19, 20 })
        EXPECT_EQ (pixel (image, 70, y), hex (HubPalette::accent)) << y;

    for (const int y : { 17, 22 })
        EXPECT_EQ (image.getPixelAt (70, y).getAlpha(), 0) << y;

    EXPECT_EQ (image.getPixelAt (19, 19).getAlpha(), 0) << "its corners are round";
}

//==============================================================================
TEST (ScaledPicture, HoldsNothingAtFirst)
{
    ScaledPicture picture;
    EXPECT_FALSE (picture.isValid());
    EXPECT_FALSE (picture.original().isValid());
    EXPECT_FALSE (ScaledPicture (juce::Image()).isValid());

    const auto image = painted (50, 50, [&] (juce::Graphics& g) { picture.draw (g, { 0, 0, 50, 50 }); });
    EXPECT_EQ (difference (image, painted (50, 50, [] (juce::Graphics&) {})), "");
}

TEST (ScaledPicture, DrawsASmallPictureAsItIs)
{
    ScaledPicture picture (someImage());   // 100 by 60
    const auto actual = painted (200, 100, [&] (juce::Graphics& g) { picture.draw (g, { 0, 0, 200, 100 }); });

    EXPECT_EQ (difference (actual, painted (200, 100, [] (juce::Graphics& g) { g.drawImageAt (someImage(), 50, 20); })), "");
}

TEST (ScaledPicture, ShrinksABigPictureIntoItsBoxAndKeepsItsShape)
{
    ScaledPicture picture (someImage());

    for (int repeat = 0; repeat < 2; ++repeat)   // the second time from its copy
    {
        const auto image = painted (80, 80, [&] (juce::Graphics& g) { picture.draw (g, { 10, 10, 50, 60 }); });
        EXPECT_EQ (pixelsOf (image, juce::Colour (0xff2060c0), { 12, 26, 46, 28 }), 46 * 28) << "50 by 30, centred";
        EXPECT_EQ (image.getPixelAt (35, 20).getAlpha(), 0);
        EXPECT_EQ (image.getPixelAt (35, 60).getAlpha(), 0);
    }
}

TEST (ScaledPicture, DrawsSharplyOnADenserScreen)
{
    juce::Image stripes (juce::Image::ARGB, 100, 60, true);

    for (int x = 0; x < 100; x += 2)
        for (int y = 0; y < 60; ++y)
            stripes.setPixelAt (x, y, juce::Colours::white);

    ScaledPicture picture (stripes);
    const auto image = painted (100, 60, [&] (juce::Graphics& g)
    {
        g.addTransform (juce::AffineTransform::scale (2.0f));
        picture.draw (g, { 0, 0, 50, 30 });   // exactly the picture's own pixels
    });

    EXPECT_EQ (difference (image, stripes), "");
}

TEST (ScaledPicture, DrawsNothingWithoutRoom)
{
    ScaledPicture picture (someImage());
    const auto image = painted (50, 50, [&] (juce::Graphics& g)
    {
        picture.draw (g, { 10, 10, 0, 30 });
        picture.draw (g, { 10, 10, 30, 0 });
        picture.draw (g, {});
    });

    EXPECT_EQ (pixelsOf (image, juce::Colour (0xff2060c0), image.getBounds()), 0);
}

TEST (ScaledPicture, KnowsItsPixels)
{
    const auto image = someImage();
    const ScaledPicture picture (image);

    EXPECT_TRUE (picture.shows (image));
    EXPECT_FALSE (picture.shows (image.createCopy()));
    EXPECT_FALSE (picture.shows ({}));
    EXPECT_EQ (picture.original().getBounds(), image.getBounds());
}

//==============================================================================
TEST (ScrollIntoView, ScrollsAsFarAsNeeded)
{
    juce::Viewport viewport;
    juce::Component content, child;
    viewport.setViewedComponent (&content, false);
    viewport.setSize (200, 100);
    content.setSize (190, 1000);
    content.addAndMakeVisible (child);

    child.setBounds (10, 300, 50, 40);
    scrollIntoView (child);
    EXPECT_EQ (viewport.getViewPositionY(), 240);

    child.setBounds (10, 260, 50, 40);
    scrollIntoView (child);
    EXPECT_EQ (viewport.getViewPositionY(), 240) << "it is seen already";

    child.setBounds (10, 20, 50, 40);
    scrollIntoView (child);
    EXPECT_EQ (viewport.getViewPositionY(), 20);

    child.setBounds (10, 500, 50, 300);
    scrollIntoView (child);
    EXPECT_EQ (viewport.getViewPositionY(), 500) << "its top wins";
}

TEST (ScrollIntoView, WithoutAViewportDoesNothing)
{
    juce::Component parent, child;
    parent.addAndMakeVisible (child);
    child.setBounds (10, 500, 10, 10);
    scrollIntoView (child);

    EXPECT_EQ (child.getPosition(), juce::Point<int> (10, 500));
}

//==============================================================================
TEST (SpaceKey, ClicksTheFocusedButton)
{
    juce::Component parent;
    juce::TextButton button, disabled;
    int clicks = 0;
    button.onClick = [&] { ++clicks; };
    disabled.onClick = [&] { ++clicks; };
    parent.setSize (200, 100);
    parent.addAndMakeVisible (button);
    button.setBounds (0, 0, 50, 30);
    HeadlessWindow window (parent);
    juce::Component::unfocusAllComponents();

    EXPECT_FALSE (clickFocusedButtonOnSpace (juce::KeyPress (juce::KeyPress::spaceKey))) << "nothing has the focus";

    button.grabKeyboardFocus();
    EXPECT_TRUE (clickFocusedButtonOnSpace (juce::KeyPress (juce::KeyPress::spaceKey)));
    EXPECT_FALSE (clickFocusedButtonOnSpace (juce::KeyPress (juce::KeyPress::returnKey)));
    EXPECT_FALSE (clickFocusedButtonOnSpace (juce::KeyPress ('x', {}, 'x')));
    pump();
    EXPECT_EQ (clicks, 1);
}

//==============================================================================
TEST (PrimaryButton, ShowsAnAction)
{
    juce::TextButton button;

    for (const auto state : allStates())
    {
        const auto action = primaryActionFor (someModel (state), false);
        showAction (button, action, "Grand Piano");

        EXPECT_EQ (button.getButtonText(), action.label);
        EXPECT_EQ (button.getTooltip(), action.tooltip);
        EXPECT_EQ (button.isEnabled(), action.enabled);
        EXPECT_EQ (hex (button.findColour (juce::TextButton::buttonColourId)), hex (action.fill));
        EXPECT_EQ (hex (button.findColour (juce::TextButton::textColourOffId)), hex (action.text));
        EXPECT_TRUE (button.getTitle().contains ("Grand Piano")) << button.getTitle();
        EXPECT_NE (button.getDescription(), "");
    }
}
