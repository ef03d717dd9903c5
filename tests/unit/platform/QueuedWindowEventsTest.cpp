// The window system's own headers come with the framework's, so this is compiled without the precompiled one. Their macros do not go
// with what other headers name.
#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include "platform/QueuedWindowEvents.h"
#include "support/GuiHarness.h"

using namespace zorva::test;

namespace
{
class ClosableWindow final : public juce::Component
{
public:
    ClosableWindow()
    {
        setSize (200, 100);
        setVisible (true);
        addToDesktop (juce::ComponentPeer::windowHasTitleBar);
    }

    void userTriedToCloseWindow() override { ++timesClosed; }

    int timesClosed = 0;
};

/** The framework unloads the window system's libraries at the end: what they still keep would look like a leak of ours. */
void keepLibrariesLoaded()
{
    for (const auto* const name : { "libX11.so.6", "libXext.so.6" })
        ASSERT_NE (::dlopen (name, RTLD_NOW | RTLD_NODELETE), nullptr) << name;
}

/** Lets the wish to close a window reach the library's queue and leaves nothing to be read from the connection. */
void queueClosing (const juce::Component& window)
{
    auto& x11 = *juce::X11Symbols::getInstance();
    auto* const display = juce::XWindowSystem::getInstance()->getDisplay();

    XEvent event {};
    event.xclient.type = ClientMessage;
    event.xclient.display = display;
    event.xclient.window = (::Window) window.getWindowHandle();
    event.xclient.message_type = x11.xInternAtom (display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = (long) x11.xInternAtom (display, "WM_DELETE_WINDOW", False);

    const juce::XWindowSystemUtilities::ScopedXLock lock;
    x11.xSendEvent (display, event.xclient.window, False, NoEventMask, &event);
    x11.xSync (display, False);     // awaits an answer, and what comes before it is queued
    ASSERT_GT (x11.xEventsQueued (display, QueuedAlready), 0);
}

struct QueuedWindowEventsTest : ::testing::Test
{
    void SetUp() override
    {
        keepLibrariesLoaded();

        // The framework begins anew, on the display that the test program was started on.
        const auto* const display = std::getenv ("HUB_TEST_DISPLAY");
        ASSERT_NE (display, nullptr) << "this needs an X display; scripts/xvfb.sh starts one";
        ::setenv ("DISPLAY", display, 1);
        juce::XWindowSystem::deleteInstance();
        ASSERT_NE (juce::XWindowSystem::getInstance()->getDisplay(), nullptr) << "there is no display " << display;
        window = std::make_unique<ClosableWindow>();
        pump (500);     // whatever comes with a new window
    }

    std::unique_ptr<ClosableWindow> window;
};
}

TEST_F (QueuedWindowEventsTest, AnEventInTheQueueIsHandledThoughNothingMoreArrives)
{
    const platform::QueuedWindowEvents queued (*window);
    queueClosing (*window);

    EXPECT_TRUE (pumpUntil ([this] { return window->timesClosed > 0; }));
    pump (100);
    EXPECT_EQ (window->timesClosed, 1);
}

TEST_F (QueuedWindowEventsTest, TheEventsOfEveryWindowAreHandled)
{
    const platform::QueuedWindowEvents queued (*window);
    ClosableWindow other;
    pump (500);
    queueClosing (other);

    EXPECT_TRUE (pumpUntil ([&] { return other.timesClosed > 0; }));
    EXPECT_EQ (window->timesClosed, 0);
}
