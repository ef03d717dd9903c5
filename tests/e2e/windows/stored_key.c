/* stored_key.exe TARGET: prints the secret of this generic entry of the Credential Manager, nothing when there is none. Ends with the
   system's error, 0 for none. */
#include <windows.h>
#include <wincred.h>

#include <stdio.h>

int main (int count, char** arguments)
{
    CREDENTIALA* entry = NULL;

    if (count != 2)
        return ERROR_BAD_ARGUMENTS;

    if (! CredReadA (arguments[1], CRED_TYPE_GENERIC, 0, &entry))
        return (int) GetLastError();

    fwrite (entry->CredentialBlob, 1, entry->CredentialBlobSize, stdout);
    CredFree (entry);
    return 0;
}
