#include "install/InstallRecord.h"
#include "app/HubPaths.h"
#include "install/InstallService.h"
#include "support/CommaLocale.h"
#include "support/Files.h"
#include "support/IsoTime.h"
#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
juce::File installedFile (const juce::String& relativePath)    { return in (HubPaths::productsDirectory(), relativePath); }

/** "written", or the error. */
std::string record (const juce::String& id, const juce::File& file)
{
    juce::String error;
    return InstallService::writeInstallRecord (id, file, error) ? ("written" + error).toStdString() : error.toStdString();
}

juce::File executableOf (const juce::String& id)    { return write (installedFile (id + "/" + id + ".exe"), "program"); }

std::string momentOf (const juce::String& id)
{
    return juce::JSON::parse (HubPaths::installRecordFile())[juce::Identifier (id)]["installedAt"].toString().toStdString();
}

bool isNow (const std::string& moment)
{
    const auto time = juce::Time::fromISO8601 (juce::String (moment));
    return isoTime (time).toStdString() == moment && std::abs ((juce::Time::getCurrentTime() - time).inSeconds()) < 60.0;
}
}

//==============================================================================
TEST (InstallService, WritesAnInstallRecordByteForByte)
{
    const auto program = executableOf ("app");
    ASSERT_EQ (record ("app", program), "written");

    const auto moment = momentOf ("app");
    EXPECT_EQ (read (HubPaths::installRecordFile()),
               "{\r\n"
               "  \"app\": {\r\n"
               "    \"path\": \"" + program.getFullPathName().toStdString() + "\",\r\n"
               "    \"installedAt\": \"" + moment + "\"\r\n"
               "  }\r\n"
               "}");
    EXPECT_TRUE (isNow (moment)) << moment;
}

TEST (InstallService, AnInstallRecordsMomentKeepsItsPointWhereNumbersHaveAComma)
{
    ASSERT_NO_FATAL_FAILURE (writeNumbersWithAComma());
    ASSERT_EQ (record ("app", executableOf ("app")), "written");

    const auto moment = momentOf ("app");
    EXPECT_TRUE (isNow (moment)) << moment;
    EXPECT_EQ (moment.find ('.'), 19u) << moment;
}

TEST (InstallService, TheInstallRecordKeepsEveryOtherEntry)
{
    write (HubPaths::installRecordFile(), "{ \"other\": { \"path\": \"/x/y.exe\", \"installedAt\": \"then\", \"more\": [1, 2] }, \"odd\": 7,"
                                          " \"app\": { \"path\": \"old\", \"extra\": true } }");
    const auto program = executableOf ("app");
    ASSERT_EQ (record ("app", program), "written");

    const auto now = juce::JSON::parse (HubPaths::installRecordFile());
    EXPECT_EQ (json (now["other"]), json (juce::JSON::parse ("{ \"path\": \"/x/y.exe\", \"installedAt\": \"then\", \"more\": [1, 2] }")));
    EXPECT_EQ ((int) now["odd"], 7);
    EXPECT_EQ (now["app"]["path"].toString(), program.getFullPathName());
    EXPECT_TRUE (now["app"]["extra"].isVoid()) << "the entry itself is new";
}

TEST (InstallService, AnUnreadableInstallRecordIsRebuiltFromNothing)
{
    for (const auto& content : { juce::String ("{ broken"), juce::String ("[ { \"other\": {} } ]"), juce::String ("null"), juce::String(),
                                 juce::String::repeatedString ("[", 100000) })
    {
        write (HubPaths::installRecordFile(), content);
        ASSERT_EQ (record ("app", executableOf ("app")), "written") << content.substring (0, 30);

        const auto now = juce::JSON::parse (HubPaths::installRecordFile());
        ASSERT_NE (now.getDynamicObject(), nullptr);
        EXPECT_EQ (now.getDynamicObject()->getProperties().size(), 1) << content.substring (0, 30);
    }
}

TEST (InstallService, AnInstallRecordOfAnotherCaseOfTheSameIdRefuses)
{
    write (HubPaths::installRecordFile(), "{ \"App\": { \"path\": \"/x\" } }");
    EXPECT_EQ (record ("app", executableOf ("app")), "A case-colliding product identity already exists in the install record.");
    EXPECT_EQ (read (HubPaths::installRecordFile()), "{ \"App\": { \"path\": \"/x\" } }");
}

TEST (InstallService, RecordsOnlyAProgramInTheProductsOwnDirectory)
{
    const char* const invalid = "Invalid product identity or installed location.";
    const auto program = executableOf ("app");

    EXPECT_EQ (record ("../app", program), invalid);
    EXPECT_EQ (record ("other", program), invalid);
    EXPECT_EQ (record ("app", installedFile ("app/missing.exe")), invalid);
    EXPECT_FALSE (isThere (HubPaths::installRecordFile()));
}

TEST (InstallService, SaysWhyAnInstallRecordWasNotWritten)
{
    const auto program = executableOf ("app");
    write (HubPaths::installRecordFile(), "{}");

    {
        const ReadOnlyFolder shut (HubPaths::root());
        EXPECT_EQ (record ("app", program), "Could not write the temporary install record.");
    }

    {
        const BusyPath stuck (HubPaths::installRecordFile());
        EXPECT_EQ (record ("app", program), "Could not atomically replace the install record.");
    }

    EXPECT_EQ (read (HubPaths::installRecordFile()), "{}");
    EXPECT_EQ (treeOf (HubPaths::root()).count ("installed.json"), (size_t) 1);
    EXPECT_EQ (HubPaths::root().getNumberOfChildFiles (juce::File::findFiles), 1) << "no temporary file stays";
}

//==============================================================================
TEST (InstallRecord, ReadsThePathsOfAllProducts)
{
    write (HubPaths::installRecordFile(), "{ \"a\": { \"path\": \"/a.exe\" }, \"b\": { \"path\": \"/b.exe\", \"installedAt\": \"x\" } }");
    const auto paths = InstallRecord::readPaths();

    EXPECT_EQ (paths["a"], "/a.exe");
    EXPECT_EQ (paths["b"], "/b.exe");
    EXPECT_EQ (InstallRecord::readPath ("a"), "/a.exe");
    EXPECT_EQ (InstallRecord::readPath ("A"), "") << "the case counts";
    EXPECT_EQ (InstallRecord::readPath ("c"), "");
}

TEST (InstallRecord, OddEntriesHaveNoPath)
{
    write (HubPaths::installRecordFile(), "{ \"number\": 7, \"list\": [ \"/a\" ], \"null\": null, \"empty\": {}, \"text\": \"/a\" }");

    for (const char* id : { "number", "list", "null", "empty", "text" })
    {
        EXPECT_EQ (InstallRecord::readPath (id), "") << id;
        EXPECT_EQ (InstallRecord::readPaths()[id], "") << id;
    }
}

TEST (InstallRecord, AnUnreadableFileHasNoPaths)
{
    EXPECT_EQ (InstallRecord::readPaths().size(), 0);

    for (const char* content : { "", "{ broken", "[]", "null", "7" })
    {
        write (HubPaths::installRecordFile(), content);
        EXPECT_EQ (InstallRecord::readPaths().size(), 0) << content;
        EXPECT_EQ (InstallRecord::readPath ("a"), "") << content;
    }
}
