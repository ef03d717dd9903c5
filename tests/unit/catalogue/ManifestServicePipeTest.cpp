#include "RefreshSubject.h"
#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/RecordPipe.h"

using namespace zorva::test;

TEST (ManifestService, PipesInThePlacesOfTheFilesCountAsAbsent)
{
    const RecordPipe cache (HubPaths::manifestCacheFile()), ownFile (HubPaths::manifestLocalFile());
    EXPECT_EQ (idsOf (loadProducts()), "zorva-daw");

    const juce::var settings (new juce::DynamicObject());
    ManifestService service (settings);
    EXPECT_EQ (idsOf (service.getProducts()), "zorva-daw");
    EXPECT_TRUE (cache.isStillThere() && ownFile.isStillThere());

    service.clearCache();
    EXPECT_FALSE (cache.isStillThere());
    EXPECT_TRUE (ownFile.isStillThere());
}

TEST (ManifestService, APipeInTheOverridesPlaceLeavesTheCacheInForce)
{
    write (HubPaths::manifestCacheFile(), manifest ({ application ("cached") }));
    const RecordPipe ownFile (HubPaths::manifestLocalFile());

    EXPECT_EQ (idsOf (loadProducts()), "cached zorva-daw");
}
