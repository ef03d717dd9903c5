#include "creator/DraftPath.h"
#include "support/Files.h"
#include "support/Text.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace
{
using namespace zorva::test;

constexpr juce::int64 mostBytes = 1000;

/** Whether the rule takes this text for a WAV of at most mostBytes. The file comes out when it does, and is left alone when not. */
bool accepts (const juce::String& text)
{
    const juce::File untouched ("/untouched");
    auto file = untouched;
    const bool accepted = isAcceptableDraftPath (text, { ".wav" }, mostBytes, file);
    EXPECT_EQ (file.getFullPathName(), accepted ? text : untouched.getFullPathName());
    return accepted;
}

bool accepts (const juce::File& file)    { return accepts (file.getFullPathName()); }

class DraftPath : public testing::Test
{
protected:
    juce::File make (const juce::String& relativePath, size_t size = 10) const
    {
        return writeBytes (in (folder, relativePath), std::string (size, 'w'));
    }

    const juce::File folder = freshFolder ("renders");
    const juce::String path = folder.getFullPathName();
    const juce::File song = make ("song.wav");
};
}

//==============================================================================
TEST_F (DraftPath, AnOrdinaryFileByItsFullPathIsAccepted)
{
    for (const auto* name : { "song.wav", "deeper/and deeper/my song.wav", ".hidden/song.wav", "..dots../song.wav", "a.b.wav", ".wav", "größe/ä 曲.wav",
                              "back\\slash.wav", "quote'\"quote.wav", "~/song.wav", "semi;colon$HOME%20.wav" })
    {
        const auto text = path + "/" + utf8 (name);
        make (utf8 (name));
        EXPECT_TRUE (accepts (text)) << text;
    }
}

TEST_F (DraftPath, TheTextIsNotEmptyAndAbsolute)
{
    ASSERT_EQ (::chdir (path.toRawUTF8()), 0);
    write (juce::File (juce::String::fromUTF8 (std::getenv ("HOME")) + "/song.wav"), "home");

    for (const auto& text : { juce::String(), juce::String ("song.wav"), juce::String ("./song.wav"), juce::String ("renders/song.wav"),
                              juce::String ("~"), juce::String ("~/song.wav"), juce::String ("~root/song.wav"), " " + song.getFullPathName(),
                              "file://" + song.getFullPathName(), juce::String ("C:\\song.wav"), juce::String ("\\\\server\\song.wav") })
        EXPECT_FALSE (accepts (text)) << text;
}

TEST_F (DraftPath, TheTextHasAtMost4096Bytes)
{
    // The longest path that the system itself takes, since it counts the zero at the end.
    juce::String name;

    while ((int) (path.getNumBytesAsUTF8() + name.getNumBytesAsUTF8()) < 4095 - 200)
        name << "/" << juce::String::repeatedString (utf8 ("é"), 50);

    const auto missing = 4095 - (int) (path + name + "/.wav").getNumBytesAsUTF8();
    name << "/" << juce::String::repeatedString ("x", missing) << ".wav";
    make (name.substring (1));
    EXPECT_EQ ((path + name).getNumBytesAsUTF8(), 4095u);
    EXPECT_TRUE (accepts (path + name));
    EXPECT_FALSE (accepts (path + name.replace (".wav", "x.wav"))) << "one byte over";
    EXPECT_FALSE (accepts ("/" + juce::String::repeatedString ("x/", 131072) + "song.wav"));
}

