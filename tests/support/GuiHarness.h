#pragma once

#include <juce_gui_basics/juce_gui_basics.h>
#include <functional>

// Defined in juce_events for Linux and Windows, declared in no public header. Works with JUCE_MODAL_LOOPS_PERMITTED=0.
namespace juce::detail { bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages); }

namespace zorva::test
{
/** Runs the message loop until the condition holds; false on time-out. */
inline bool pumpUntil (const std::function<bool()>& condition, int timeoutMs = 5000)
{
    const auto end = juce::Time::getMillisecondCounterHiRes() + timeoutMs;

    for (;;)
    {
        if (condition())
            return true;

        if (juce::Time::getMillisecondCounterHiRes() >= end)
            return false;

        if (! juce::detail::dispatchNextMessageOnSystemQueue (true))
            juce::Thread::sleep (1);
    }
}

/** Runs everything that is already queued (and what that queues), for at least the given time. */
inline void pump (int ms = 0)
{
    pumpUntil ([] { return false; }, ms);
    while (juce::detail::dispatchNextMessageOnSystemQueue (true)) {}
}

//==============================================================================
inline juce::AlertWindow* currentAlert()
{
    auto* m = juce::ModalComponentManager::getInstance();

    for (int i = 0; i < m->getNumModalComponents(); ++i)
        if (auto* a = dynamic_cast<juce::AlertWindow*> (m->getModalComponent (i)))
            return a;

    return nullptr;
}

inline juce::String alertTitle (juce::AlertWindow& a)   { return a.getName(); }
inline juce::String alertMessage (juce::AlertWindow& a) { return a.getDescription().substring (a.getName().length() + 2); }   // description is "title. text"

inline juce::StringArray alertButtons (juce::AlertWindow& a)
{
    juce::StringArray s;
    for (int i = 0; i < a.getNumButtons(); ++i)
        s.add (a.getButton (i)->getButtonText());
    return s;
}

inline bool answerAlert (const juce::String& buttonText)
{
    juce::Component::SafePointer<juce::AlertWindow> a (currentAlert());
    if (a == nullptr || a->getButton (buttonText) == nullptr)
        return false;

    a->triggerButtonClick (buttonText);                        // asynchronous
    return pumpUntil ([&] { return a == nullptr; });           // showXxxAsync deletes the window when dismissed
}

//==============================================================================
/** With no X server JUCE knows no display, and AlertWindow, PopupMenu and the like dereference a null one.
    Displays::displays is a public member; only the accessor is const. Call once after ScopedJuceInitialiser_GUI. */
inline void ensureFakeDisplay()
{
    auto& d = const_cast<juce::Displays&> (juce::Desktop::getInstance().getDisplays());

    if (d.displays.isEmpty())
    {
        juce::Displays::Display one;
        one.totalArea = one.userArea = { 0, 0, 1400, 900 };
        one.isMain = true;
        one.scale = 1.0;
        one.dpi = 96.0;
        d.displays.add (one);
    }
}

/** A window system in memory: gives a component a peer, so that isShowing, focus, Tab, real mouse and key
    events and accessibility handlers work with no X server. */
class HeadlessPeer final : public juce::ComponentPeer
{
public:
    HeadlessPeer (juce::Component& c, int flags) : ComponentPeer (c, flags) {}
    ~HeadlessPeer() override { if (focused == this) focused = nullptr; }

