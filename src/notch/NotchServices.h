#pragma once

namespace nimbarrow {

class Applications;
class ClipboardMonitor;
class ClipboardStore;
class Keystrokes;
class PanelWindow;
class Paster;
class PasteboardCapture;
class Pointer;
class Scheduler;
class Screens;
class SessionLock;
class Settings;

/// What the surface works with. All of it outlives the controller.
struct NotchServices {
    Screens& screens;
    const SessionLock& sessionLock;
    Pointer& pointer;
    PanelWindow& panelWindow;
    Applications& applications;
    Keystrokes& keystrokes;
    Scheduler& scheduler;
    const Settings& settings;
    ClipboardStore& store;
    ClipboardMonitor& monitor;
    PasteboardCapture& capture;
    Paster& paster;
};

} // namespace nimbarrow