TEST_F (DraftPath, TheFileIsThereAndOrdinary)
{
    EXPECT_FALSE (accepts (path + "/absent.wav"));
    EXPECT_FALSE (accepts (path + "/absent/song.wav"));
    EXPECT_FALSE (accepts (song.getFullPathName() + "/song.wav")) << "below a file";
    ASSERT_TRUE (in (folder, "folder.wav").createDirectory());
    EXPECT_FALSE (accepts (in (folder, "folder.wav")));
    ASSERT_EQ (::mkfifo ((path + "/pipe.wav").toRawUTF8(), 0600), 0);
    EXPECT_FALSE (accepts (path + "/pipe.wav")) << "and returns";

    const auto name = path + "/socket.wav";
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    ASSERT_LT (name.getNumBytesAsUTF8(), sizeof (address.sun_path));
    name.copyToUTF8 (address.sun_path, sizeof (address.sun_path));
    const int socket = ::socket (AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ (::bind (socket, reinterpret_cast<const sockaddr*> (&address), sizeof (address)), 0);
    EXPECT_FALSE (accepts (name)) << "a socket";
    ::close (socket);
}

TEST_F (DraftPath, NeitherTheFileNorAnythingAboveItIsALink)
{
    make ("deeper/deepest/song.wav");
    EXPECT_TRUE (accepts (path + "/deeper/deepest/song.wav"));

    EXPECT_FALSE (accepts (link (in (folder, "link.wav"), song.getFullPathName())));
    EXPECT_FALSE (accepts (link (in (folder, "relative.wav"), "song.wav")));
    EXPECT_FALSE (accepts (link (in (folder, "dangling.wav"), path + "/absent.wav")));
    EXPECT_FALSE (accepts (link (in (folder, "loop.wav"), "loop.wav")));
    link (in (folder, "way"), path + "/deeper");
    EXPECT_FALSE (accepts (path + "/way/deepest/song.wav")) << "two above";
    link (in (folder, "deeper/way"), "deepest");
    EXPECT_FALSE (accepts (path + "/deeper/way/song.wav")) << "one above";
    EXPECT_FALSE (accepts (path + "/deeper/../way/deepest/song.wav"));
}

TEST_F (DraftPath, TheSizeIsFromOneToTheLimit)
{
    EXPECT_FALSE (accepts (make ("empty.wav", 0)));
    EXPECT_TRUE (accepts (make ("one.wav", 1)));
    EXPECT_TRUE (accepts (make ("most.wav", mostBytes)));
    EXPECT_FALSE (accepts (make ("more.wav", mostBytes + 1)));
}

TEST_F (DraftPath, ASizeBeyond32BitsIsNotCutShort)
{
    const auto file = make ("huge.wav", 1);
    std::filesystem::resize_file (file.getFullPathName().toStdString(), 0x100000001);      // would read as one byte
    EXPECT_FALSE (accepts (file));
}

TEST_F (DraftPath, TheExtensionInLowerCaseIsOneOfThoseAllowed)
{
    const std::pair<const char*, bool> cases[]
    {
        { "a.wav", true }, { "a.WAV", true }, { "a.Wav", true }, { "a.mp3.wav", true },
        { "a", false }, { "wav", false }, { "a.wave", false }, { "a.wa", false }, { "a.wav.mp3", false }, { "a.wav.", false }, { "a.wav ", false },
        { "a. wav", false }, { "a.png", false }, { "a.wäv", false },
    };

    for (const auto& [name, accepted] : cases)
    {
        make (utf8 (name));
        EXPECT_EQ (accepts (path + "/" + utf8 (name)), accepted) << name;
    }
}

TEST_F (DraftPath, EveryAllowedExtensionCounts)
{
    juce::File file;

    for (const auto* name : { "a.png", "a.jpg", "a.JPEG" })
        EXPECT_TRUE (isAcceptableDraftPath (make (name).getFullPathName(), { ".png", ".jpg", ".jpeg" }, mostBytes, file)) << name;

    EXPECT_FALSE (isAcceptableDraftPath (song.getFullPathName(), { ".png", ".jpg", ".jpeg" }, mostBytes, file));
    EXPECT_FALSE (isAcceptableDraftPath (song.getFullPathName(), {}, mostBytes, file));
}

TEST_F (DraftPath, TheTextIsTheFilesOwnFullPath)
{
    make ("deeper/song.wav");

    for (const auto& text : { path + "//song.wav", path + "/./song.wav", path + "/deeper/../song.wav", path + "/song.wav/", path + "/song.wav/.",
                              "/.." + path + "/song.wav", "/." + path + "/song.wav", path + "/deeper/song.wav/../song.wav" })
        EXPECT_FALSE (accepts (text)) << text;
}

TEST_F (DraftPath, CaseIsThatOfTheFileSystem)
{
    // The comparison of the text with the path ignores case; whether such a file is there is for the system to say.
    const auto shouting = path + "/SONG.WAV";
    EXPECT_EQ (accepts (shouting), juce::File (shouting).existsAsFile());
    make ("Mixed Case.WAV");
    EXPECT_TRUE (accepts (path + "/Mixed Case.WAV"));
}