    void* getNativeHandle() const override                            { return const_cast<HeadlessPeer*> (this); }
    void setVisible (bool) override                                   {}
    void setTitle (const juce::String& t) override                    { title = t; }
    void setBounds (const juce::Rectangle<int>& b, bool fs) override  { bounds = b; fullScreen = fs; handleMovedOrResized(); }
    juce::Rectangle<int> getBounds() const override                   { return bounds; }
    juce::Point<float> localToGlobal (juce::Point<float> p) override  { return p + bounds.getPosition().toFloat(); }
    juce::Point<float> globalToLocal (juce::Point<float> p) override  { return p - bounds.getPosition().toFloat(); }
    using ComponentPeer::localToGlobal;
    using ComponentPeer::globalToLocal;
    void setMinimised (bool m) override                               { minimised = m; }
    bool isMinimised() const override                                 { return minimised; }
    bool isShowing() const override                                   { return ! minimised; }
    void setFullScreen (bool f) override                              { fullScreen = f; }
    bool isFullScreen() const override                                { return fullScreen; }
    void setIcon (const juce::Image&) override                        {}
    bool contains (juce::Point<int> p, bool) const override           { return bounds.withZeroOrigin().contains (p); }
    OptionalBorderSize getFrameSizeIfPresent() const override         { return OptionalBorderSize { juce::BorderSize<int>() }; }
    juce::BorderSize<int> getFrameSize() const override               { return {}; }
    bool setAlwaysOnTop (bool) override                               { return true; }
    void toFront (bool takeFocus) override                            { handleBroughtToFront(); if (takeFocus) grabFocus(); }
    void toBehind (juce::ComponentPeer*) override                     {}
    bool isFocused() const override                                   { return focused == this; }
    void grabFocus() override
    {
        if (focused == this) return;
        if (auto* old = std::exchange (focused, this)) old->handleFocusLoss();
        handleFocusGain();
    }
    void repaint (const juce::Rectangle<int>&) override               {}
    void performAnyPendingRepaintsNow() override                      {}
    void setAlpha (float) override                                    {}
    juce::StringArray getAvailableRenderingEngines() override         { return { "Software Renderer" }; }
    void textInputRequired (juce::Point<int>, juce::TextInputTarget&) override {}

    juce::String title;

private:
    juce::Rectangle<int> bounds;
    bool minimised = false, fullScreen = false;
    static inline HeadlessPeer* focused = nullptr;
};

/** The test's stand-in for HubMainWindow: holds the content on a HeadlessPeer. */
class HeadlessWindow final : public juce::Component
{
public:
    explicit HeadlessWindow (juce::Component& content)
    {
        setBounds (0, 0, content.getWidth(), content.getHeight());
        setFocusContainerType (FocusContainerType::keyboardFocusContainer);   // as DocumentWindow/ResizableWindow does
        addAndMakeVisible (content);
        content.setTopLeftPosition (0, 0);
        setVisible (true);
        addToDesktop (0);
        peer().toFront (true);
        pump();
    }
    ~HeadlessWindow() override { removeFromDesktop(); removeAllChildren(); }

    HeadlessPeer& peer() { return *dynamic_cast<HeadlessPeer*> (getPeer()); }

    void mouse (juce::Point<float> p, int modifierFlags)
    {
        peer().handleMouseEvent (juce::MouseInputSource::InputSourceType::mouse, p, juce::ModifierKeys (modifierFlags),
                                 juce::MouseInputSource::defaultPressure, juce::MouseInputSource::defaultOrientation, juce::Time::currentTimeMillis());
    }

    void moveTo (juce::Component& target)
    {
        mouse (getLocalPoint (&target, target.getLocalBounds().getCentre()).toFloat(), 0);
        pump();
    }

    void click (juce::Component& target)
    {
        const auto p = getLocalPoint (&target, target.getLocalBounds().getCentre()).toFloat();
        mouse (p, 0);
        mouse (p, juce::ModifierKeys::leftButtonModifier);
        mouse (p, 0);
        pump();
    }

    bool key (const juce::KeyPress& k)   { const bool used = peer().handleKeyPress (k); pump(); return used; }
    bool key (int code)                  { return key (juce::KeyPress (code)); }
    void type (const juce::String& text)
    {
        for (auto t = text.getCharPointer(); ! t.isEmpty();)
        {
            const auto c = t.getAndAdvance();
            key (juce::KeyPress ((int) c, juce::ModifierKeys(), c));
        }
    }

    juce::Image snapshot() { return createComponentSnapshot (getLocalBounds(), true, 1.0f); }

private:
    juce::ComponentPeer* createNewPeer (int styleFlags, void*) override { return new HeadlessPeer (*this, styleFlags); }
};

inline void savePng (const juce::Image& image, const juce::File& file)
{
    file.deleteFile();
    juce::FileOutputStream out (file);
    juce::PNGImageFormat().writeImageToStream (image, out);
}
}
