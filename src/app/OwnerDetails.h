#pragma once

/** What only the owner of the product can say. The values here are neutral examples in reserved domains (RFC 2606) and name
    nobody; a release replaces them in this one place. Texts are UTF-8, for utf8(). */
namespace OwnerDetails
{
/** Where every mail draft goes. */
constexpr const char* contactAddress = "hello@zorva.example";

/** The product's public web site. */
constexpr const char* website = "https://www.zorva.example/";

/** Who stands behind the product, and as what. */
constexpr const char* creatorName = "The ZORVA Team";
constexpr const char* creatorRole = "Makers of ZORVA DAW";

/** How the about page goes on after its first sentence. */
constexpr const char* creatorAccount = "It was created by musicians and engineers who wanted one calm place for their tools: "
                                       "everything you install stays on your machine, ready when the network is not.";

/** The two lines at the foot of the about page. */
constexpr const char* copyrightLine = "Copyright \xc2\xa9 2026 The ZORVA Team. All rights reserved.";
constexpr const char* trademarkLine = "ZORVA is a trademark of its owner. All other names belong to theirs.";
}
