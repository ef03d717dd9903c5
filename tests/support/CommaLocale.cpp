#include "support/CommaLocale.h"

#include "support/Environment.h"
#include "support/Files.h"

#include <clocale>
#include <gtest/gtest.h>

namespace zorva::test
{
void writeNumbersWithAComma()
{
    const auto folder = freshFolder ("locales");
    const auto source = write (in (folder, "source"),
                               "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    const auto characters = write (in (folder, "characters"), "<code_set_name> ASCII\nCHARMAP\nEND CHARMAP\n");
    const juce::StringArray command { "localedef", "--no-archive", "-c", "-i", source.getFullPathName(),
                                      "-f", characters.getFullPathName(), in (folder, "comma").getFullPathName() };
    juce::ChildProcess process;
    ASSERT_TRUE (process.start (command));
    process.readAllProcessOutput();
    ASSERT_TRUE (process.waitForProcessToFinish (10000));

    setEnvironment ("LOCPATH", folder.getFullPathName());
    ASSERT_NE (std::setlocale (LC_NUMERIC, "comma"), nullptr);
    ASSERT_STREQ (std::localeconv()->decimal_point, ",");
}
}
