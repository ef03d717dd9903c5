/* The program inside every sample product. It proves that it was started: it adds one line to the file
   "zorva-sample-programs.log" in the user's home, and on Windows it also shows a message box.

   SAMPLE_NAME and SAMPLE_VERSION come from sample.h, which build_samples.py writes for each product. */
#include <stdio.h>
#include <stdlib.h>

#include "sample.h"

#ifdef _WIN32
#include <windows.h>
#define HOME_VARIABLE "USERPROFILE"

/* The working folder that the program was given by whoever started it. */
static void describeSurroundings (FILE* log)
{
    char folder[4096];
    const DWORD length = GetCurrentDirectoryA (sizeof folder, folder);
    fprintf (log, " folder=%s", length > 0 && length < sizeof folder ? folder : "?");
}
#else
#include <sys/stat.h>
#include <unistd.h>
#define HOME_VARIABLE "HOME"

/* The file-creation mask and the working folder that the program was given by whoever started it. */
static void describeSurroundings (FILE* log)
{
    char folder[4096];
    const mode_t mask = umask (0);
    umask (mask);
    fprintf (log, " umask=%03o folder=%s", (unsigned) mask, getcwd (folder, sizeof folder) != NULL ? folder : "?");
}
#endif

int main (int argc, char** argv)
{
    char path[4096];
    FILE* log;
    const char* home = getenv (HOME_VARIABLE);
    (void) argv;

    if (home == NULL || snprintf (path, sizeof path, "%s/zorva-sample-programs.log", home) >= (int) sizeof path)
        return 1;

    log = fopen (path, "a");

    if (log == NULL)
        return 1;

    fprintf (log, "%s %s arguments=%d", SAMPLE_NAME, SAMPLE_VERSION, argc - 1);
    describeSurroundings (log);
    fputc ('\n', log);

    if (fclose (log) != 0)
        return 1;

#ifdef _WIN32
    MessageBoxA (NULL, SAMPLE_NAME " " SAMPLE_VERSION, "Sample program", MB_OK | MB_ICONINFORMATION);
#endif
    return 0;
}
