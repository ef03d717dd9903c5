#pragma once

#include "support/JournalBuilder.h"
#include "support/PromotionScene.h"
#include "support/RecoveryRun.h"

namespace zorva::test
{
/** One recovery of a scene's folder with its own record approved. */
inline RecoveryRun recoverScene (const PromotionScene& scene)    { return recover (scene.folder, scene.metadata); }

/** An old payload and record under their backups, the new ones in place, and the journal in this state. */
inline void interrupt (const PromotionScene& scene, const juce::String& state)
{
    JournalBuilder journal (scene.folder);
    write (in (scene.folder, "setup.exe.backup-1"), "old");
    write (in (scene.folder, "vault.json.promotion-backup-1"), "record");
    write (scene.target, "new");
    write (scene.metadata, "new record");
    scene.staged.deleteFile();
    journal.state = state;
    journal.save();
}
}
