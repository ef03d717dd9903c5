#include "MixedVault.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/Text.h"
#include "support/VaultItems.h"

#include <gtest/gtest.h>

namespace zorva::test
{
namespace
{
/** Collects the folders while it makes them. */
class Maker
{
public:
    enum Meaning { listed, trustedOnly, refused };

    /** A folder with an installer and this record. */
    void put (const juce::String& name, const juce::var& record, Meaning meaning, const juce::String& fileName = "setup.exe")
    {
        putText (name, json (record), meaning, fileName);
    }

    /** A folder with an installer and a record of this text. */
    void putText (const juce::String& name, const juce::String& record, Meaning meaning, const juce::String& fileName = "setup.exe")
    {
        write (vaultFile (name + "/vault.json"), record);
        write (vaultFile (name + "/" + fileName), contentOf (name));
        note (name, meaning, fileName);
    }

    void note (const juce::String& name, Meaning meaning, const juce::String& fileName = "setup.exe")
    {
        folders.push_back ({ name, fileName, meaning != refused, meaning == listed });
    }

    static juce::String contentOf (const juce::String& name)    { return "installer of " + name; }

    std::vector<VaultFolder> folders;
};

juce::var app (const juce::String& id, const juce::String& fileName = "setup.exe")
{
    const auto content = Maker::contentOf (id).toStdString();
    return vaultRecordOf (applicationOf (id, "1.0.0", content), fileName, (juce::int64) content.size());
}

juce::var pack (const juce::String& id)
{
    const auto content = Maker::contentOf (id).toStdString();
    return vaultRecordOf (packOf (id, "1.0.0", content), "setup.exe", (juce::int64) content.size());
}

void putRecords (Maker& make)
{
    make.put ("app", app ("app"), Maker::listed);
    make.put ("Upper.Case_1", app ("Upper.Case_1"), Maker::listed);
    make.put ("for-mac", with (app ("for-mac"), "platform", "mac"), Maker::listed);
    make.put ("wrong-size-and-hash", with (with (app ("wrong-size-and-hash"), "sizeBytes", 7), "sha256", "00"), Maker::listed);
    make.put ("extra-keys", with (app ("extra-keys"), "later", "more"), Maker::listed);
    make.put ("only-what-is-needed", with (with (juce::var (new juce::DynamicObject()), "id", "only-what-is-needed"), "fileName", "setup.exe"), Maker::listed);

    make.put ("no-id", without (app ("no-id"), "id"), Maker::refused);
    make.put ("id-of-another", app ("app"), Maker::refused);
    make.put ("Other-Case", app ("other-case"), Maker::refused);
    make.put ("blank-after-id", app ("blank-after-id "), Maker::refused);

    make.putText ("record-empty", {}, Maker::refused);
    make.putText ("record-broken", "{ \"id\": ", Maker::refused);
    make.putText ("record-null", "null", Maker::refused);
    make.putText ("record-array", "[" + json (app ("record-array")) + "]", Maker::refused);
    make.put ("record-too-deep", with (app ("record-too-deep"), "later",
                                       juce::JSON::parse (juce::String::repeatedString ("[", 100) + juce::String::repeatedString ("]", 100))), Maker::refused);
}

void putRecordFiles (Maker& make)
{
    write (vaultFile ("record-missing/setup.exe"), "x");
    make.note ("record-missing", Maker::refused);

    write (vaultFile ("record-folder/setup.exe"), "x");
    write (vaultFile ("record-folder/vault.json/inside"), json (app ("record-folder")));
    make.note ("record-folder", Maker::refused);

    const auto record = write (in (freshFolder ("records"), "vault.json"), json (app ("record-link")));
    write (vaultFile ("record-link/setup.exe"), "x");
    link (vaultFile ("record-link/vault.json"), record.getFullPathName());
    make.note ("record-link", Maker::refused);

    write (vaultFile ("record-dangling/setup.exe"), "x");
    link (vaultFile ("record-dangling/vault.json"), "/nowhere/at/all");
    make.note ("record-dangling", Maker::refused);
}

void putInstallTypes (Maker& make)
{
    make.put ("no-type", without (app ("no-type"), "installType"), Maker::listed);
    make.put ("app-with-odd-content", with (app ("app-with-odd-content"), "content", "unused"), Maker::listed);
    make.put ("unknown-type", with (app ("unknown-type"), "installType", "plugin"), Maker::trustedOnly);
    make.put ("type-in-capitals", with (app ("type-in-capitals"), "installType", "Application"), Maker::trustedOnly);
    make.put ("empty-type", with (app ("empty-type"), "installType", ""), Maker::trustedOnly);

    make.put ("pack", pack ("pack"), Maker::listed);
    make.put ("pack-without-licence-id", without (pack ("pack-without-licence-id"), "content.licenseId"), Maker::listed);
    make.put ("pack-without-content", without (pack ("pack-without-content"), "content"), Maker::trustedOnly);
    make.put ("pack-with-content-list", with (pack ("pack-with-content-list"), "content", list ({ "pack" })), Maker::trustedOnly);

    const struct { const char* name; const char* key; const char* value; } rows[]
    {
        { "pack-of-another", "packId", "another" },
        { "pack-in-another-case", "packId", "Pack-In-Another-Case" },
        { "root-empty", "archiveRoot", "" },
        { "root-up", "archiveRoot", ".." },
        { "root-is-a-path", "archiveRoot", "pack/sub" },
        { "root-as-directory", "archiveRoot", "pack/" },
        { "root-of-another-name", "archiveRoot", "other" },
        { "patch-empty", "defaultPatch", "" },
        { "patch-outside", "defaultPatch", "other/first.json" },
        { "patch-beside", "defaultPatch", "packet/first.json" },
        { "patch-through-parent", "defaultPatch", "pack/../first.json" },
        { "patch-as-directory", "defaultPatch", "pack/patches/" },
        { "patch-absolute", "defaultPatch", "/pack/first.json" },
        { "patch-device", "defaultPatch", "pack/nul.json" },
        { "licence-empty", "licenseFile", "" },
        { "licence-outside", "licenseFile", "LICENSE.txt" },
        { "licence-in-device", "licenseFile", "pack/aux/LICENSE.txt" },
    };

    for (const auto& row : rows)
        make.put (row.name, with (pack (row.name), juce::String ("content.") + row.key, row.value), Maker::trustedOnly);

    const auto inDevice = with (with (pack ("root-device"), "content.archiveRoot", "con"), "content.defaultPatch", "con/first.json");
    make.put ("root-device", with (inDevice, "content.licenseFile", "con/LICENSE.txt"), Maker::trustedOnly);
}

void putFileNames (Maker& make)
{
    make.put ("tilde-name", app ("tilde-name", "~root"), Maker::listed, "~root");
    make.put ("dotted-name", app ("dotted-name", ".setup"), Maker::listed, ".setup");

    make.put ("name-missing", without (app ("name-missing"), "fileName"), Maker::refused);

    for (const auto& [name, fileName] : { std::pair<const char*, const char*> { "name-empty", "" }, { "name-dot", "." }, { "name-up", ".." },
                                          { "name-of-sibling", "../app/setup.exe" }, { "name-absolute", "/nowhere/at/all.exe" }, { "name-backslash", "a\\b" } })
        make.put (name, app (name, fileName), Maker::refused);

    for (const auto& [name, fileName] : { std::pair<const char*, const char*> { "name-with-path", "sub/setup.exe" }, { "name-colon", "a:b" },
                                          { "name-device", "nul.exe" }, { "name-dot-at-end", "setup." }, { "name-blank-at-end", "setup.exe " },
                                          { "name-other-case", "Setup.exe" } })
    {
        make.put (name, app (name, fileName), Maker::refused, juce::String (fileName) == "Setup.exe" ? "setup.exe" : fileName);
    }
}

void putInstallers (Maker& make)
{
    const auto outside = write (in (freshFolder ("installers"), "setup.exe"), "x");

    for (const char* name : { "installer-missing", "installer-folder", "installer-link", "installer-dangling" })
    {
        write (vaultFile (juce::String (name) + "/vault.json"), json (app (name)));
        make.note (name, Maker::refused);
    }

    write (vaultFile ("installer-folder/setup.exe/inside"), "x");
    link (vaultFile ("installer-link/setup.exe"), outside.getFullPathName());
    link (vaultFile ("installer-dangling/setup.exe"), "/nowhere/at/all");
}

void putFolders (Maker& make)
{
    const auto outside = freshFolder ("folders");
    write (in (outside, "vault.json"), json (app ("folder-link")));
    write (in (outside, "setup.exe"), "x");
    link (vaultFile ("folder-link"), outside.getFullPathName());
    make.note ("folder-link", Maker::refused);

    link (vaultFile ("folder-dangling"), "/nowhere/at/all");
    make.note ("folder-dangling", Maker::refused);

    write (vaultFile ("folder-file"), "x");
    make.note ("folder-file", Maker::refused);

    for (const auto& name : { juce::String ("-a"), juce::String ("a-"), juce::String ("a..b"), juce::String ("a b"), juce::String ("aux"),
                              juce::String ("~root"), utf8 ("größe"), juce::String::repeatedString ("a", 65) })
        make.put (name, app (name), Maker::refused);

    make.put (juce::String::repeatedString ("a", 64), app (juce::String::repeatedString ("a", 64)), Maker::listed);
    make.put ("Twin", app ("Twin"), Maker::refused);
    make.put ("twin", app ("twin"), Maker::refused);
    make.note ("unheard-of", Maker::refused);
}
}

std::vector<VaultFolder> makeMixedVault()
{
    Maker make;
    putRecords (make);
    putRecordFiles (make);
    putInstallTypes (make);
    putFileNames (make);
    putInstallers (make);
    putFolders (make);
    EXPECT_GT (make.folders.size(), (size_t) 75);
    return make.folders;
}
}
