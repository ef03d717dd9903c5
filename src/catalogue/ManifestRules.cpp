#include "catalogue/ManifestRules.h"

#include "app/PathTrust.h"

namespace
{
template <typename Value>
struct Rule
{
    bool (*holds) (const Value&);
    const char* text;
};

constexpr Rule<Product> contentRules[]
{
    { [] (const Product& p) { return p.packId == p.id; },
      "\"packId\" must equal the product's \"id\" exactly." },
    { [] (const Product& p) { return PathTrust::isSafeIdentity (p.packId); },
      "\"packId\" must be a safe identity." },
    { [] (const Product& p) { return PathTrust::isSafeRelativePath (p.archiveRoot); },
      "\"archiveRoot\" must be a safe relative path." },
    { [] (const Product& p) { return ! p.archiveRoot.containsChar ('/'); },
      "\"archiveRoot\" must be one directory name, without \"/\"." },
    { [] (const Product& p) { return PathTrust::isSafeRelativeFilePath (p.defaultPatch); },
      "\"defaultPatch\" must be a safe relative path of a file." },
    { [] (const Product& p) { return PathTrust::isSafeRelativeFilePath (p.licenseFile); },
      "\"licenseFile\" must be a safe relative path of a file." },
    { [] (const Product& p) { return p.defaultPatch.startsWith (p.archiveRoot + "/"); },
      "\"defaultPatch\" must begin with \"archiveRoot\" and \"/\"." },
    { [] (const Product& p) { return p.licenseFile.startsWith (p.archiveRoot + "/"); },
      "\"licenseFile\" must begin with \"archiveRoot\" and \"/\"." },
    { [] (const Product& p) { return p.licenseId.isNotEmpty(); },
      "\"licenseId\" must not be empty." },
    { [] (const Product& p) { return p.licenseId.length() <= 64; },
      "\"licenseId\" must have at most 64 characters." },
    { [] (const Product& p) { return p.credit.isEmpty() == p.sourceUrl.isEmpty(); },
      "\"credit\" and \"sourceUrl\" must both be present or both be absent." },
    { [] (const Product& p) { return p.credit.length() <= 240; },
      "\"credit\" must have at most 240 characters." },
    { [] (const Product& p) { return ! p.credit.containsAnyOf ("\r\n\t"); },
      "\"credit\" must hold no line end and no tab." },
    { [] (const Product& p) { return p.sourceUrl.isEmpty() || PathTrust::isHttpsUrl (p.sourceUrl); },
      "\"sourceUrl\" must be an https address." },
};

constexpr Rule<ReleaseNote> noteRules[]
{
    { [] (const ReleaseNote& n) { return n.title.isNotEmpty(); },         "\"title\" must not be empty." },
    { [] (const ReleaseNote& n) { return n.summary.isNotEmpty(); },       "\"summary\" must not be empty." },
    { [] (const ReleaseNote& n) { return n.title.length() <= 80; },       "\"title\" must have at most 80 characters." },
    { [] (const ReleaseNote& n) { return n.summary.length() <= 320; },    "\"summary\" must have at most 320 characters." },
};

constexpr Rule<ProductPlatform> platformRules[]
{
    { [] (const ProductPlatform& p) { return PathTrust::isHttpsUrl (p.url); },          "\"url\" must be an https address." },
    { [] (const ProductPlatform& p) { return PathTrust::isValidSha256 (p.sha256); },    "\"sha256\" must have 64 hexadecimal digits." },
    { [] (const ProductPlatform& p) { return p.sizeBytes >= 1; },                       "\"sizeBytes\" must be at least 1." },
};

template <typename Value, size_t count>
const char* firstBroken (const Rule<Value> (&rules)[count], const Value& value)
{
    for (const auto& rule : rules)
        if (! rule.holds (value))
            return rule.text;

    return nullptr;
}
}

const char* brokenContentRule (const Product& soundPack)           { return firstBroken (contentRules, soundPack); }
const char* brokenNoteRule (const ReleaseNote& note)               { return firstBroken (noteRules, note); }
const char* brokenPlatformRule (const ProductPlatform& platform)   { return firstBroken (platformRules, platform); }
