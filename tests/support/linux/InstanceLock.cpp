#include "support/InstanceLock.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"

namespace zorva::test
{
void makeInstanceLockPrivate (const juce::String& folderName)
{
    const auto folder = freshFolder (folderName);
    write (in (folder, "juceAppLock_ZORVA Hub"), {});
    PrivateMounts::showInPlaceOf (folder, juce::File ("/var/tmp"));
}
}
