#include "app/HubPaths.h"
#include "app/HubSettings.h"
#include "support/Links.h"
#include "support/RecordPipe.h"

#include <gtest/gtest.h>

using namespace zorva::test;

TEST (HubSettings, APipeInTheFilesPlaceGivesAnEmptyObjectAndASaveReplacesIt)
{
    const RecordPipe pipe (HubPaths::settingsFile());
    auto settings = HubSettings::load();

    ASSERT_NE (settings.getDynamicObject(), nullptr);
    EXPECT_TRUE (settings.getDynamicObject()->getProperties().isEmpty());
    EXPECT_TRUE (pipe.isStillThere());

    HubSettings::setManifestUrl (settings, "https://a.example/m.json");
    EXPECT_FALSE (pipe.isStillThere());
    EXPECT_EQ (HubSettings::getManifestUrl (HubSettings::load()), "https://a.example/m.json");
}
