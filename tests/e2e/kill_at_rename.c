/* Preloaded into the Hub by the crash tests: ends the process, as kill -9 would, at one exact step of a promotion.

   HUB_KILL_AT is "before:N:PATTERN" or "after:N:PATTERN": the N-th rename whose destination's file name matches the shell
   pattern. Everything else passes through unchanged. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fnmatch.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int isTheOne (const char* destination, const char* moment)
{
    static int count = 0;
    char when[16], pattern[1024];
    int number;
    const char* wish = getenv ("HUB_KILL_AT");
    const char* name = strrchr (destination, '/');

    if (wish == NULL || sscanf (wish, "%15[a-z]:%d:%1023s", when, &number, pattern) != 3 || strcmp (when, moment) != 0)
        return 0;

    if (fnmatch (pattern, name != NULL ? name + 1 : destination, 0) != 0)
        return 0;

    return __sync_add_and_fetch (&count, 1) == number;
}

int rename (const char* source, const char* destination)
{
    int (*const original) (const char*, const char*) = (int (*) (const char*, const char*)) dlsym (RTLD_NEXT, "rename");
    int result;

    if (isTheOne (destination, "before"))
        kill (getpid(), SIGKILL);

    result = original (source, destination);

    if (isTheOne (destination, "after"))
        kill (getpid(), SIGKILL);

    return result;
}
