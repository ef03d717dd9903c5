#pragma once

#include "support/FakeFileManager.h"
#include "support/TrustedTestServer.h"
#include "support/VaultItems.h"

/** What the Hub finds on its disk and on the network, made by hand before it starts. */
namespace zorva::test
{
/** A Windows program that cannot run but has this version. */
std::string programOfVersion (int major, int minor, int build);

/** A program that runs here: it writes the file "started" in the test's HOME. */
std::string programThatRuns();

/** The file that programThatRuns() writes. */
juce::File startedFile();

/** Installs an application by hand, record included. Returns its executable. */
juce::File putInstalled (const juce::String& id, const std::string& program);

/** Installs a sound pack by hand. Returns its version directory. */
juce::File putPackInstalled (const Product& pack);

/** A manifest of these products. */
juce::String manifestOf (const std::vector<Product>& products);

/** The user's own manifest: nothing else is shown but these products and what the Vault alone knows. */
void putLocalManifest (const std::vector<Product>& products);

/** The manifest of the last good refresh. */
void putCachedManifest (const std::vector<Product>& products);

/** The settings name this address for the catalogue. */
void useCatalogueAt (const juce::String& url);

/** The settings name an address that needs no network to be refused. */
void stayOffline();

/** The product, with a download that the server serves under "/files/" and the file's name. Its platform entry describes the
    published bytes, which need not be those that are served. */
Product served (TrustedTestServer&, Product, const std::string& published, const juce::String& fileName,
                const TrustedTestServer::Answer&);
Product served (TrustedTestServer&, Product, const std::string& published, const juce::String& fileName = "setup.exe");

/** An answer of these bytes. */
TrustedTestServer::Answer answerOf (const std::string& bytes);

/** The server's catalogue, which the settings name. */
void serveCatalogue (TrustedTestServer&, const std::vector<Product>&);
}
