#include "ProfileFile.h"

using namespace zorva::test;

namespace
{
const char* const schema = "unsupported_creator_schema";
const char* const invalid = "invalid_creator_profile";

/** The code of loading a profile in which this stands for the value of a key that is there. */
std::string errorWith (const juce::String& key, const juce::String& value, const juce::String& replaced)
{
    const auto before = "\"" + key + "\": " + replaced + ",";
    EXPECT_TRUE (fileText().contains (before)) << before;
    return errorOnLoading (fileText().replace (before, "\"" + key + "\": " + value + ","));
}
}

TEST (CreatorProfileJson, AnEmptyNameAnywhereElseIsReadOver)
{
    for (const auto* more : { R"("": 1)", R"("other": {"": {"": ""}})" })
        EXPECT_EQ (errorOnLoading (fileText().dropLastCharacters (1) + ", " + more + "}"), "") << more;

    for (const auto* broken : { R"("")", R"(""updatedAt": "")", R"("": 1, "")", R"("other": {"" 1})" })
        EXPECT_EQ (errorOnLoading (fileText().dropLastCharacters (1) + ", " + broken + "}"), "unsupported_creator_schema") << broken;

    EXPECT_EQ (errorOnLoading (fileText ({ { "styleDescription", R"({"": 1})" }, { "displayName", "\"\":" } })), "");
    EXPECT_EQ (CreatorProfileStore().load().styleDescription, R"({"": 1})") << "what stands in a text is none";
}

//==============================================================================
TEST (CreatorProfileJson, AnAbsurdIntegerIsNeverReadAsASmallOne)
{
    const struct { const char* number; const char* whenSchema; const char* whenStep; } cases[]
    {
        { "1", "", "" }, { "1.0", "", "" }, { "1.9", "", "" }, { "1e0", "", "" }, { "\"1\"", "", "" }, { "\" 1x\"", "", "" }, { "\"1e30\"", "", "" }, { "true", "", "" },
        { "0", schema, "" }, { "false", schema, "" }, { "null", schema, "" }, { "\"x\"", schema, "" }, { "[1]", schema, "" }, { "{}", schema, "" }, { "9", schema, "" },
        { "10", schema, invalid }, { "-1", schema, invalid }, { "9.99", schema, "" }, { "-0.5", schema, "" },
        { "2147483648", schema, invalid }, { "-2147483648", schema, invalid }, { "2147483648.0", schema, invalid }, { "4294967297.0", schema, invalid },
        { "4294967296.0", schema, invalid }, { "-4294967295.0", schema, invalid }, { "\"4294967297\"", schema, invalid }, { "\"-4294967295\"", schema, invalid },
        { "9223372036854775807", schema, invalid }, { "9223372036854775808", schema, invalid }, { "-9223372036854775808", schema, invalid },
        { "18446744073709551617", schema, invalid }, { "-18446744073709551616", schema, invalid }, { "\"18446744073709551617\"", schema, invalid },
        { "1e30", schema, invalid }, { "-1e30", schema, invalid }, { "1e999", schema, invalid }, { "-1e999", schema, invalid }, { "1e-999", schema, "" },
        { "99999999999999999999999999999999999999999999999999", schema, invalid }, { "NaN", schema, schema }, { "Infinity", schema, schema },
    };

    for (const auto& each : cases)
    {
        EXPECT_EQ (errorWith ("schemaVersion", each.number, "1"), each.whenSchema) << each.number;
        EXPECT_EQ (errorWith ("currentStep", each.number, "3"), each.whenStep) << each.number;
    }
}

TEST (CreatorProfileJson, OfALongerWholeNumberTheLow32BitsCountAsInTheFramework)
{
    EXPECT_EQ (errorWith ("schemaVersion", "4294967297", "1"), "");
    EXPECT_EQ (errorWith ("currentStep", "4294967303", "3"), "");
    EXPECT_EQ (CreatorProfileStore().load().currentStep, 7);
}

TEST (CreatorProfileJson, BooleansAreConvertedWithoutOverflow)
{
    const std::pair<const char*, bool> cases[]
    {
        { "true", true }, { "false", false }, { "null", false }, { "0", false }, { "5", true }, { "-1", true }, { "0.0", false }, { "0.1", true }, { "1e30", true },
        { "9223372036854775808", true }, { "4294967296", true }, { "\"yes\"", true }, { "\" TRUE \"", true }, { "\"no\"", false }, { "\"\"", false }, { "\"1\"", true },
        { "\"0\"", false }, { "\"99999999999999999999\"", true }, { "[]", true }, { "{}", true },
    };

    for (const auto& [value, expected] : cases)
    {
        EXPECT_EQ (errorWith ("localWebsitePreviewRequested", value, "false"), "") << value;
        EXPECT_EQ (CreatorProfileStore().load().localWebsitePreviewRequested, expected) << value;
    }
}
