#include "vault/DownloadVerification.h"

#include "app/PathTrust.h"
#include "support/FileHash.h"
#include "support/Text.h"
#include "vault/PromotionTransaction.h"
#include "vault/VaultStore.h"

DownloadVerification::Outcome DownloadVerification::run() const
{
    if (const auto failure = integrityFailure(); failure.isNotEmpty())
    {
        partFile.deleteFile();
        return { false, failure };
    }

    return promote();
}

juce::String DownloadVerification::integrityFailure() const
{
    if (partFile.getSize() != expectedSize)
        return utf8 ("Integrity check failed (size mismatch) — the download was discarded. Please try again.");

    if (sha256OfFile (partFile) != expectedSha256)
        return utf8 ("Integrity check failed (SHA-256 mismatch) — the download was discarded. Please try again.");

    return {};
}

DownloadVerification::Outcome DownloadVerification::promote() const
{
    PromotionTransaction transaction;
    juce::String message;

    if (! transaction.activate (partFile, targetFile, message, VaultStore::vaultRecordFileFor (product.id)))
        return { false, message };

    if (! VaultStore::writeVaultRecord (product, platformKey, targetFile))
    {
        juce::String detail;

        if (! transaction.rollback (detail))
            return { false, "Could not update the vault record. " + detail };

        return { false, "Could not update the vault record; the last-good installer was restored."
                            + (detail.isNotEmpty() ? " " + detail : juce::String()) };
    }

    if (! transaction.commit (message))
        return { false, message };

    const auto retained = retirePrevious();
    return { true, message + (message.isNotEmpty() && retained.isNotEmpty() ? " " : "") + retained };
}

juce::String DownloadVerification::retirePrevious() const
{
    // An edited record can name itself as the installer; the one just written must stay.
    const bool isObsolete = previousInstaller.exists()
                         && previousInstaller != targetFile
                         && previousInstaller != VaultStore::vaultRecordFileFor (product.id)
                         && PathTrust::isTrustedPathUnder (targetFile.getParentDirectory(), previousInstaller, true);

    if (! isObsolete || PromotionTransaction::removePath (previousInstaller))
        return {};

    return "The obsolete installer was retained at " + previousInstaller.getFullPathName() + ".";
}
