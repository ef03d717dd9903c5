#include "ManifestFiller.h"
#include "Options.h"
#include "catalogue/ManifestParser.h"
#include "support/BoundedJson.h"
#include "support/RecordFile.h"

#include <iostream>

namespace
{
enum ExitCode
{
    noProblem = 0,
    manifestHasProblems = 1,
    couldNotRun = 2
};

constexpr auto usage =
    "zorva-manifest-checker MANIFEST.json [--files FOLDER [--output FILE]]\n"
    "\n"
    "Checks a catalogue by the Hub's own rules and prints each problem as \"product: rule\".\n"
    "  --files FOLDER   fill in \"sizeBytes\" and \"sha256\" of each platform entry from the file\n"
    "                   in FOLDER that its url ends with, and print the filled manifest\n"
    "  --output FILE    write the filled manifest there; FILE may be MANIFEST.json itself\n"
    "Exit code: 0 no problem, 1 the manifest has problems, 2 it could not be checked.\n";

ExitCode complain (const juce::String& text)
{
    std::cerr << text << std::endl;
    return couldNotRun;
}

juce::File fileOf (const juce::String& path)
{
    return juce::File::getCurrentWorkingDirectory().getChildFile (path);
}

/** The text without what could steer a terminal. */
juce::String printable (const juce::String& text)
{
    juce::String result;

    for (auto t = text.getCharPointer(); ! t.isEmpty();)
        if (const auto c = t.getAndAdvance(); c >= 32 && (c < 127 || c >= 160))
            result << juce::String::charToString (c);

    return result;
}

ExitCode print (const std::vector<ManifestProblem>& problems, std::ostream& stream)
{
    for (const auto& problem : problems)
        stream << printable (problem.product.isEmpty() ? "manifest" : problem.product) << ": " << printable (problem.rule)
               << (problem.fatal ? "" : " (left out)") << std::endl;

    return problems.empty() ? noProblem : manifestHasProblems;
}

bool isUsable (const std::vector<ManifestProblem>& problems)
{
    return problems.empty() || ! problems.back().fatal;
}

bool deliver (const juce::String& text, const juce::String& output)
{
    if (output.isNotEmpty())
        return RecordFile::replace (fileOf (output), text) == RecordFile::Outcome::written;

    std::cout << text << std::flush;
    return std::cout.good();
}

/** A manifest that the Hub would refuse is never written. */
ExitCode fill (const juce::String& text, const Options& options)
{
    const auto folder = fileOf (options.files);

    if (! folder.isDirectory())
        return complain ("There is no folder " + folder.getFullPathName());

    const auto manifest = BoundedJson::parse (text);

    for (const auto& line : fillFromFiles (manifest, folder))
        std::cerr << printable (line) << " (not filled)" << std::endl;

    const auto format = juce::JSON::FormatOptions().withMaxDecimalPlaces (15).withEncoding (juce::JSON::Encoding::utf8);
    const auto filled = juce::JSON::toString (manifest, format) + juce::newLine;
    const auto problems = checkManifest (filled);
    const auto result = print (problems, std::cerr);

    if (isUsable (problems) && ! deliver (filled, options.output))
        return complain ("The filled manifest could not be written.");

    return result;
}

ExitCode run (const juce::StringArray& arguments)
{
    const auto options = parseOptions (arguments);

    if (! options.has_value())
        return complain (usage);

    if (options->help)
    {
        std::cout << usage;
        return noProblem;
    }

    const auto file = fileOf (options->manifest);
    juce::FileInputStream stream (file);

    if (! file.existsAsFile() || ! stream.openedOk())
        return complain ("Could not read " + file.getFullPathName());

    const auto text = stream.readEntireStreamAsString();
    return options->files.isEmpty() ? print (checkManifest (text), std::cout) : fill (text, *options);
}
}

int main (int argc, char* argv[])
{
    juce::StringArray arguments;

    for (int i = 1; i < argc; ++i)
        arguments.add (juce::String::fromUTF8 (argv[i]));

    return run (arguments);
}
