#include "FuzzHome.h"

#include "vault/RecoveryScanner.h"

/** A hostile journal never touches anything outside the directory that is being recovered. The text "@ROOT@" in the input stands for
    that directory, so that the fuzzer can name files in it and around it. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const auto around = fuzz::home().getChildFile ("journal");
    const auto root = around.getChildFile ("root");
    const auto outside = around.getChildFile ("outside.txt");
    const auto record = around.getChildFile ("record.json");

    around.deleteRecursively (false);
    root.createDirectory();
    outside.replaceWithText ("outside");
    record.replaceWithText ("{}");
    root.getChildFile ("a.exe").replaceWithText ("live");
    root.getChildFile ("a.exe.backup-1").replaceWithText ("old");

    const auto text = fuzz::textOf (data, size).replace ("@ROOT@", root.getFullPathName());
    root.getChildFile (".zorva-promotion-0.json").replaceWithText (text, false, false, nullptr);

    juce::StringArray notes;
    RecoveryScanner::recoverRoot (root, record, notes, true);

    if (! root.isDirectory() || outside.loadFileAsString() != "outside")
        std::abort();

    return 0;
}
