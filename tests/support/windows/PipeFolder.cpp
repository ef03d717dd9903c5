#include "support/PipeFolder.h"

namespace zorva::test
{
// Pipes lie in a place of their own here, not in the file system.
void makePipeFolderPrivate() {}
}
