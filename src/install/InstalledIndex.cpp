#include "install/InstalledIndex.h"

#include "install/InstallRecord.h"
#include "install/InstallService.h"
#include "install/ProductPrograms.h"

InstalledIndex::InstalledIndex()
    : loosePrograms (ProductPrograms::looseProgramsNow())
{
    const auto paths = InstallRecord::readPaths();

    for (int i = 0; i < paths.size(); ++i)
        recordedPaths.emplace (paths.getAllKeys()[i], paths.getAllValues()[i]);
}

juce::File InstalledIndex::installedLocation (const Product& product) const
{
    if (product.installType == Product::InstallType::factoryContent)
        return InstallService::locateInstalledContent (product, {});

    const auto recorded = recordedPaths.find (product.id);
    return ProductPrograms::find (product.id, recorded != recordedPaths.end() ? recorded->second : juce::String(), loosePrograms);
}
