#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// first_paint NAME COLOUR COMMAND...: starts the command and prints the milliseconds until the window of this name shows COLOUR, six
// hexadecimal digits, near its upper left corner; then ends the command with SIGINT. What a window shows before it is painted is
// left to chance: what stood there before.

namespace
{
bool hasName (Display* display, Window window, const char* name)
{
    XTextProperty title;

    if (XGetWMName (display, window, &title) == 0)      // in whatever encoding: the framework sets UTF-8
        return false;

    const auto same = title.value != nullptr && std::strcmp (reinterpret_cast<const char*> (title.value), name) == 0;
    XFree (title.value);
    return same;
}

/** True when the window is on the screen and shows the colour. The framework gives helper windows of one pixel the same name. */
bool hasPainted (Display* display, Window window, unsigned long colour)
{
    XWindowAttributes attributes;

    if (XGetWindowAttributes (display, window, &attributes) == 0 || attributes.map_state != IsViewable || attributes.width < 900)
        return false;

    auto* image = XGetImage (display, window, 4, 4, 1, 1, AllPlanes, ZPixmap);

    if (image == nullptr)
        return false;

    const auto pixel = XGetPixel (image, 0, 0) & 0xffffffu;
    XDestroyImage (image);
    return pixel == colour;
}

bool anyPainted (Display* display, Window parent, const char* name, unsigned long colour)
{
    Window root = 0, above = 0, *children = nullptr;
    unsigned int count = 0;

    if (XQueryTree (display, parent, &root, &above, &children, &count) == 0)
        return false;

    bool painted = false;

    for (unsigned int i = 0; i < count && ! painted; ++i)
        painted = (hasName (display, children[i], name) && hasPainted (display, children[i], colour))
               || anyPainted (display, children[i], name, colour);

    if (children != nullptr)
        XFree (children);

    return painted;
}

int ignoreErrors (Display*, XErrorEvent*) { return 0; }
}

int main (int argc, char** argv)
{
    if (argc < 4)
        return 2;

    auto* display = XOpenDisplay (nullptr);

    if (display == nullptr)
        return 2;

    XSetErrorHandler (ignoreErrors);
    const auto colour = std::strtoul (argv[2], nullptr, 16);
    const auto start = std::chrono::steady_clock::now();
    const auto child = fork();

    if (child == 0)
    {
        execv (argv[3], argv + 3);
        _exit (127);
    }

    bool painted = false;
    double milliseconds = 0.0;

    while (! painted && milliseconds < 30000.0)
    {
        usleep (2000);
        milliseconds = std::chrono::duration<double, std::milli> (std::chrono::steady_clock::now() - start).count();

        painted = anyPainted (display, DefaultRootWindow (display), argv[1], colour);
    }

    kill (child, SIGINT);
    int status = 0;
    waitpid (child, &status, 0);

    if (! painted)
        return 1;

    std::printf ("%.1f\n", milliseconds);
    return 0;
}
