#include "FuzzHome.h"

#include "install/InstallService.h"

namespace
{
Product soundPack()
{
    Product product;
    product.id = product.packId = "pack";
    product.name = "Pack";
    product.version = "1.0.0";
    product.installType = Product::InstallType::factoryContent;
    product.archiveRoot = "p";
    product.defaultPatch = "p/a";
    product.licenseFile = "p/l";
    product.licenseId = "L";
    product.platforms["win"] = { "https://example.com/p.zip", juce::String::repeatedString ("0", 64), 1 };
    return product;
}

int filesBelow (const juce::File& folder)
{
    return folder.findChildFiles (juce::File::findFilesAndDirectories, true, "*", juce::File::FollowSymlinks::no).size();
}
}

/** An archive is judged and unpacked as a sound pack and as an application; nothing appears outside the two destinations. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const auto& home = fuzz::home();
    const auto archive = home.getChildFile ("pack.zip");
    fuzz::writeBytes (archive, data, size);

    const auto content = home.getChildFile ("content");
    const auto products = HubPaths::productsDirectory();
    content.deleteRecursively (false);
    products.deleteRecursively (false);
    products.createDirectory();
    const int before = filesBelow (home) - filesBelow (content) - filesBelow (products);

    juce::String message, error;
    InstallService::installContent (soundPack(), archive, message, content);

    juce::File installed;
    PromotionTransaction transaction;

    if (InstallService::installApplication ("pack", archive, message, installed, transaction))
        transaction.rollback (error);

    const int after = filesBelow (home) - filesBelow (content) - filesBelow (products) - (content.exists() ? 1 : 0);

    if (after != before)
        std::abort();

    return 0;
}
