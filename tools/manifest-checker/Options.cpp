#include "Options.h"

std::optional<Options> parseOptions (const juce::StringArray& arguments)
{
    Options options;

    for (int i = 0; i < arguments.size(); ++i)
    {
        const auto& argument = arguments[i];

        if (argument == "--help")
        {
            options.help = true;
            return options;
        }

        const bool isFiles = argument == "--files", isOutput = argument == "--output";

        if (! isFiles && ! isOutput && argument.startsWith ("--"))
            return {};

        auto& value = isFiles ? options.files : isOutput ? options.output : options.manifest;

        if (value.isNotEmpty())
            return {};

        value = isFiles || isOutput ? arguments[++i] : argument;

        if (value.isEmpty())
            return {};
    }

    const bool outputHasNoUse = options.output.isNotEmpty() && options.files.isEmpty();
    return options.manifest.isEmpty() || outputHasNoUse ? std::optional<Options>() : options;
}
