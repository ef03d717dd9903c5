#include "CreatorProfileWizardScene.h"

using namespace zorva::test;
using Scene = WizardScene;

namespace
{
const char* const ids[] { "eyebrowLabel", "stepLabel", "titleLabel", "bodyLabel", "fieldLabel", "primaryEditor", "roleCombo", "websiteToggle",
                          "chooseImageButton", "secondaryFieldLabel", "secondaryEditor", "themeCombo", "deleteButton", "exportButton",
                          "backButton", "skipButton", "saveDraftButton", "previewButton", "editLaterButton", "nextButton" };

struct Case
{
    int width, height;
    bool severalLines;                  ///< the step of the links
    std::vector<const char*> bounds;    ///< of each child, by ids
};

const Case cases[] {
    // The page in a window of 1100 x 720.
    { 934, 574, false, { "50 34 834 22", "50 56 834 38", "50 94 834 34", "50 128 834 44", "50 180 834 22", "50 202 834 34", "50 202 834 34",
                         "50 202 834 34", "50 202 180 34", "50 248 834 22", "50 270 834 90", "50 270 834 34", "656 478 112 30",
                         "776 478 108 30", "50 516 72 32", "130 516 72 32", "486 516 100 32", "594 516 82 32", "684 516 96 32",
                         "788 516 96 32" } },
    { 934, 574, true, { "50 34 834 22", "50 56 834 38", "50 94 834 34", "50 128 834 44", "50 180 834 22", "50 202 834 90", "50 202 834 90",
                        "50 202 834 90", "50 202 180 90", "50 304 834 22", "50 326 834 90", "50 326 834 34", "656 478 112 30",
                        "776 478 108 30", "50 516 72 32", "130 516 72 32", "486 516 100 32", "594 516 82 32", "684 516 96 32",
                        "788 516 96 32" } },

    // In a window of 900 x 600.
    { 734, 454, false, { "50 34 634 22", "50 56 634 38", "50 94 634 34", "50 128 634 44", "50 180 634 22", "50 202 634 34", "50 202 634 34",
                         "50 202 634 34", "50 202 180 34", "50 248 634 22", "50 270 634 40", "50 270 634 34", "456 358 112 30",
                         "576 358 108 30", "50 396 72 32", "130 396 72 32", "286 396 100 32", "394 396 82 32", "484 396 96 32",
                         "588 396 96 32" } },
    { 734, 454, true, { "50 34 634 22", "50 56 634 38", "50 94 634 34", "50 128 634 44", "50 180 634 22", "50 202 634 90", "50 202 634 90",
                        "50 202 634 90", "50 202 180 90", "50 304 634 22", "50 326 634 34", "50 326 634 34", "456 358 112 30",
                        "576 358 108 30", "50 396 72 32", "130 396 72 32", "286 396 100 32", "394 396 82 32", "484 396 96 32",
                        "588 396 96 32" } },

    // The rows are cut where the column ends.
    { 734, 286, false, { "50 34 634 22", "50 56 634 38", "50 94 634 34", "50 128 634 44", "50 180 634 22", "50 202 634 34", "50 202 634 34",
                         "50 202 634 34", "50 202 180 34", "50 248 634 4", "50 252 634 0", "50 252 634 34", "456 190 112 30",
                         "576 190 108 30", "50 228 72 32", "130 228 72 32", "286 228 100 32", "394 228 82 32", "484 228 96 32",
                         "588 228 96 32" } },
};
}

//==============================================================================
TEST (CreatorProfileWizardLayout, PlacesEverythingByTheTable)
{
    for (const auto& c : cases)
    {
        SCOPED_TRACE (std::to_string (c.width) + " x " + std::to_string (c.height) + (c.severalLines ? ", links" : ""));
        ASSERT_EQ (c.bounds.size(), std::size (ids));

        for (int step = 0; step < 10; ++step)
        {
            if ((step == 8) != c.severalLines)
                continue;

            Scene::putAt (step);
            Scene scene;
            scene.wizard->setSize (c.width, c.height);

            for (size_t i = 0; i < std::size (ids); ++i)
                EXPECT_EQ (scene.child (ids[i]).getBounds().toString().toStdString(), c.bounds[i]) << ids[i] << " on step " << step;
        }
    }
}

TEST (CreatorProfileWizardLayout, TheSecondaryFieldIsAsHighAsThereIsRoomForIt)
{
    Scene::putAt (2);
    Scene scene;

    for (const auto& [height, expected] : { std::pair (448, 34), std::pair (449, 35), std::pair (503, 89), std::pair (504, 90), std::pair (600, 90) })
    {
        scene.wizard->setSize (734, height);
        EXPECT_EQ (scene.editor ("secondaryEditor").getHeight(), expected) << height;
    }
}

TEST (CreatorProfileWizardLayout, NoSizeIsTooSmall)
{
    Scene::putAt (2);
    Scene scene;

    for (const int side : { 0, 1, 25, 26, 36, 50, 51, 52, 53, 68, 69, 99, 100, 101, 130 })
    {
        scene.wizard->setSize (side, side);
        SCOPED_TRACE (side);

        for (const auto* id : ids)
        {
            EXPECT_GE (scene.child (id).getWidth(), 0) << id;
            EXPECT_GE (scene.child (id).getHeight(), 0) << id;
        }

        if (side > 0)
            pictureOf (*scene.wizard);
    }
}

TEST (CreatorProfileWizardLayout, TheTextsFitAtBothWindowSizes)
{
    for (int step = 0; step < 10; ++step)
    {
        Scene::putAt (step);
        Scene scene;
        SCOPED_TRACE (step);
        scene.wizard->setSize (734, 454);

        for (const auto* id : { "eyebrowLabel", "stepLabel", "titleLabel", "fieldLabel", "secondaryFieldLabel" })
        {
            auto& label = scene.child<juce::Label> (id);
            EXPECT_LE (widthOf (label.getFont(), label.getText()), label.getWidth()) << id;
        }

        auto& body = scene.child<juce::Label> ("bodyLabel");
        EXPECT_LE (widthOf (body.getFont(), body.getText()), 2 * body.getWidth() - 100) << "two lines with room for the break";

        for (auto* button : allBelow<juce::TextButton> (*scene.wizard))
            EXPECT_LE (widthOf (bold (12.0f), button->getButtonText()), button->getWidth() - 8) << button->getComponentID();
    }
}

//==============================================================================
TEST (CreatorProfileWizardLayout, ACardWithAShadowIsPaintedBehindAll)
{
    Scene scene;

    for (auto* child : scene.wizard->getChildren())
        child->setVisible (false);

    for (const auto& [width, height] : { std::pair (934, 574), std::pair (734, 454) })
    {
        scene.wizard->setSize (width, height);
        const auto card = juce::Rectangle<int> (26, 18, width - 52, height - 36).toFloat();
        const auto expected = paintedOn (HubPalette::windowBackground, width, height, [&] (juce::Graphics& g)
        {
            g.setColour (juce::Colours::black.withAlpha (0.25f));
            g.fillRoundedRectangle (card.translated (3.0f, 4.0f), 12.0f);
            g.setColour (HubPalette::raised);
            g.fillRoundedRectangle (card, 12.0f);
            g.setColour (HubPalette::border.brighter (0.08f));
            g.drawRoundedRectangle (card, 12.0f, 1.0f);
        });

        EXPECT_EQ (difference (pictureOf (*scene.wizard), expected), "");
    }
}
