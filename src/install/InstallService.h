#pragma once

#include "catalogue/Product.h"
#include "vault/PromotionTransaction.h"

#include <functional>

/** Installs products from their vaulted installers, with no network.

    The file in the Vault is first proved to be byte for byte what was verified at download; the new content is staged beside its
    destination, swapped in by a journalled promotion and recorded. A failure leaves the previous install or restores it.

    The operations are called on the message thread unless they say otherwise. One install runs at a time: workers hold the install
    lock for their whole run, and a worker may outlive this object. */
class InstallService
{
public:
    /** Whether it worked, and a whole sentence for the user. */
    using InstallCallback = std::function<void (bool, const juce::String&)>;

    /** Recovers the products directory and every sound pack's directory, on the calling thread. */
    InstallService();
    ~InstallService();

    /** What recovery could not finish; one sentence each. */
    const juce::StringArray& getRecoveryNotes() const { return recoveryNotes; }

    /** Verifies the installer on the calling thread and installs it on a worker. onDone comes on the message thread exactly once,
        also when this object has gone by then, so it must guard what it touches. */
    void install (const Product& product, const juce::File& installer, InstallCallback onDone);

    /** The same operation under the name of the action that repeats an install. */
    void reinstall (const Product& product, const juce::File& installer, InstallCallback onDone);

    /** True when the file in the Vault is exactly what its record says, hash included, and for a sound pack what the product says.
        version gets the record's version; error a whole sentence on failure. Takes as long as reading the file. */
    static bool verifyVaultedInstaller (const Product& product, const juce::File& installer, juce::String& version, juce::String& error);

    /** Where the product is installed: an application's executable, a sound pack's version directory, or the empty file. */
    static juce::File installedLocation (const Product& product);

    /** An installed application's executable: the recorded one, else one in the product's directory that bears its name; or the
        empty file. */
    static juce::File findInstalledExecutable (const juce::String& id);

    /** Starts the installed application without a shell. False when there is none or it could not be started. */
    static bool launch (const juce::String& id);

    /** The product version of an installed .exe as "major.minor.build", or empty. */
    static juce::String installedVersion (const juce::File& file);

    // ---- application install; worker thread, under the install lock
    /** Stages and activates an .exe or .zip. On success the transaction is active, installedFile is the executable's place and
        message says where; on failure message says why and nothing has changed. */
    static bool installApplication (const juce::String& id, const juce::File& installer, juce::String& message,
                                    juce::File& installedFile, PromotionTransaction& transaction);

    /** Writes the product's entry of installed.json. False with a whole sentence in error. */
    static bool writeInstallRecord (const juce::String& id, const juce::File& file, juce::String& error);

    /** Commits the promotion when the record was written, else rolls it back; message gets what the user is told. */
    static bool finishApplicationInstall (PromotionTransaction& transaction, bool recordOk, const juce::String& recordError,
                                          juce::String& message);

    /** The file is an .exe that really lies in the product's own directory. */
    static bool isOwnedInstallPath (const juce::String& id, const juce::File& file);

    /** The name without extension is the product's id, with blanks for "-" allowed, in any case. */
    static bool matchesProductName (const juce::String& stem, const juce::String& id);

    // ---- sound packs; rootOverride stands in for the content root unless it is the empty file
    /** Judges, unpacks, judges again and promotes a sound pack. message gets what the user is told either way. Worker thread. */
    static bool installContent (const Product& product, const juce::File& archive, juce::String& message,
                                const juce::File& rootOverride);

    /** The product's own content fields are complete and safe. */
    static bool validateContentProduct (const Product& product);

    /** The directory that holds all packs. */
    static juce::File contentRoot (const juce::File& rootOverride);

    /** Every name is a safe relative path and no two are the same place on a file system that ignores case. */
    static bool hasUniquePaths (const juce::StringArray& names);

    /** The unpacked tree holds patch and licence where the product says, and no links. error gets a sentence on failure. */
    static bool verifyExtractedContent (const juce::File& staging, const Product& product, juce::String& error);

    /** Writes the canonical manifest.json, replacing one from the archive. error gets a sentence on failure. */
    static bool writeContentManifest (const Product& product, const juce::File& staging, juce::String& error);

    /** The installed version directory of exactly this product version, or the empty file. */
    static juce::File locateInstalledContent (const Product& product, const juce::File& rootOverride);

    /** Recovers every pack's directory; notes are appended. */
    static void recoverContentRoots (juce::StringArray& notes, const juce::File& rootOverride);

private:
    juce::StringArray recoveryNotes;

    JUCE_DECLARE_WEAK_REFERENCEABLE (InstallService)
    JUCE_DECLARE_NON_COPYABLE (InstallService)
};
