/* broker_relay.exe: carries bytes between this machine's sockets and the named pipes of the Windows in which it runs.

   Prints the port of 127.0.0.1 on which it listens. A connection begins with the name of a pipe and a line feed; the answer is a line with
   the system's error when it opens that pipe, 0 for none. What the client sends from then on are pieces with their length before them, four
   bytes, the highest first: each becomes one write. What the pipe brings goes back as it is. When one side ends, so does the other. */
#include <winsock2.h>
#include <windows.h>

#include <stdio.h>
#include <stdlib.h>

#define NAME_LENGTH 128

typedef struct
{
    SOCKET client;
    HANDLE pipe;
} Exchange;

/* Ends one ReadFile or WriteFile that may still run; the bytes moved, 0 when the pipe has ended. */
static DWORD finish (HANDLE pipe, BOOL done, OVERLAPPED* operation)
{
    DWORD moved = 0;

    if (! done && GetLastError() != ERROR_IO_PENDING)
        return 0;

    return GetOverlappedResult (pipe, operation, &moved, TRUE) ? moved : 0;
}

static void pipe_to_client (const Exchange* exchange)
{
    char bytes[4096];
    OVERLAPPED operation = { 0 };
    operation.hEvent = CreateEventW (NULL, TRUE, FALSE, NULL);

    for (;;)
    {
        BOOL done = ReadFile (exchange->pipe, bytes, sizeof (bytes), NULL, &operation);
        int count = (int) finish (exchange->pipe, done, &operation);

        if (count == 0 || send (exchange->client, bytes, count, 0) != count)
            break;
    }

    CloseHandle (operation.hEvent);
}

/* Receives exactly so many bytes; false when the client has gone. */
static BOOL receive (SOCKET client, void* bytes, int count)
{
    int done = 0, piece = 1;

    for (; done < count && piece > 0; done += piece)
        piece = recv (client, (char*) bytes + done, count - done, 0);

    return piece > 0;
}

static DWORD WINAPI client_to_pipe (void* argument)
{
    static const u_long longest = 1 << 20;
    const Exchange* exchange = argument;
    u_long size = 0;
    OVERLAPPED operation = { 0 };
    operation.hEvent = CreateEventW (NULL, TRUE, FALSE, NULL);

    while (receive (exchange->client, &size, sizeof (size)) && ntohl (size) <= longest)
    {
        const int count = (int) ntohl (size);
        char* bytes = malloc (count);
        BOOL whole = receive (exchange->client, bytes, count);

        if (whole)
        {
            BOOL done = WriteFile (exchange->pipe, bytes, (DWORD) count, NULL, &operation);
            whole = finish (exchange->pipe, done, &operation) == (DWORD) count;
        }

        free (bytes);

        if (! whole)
            break;
    }

    CancelIoEx (exchange->pipe, NULL);
    CloseHandle (operation.hEvent);
    return 0;
}

/* Reads the name that the client sends; false when it is too long or the client has gone. */
static BOOL read_name (SOCKET client, char* name)
{
    for (int length = 0; length < NAME_LENGTH; ++length)
    {
        if (! receive (client, name + length, 1))
            return FALSE;

        if (name[length] == '\n')
        {
            name[length] = 0;
            return TRUE;
        }
    }

    return FALSE;
}

static void carry (Exchange* exchange)
{
    HANDLE thread = CreateThread (NULL, 0, client_to_pipe, exchange, 0, NULL);
    pipe_to_client (exchange);
    shutdown (exchange->client, SD_BOTH);
    WaitForSingleObject (thread, INFINITE);
    CloseHandle (thread);
    CloseHandle (exchange->pipe);
}

static DWORD WINAPI serve (void* argument)
{
    Exchange exchange = { (SOCKET) argument, INVALID_HANDLE_VALUE };
    char name[NAME_LENGTH], path[NAME_LENGTH + 16], answer[16];

    if (read_name (exchange.client, name))
    {
        DWORD error = ERROR_SUCCESS;
        snprintf (path, sizeof (path), "\\\\.\\pipe\\%s", name);
        exchange.pipe = CreateFileA (path, GENERIC_READ | GENERIC_WRITE, 0, NULL, OPEN_EXISTING,
                                     FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, NULL);

        if (exchange.pipe == INVALID_HANDLE_VALUE)
            error = GetLastError();

        send (exchange.client, answer, snprintf (answer, sizeof (answer), "%lu\n", error), 0);

        if (exchange.pipe != INVALID_HANDLE_VALUE)
            carry (&exchange);
    }

    closesocket (exchange.client);
    return 0;
}

int main (void)
{
    WSADATA data;
    struct sockaddr_in address = { 0 };
    int size = sizeof (address);
    SOCKET listener;

    WSAStartup (MAKEWORD (2, 2), &data);
    listener = socket (AF_INET, SOCK_STREAM, 0);
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl (INADDR_LOOPBACK);

    if (bind (listener, (struct sockaddr*) &address, size) != 0 || listen (listener, 16) != 0
        || getsockname (listener, (struct sockaddr*) &address, &size) != 0)
        return 1;

    printf ("%d\n", ntohs (address.sin_port));
    fflush (stdout);

    for (;;)
    {
        SOCKET client = accept (listener, NULL, NULL);

        if (client == INVALID_SOCKET)
            return 1;

        CloseHandle (CreateThread (NULL, 0, serve, (void*) client, 0, NULL));
    }
}
