#pragma once

#include "support/Environment.h"
#include "support/Files.h"
#include "support/GuiHarness.h"

namespace zorva::test
{
/** Stands in for the program by which the system shows its file dialogs. It notes how it is called and stays open until it is
    answered. One a process, and before the first dialog: the framework looks for that program once. */
class FakeFileDialog
{
public:
    FakeFileDialog() : folder (freshFolder ("dialogs"))
    {
        const auto program = write (folder.getChildFile ("zenity"),
                                    "#!/bin/sh\n"
                                    "if [ \"$1\" = --version ]; then echo 3.44.0; exit 0; fi\n"
                                    "folder='" + folder.getFullPathName() + "'\n"
                                    "pwd > \"$folder/cwd\"\n"
                                    "printf '%s\\n' \"$@\" > \"$folder/unfinished\"\n"
                                    "mv \"$folder/unfinished\" \"$folder/arguments\"\n"
                                    "while [ ! -e \"$folder/answer\" ]; do sleep 0.02; done\n"
                                    "cat \"$folder/answer\"\n"
                                    "rm \"$folder/answer\"\n");
        EXPECT_TRUE (program.setExecutePermission (true));
        setEnvironment ("PATH", folder.getFullPathName() + ":" + juce::SystemStats::getEnvironmentVariable ("PATH", {}));
        removeFromEnvironment ("KDE_FULL_SESSION");
    }

    /** Waits for a dialog; its arguments, one a line. */
    std::string arguments()
    {
        const auto file = folder.getChildFile ("arguments");
        EXPECT_TRUE (pumpUntil ([&] { return file.existsAsFile(); })) << "no dialog";
        const auto found = read (file);
        file.deleteFile();
        return found;
    }

    /** Where the dialog that was looked at last starts. */
    juce::File startFolder() const    { return juce::File (folder.getChildFile ("cwd").loadFileAsString().trim()); }

    /** Chooses a file; File() cancels. Returns when the dialog is gone and its answer has been handled. */
    void answer (const juce::File& chosen)
    {
        const auto text = chosen == juce::File() ? juce::String() : chosen.getFullPathName() + "\n";
        write (folder.getChildFile ("unfinished"), text).moveFileTo (folder.getChildFile ("answer"));
        EXPECT_TRUE (pumpUntil ([&] { return ! folder.getChildFile ("answer").exists(); })) << "nobody waits for an answer";
        pump (300);   // the framework looks ten times a second whether the program has ended
    }

private:
    juce::File folder;

    JUCE_DECLARE_NON_COPYABLE (FakeFileDialog)
};
}
