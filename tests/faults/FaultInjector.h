#pragma once

#include <string>

/** Makes one file operation of this process fail, or kills the process there.

    The program that links this defines the C library's own names (open for writing, write, rename, unlink, mkdir and the rest), so
    that every such operation below one directory is counted, whoever makes it. Single-threaded use. */
namespace faults
{
/** What happens at the chosen operation. */
enum class Kind
{
    none,           ///< only count
    failOnce,       ///< that one operation fails with the given errno
    failFromThere,  ///< that operation and all later ones fail, as on a disk that stays full
    kill            ///< SIGKILL in its place; a write is torn in the middle first
};

struct Plan
{
    Kind kind = Kind::none;
    int error = 0;       ///< an errno value
    int operation = 0;   ///< counted from 1
};

/** Begins to count operations on paths below root, an absolute path without a trailing slash. */
void arm (const std::string& root, const Plan& plan);

/** Ends the counting. The number of operations seen since arm(). */
int disarm();
}
