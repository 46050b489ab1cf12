#pragma once

#include "linux/pasteboard/PasteboardReadings.h"
#include "linux/pasteboard/Selection.h"
#include "linux/pasteboard/X11PasteboardOwner.h"
#include "linux/pasteboard/X11PasteboardReading.h"

#include <vector>

namespace nimbarrow {

/// The X server's CLIPBOARD selection, on a connection of its own.
class X11Selection final : public Selection {
public:
    /// A drag of another program that has ended over a window of ours.
    struct Drag {
        xcb_window_t source = XCB_WINDOW_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        /// What is offered; empty when the source has the whole list.
        std::vector<xcb_atom_t> targets;
    };

    /// `report` is called on the thread that uses it.
    X11Selection(const QByteArray& display, const PasteboardLimits& limits, Report report);

    [[nodiscard]] bool works() const override { return m_owner && m_connection.works(); }
    void claim(const std::deque<Write>& writes) override;
    void addImage(const QByteArray& png) override;
    void save() override { m_owner->save(); }
    [[nodiscard]] bool isGiving() const override { return m_owner->isGiving(); }
    void step(int wakeup) override;

    void readDrop(const Drag& drag, std::function<void(PasteboardSnapshot)> done);

private:
    void handle(const xcb_generic_event_t& event);
    void ownerChanged(xcb_window_t owner, xcb_timestamp_t time, uint32_t sequence);
    void reportResults();
    void sleep(int wakeup);

    X11PasteboardConnection m_connection;
    PasteboardLimits m_limits;
    Report m_report;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    std::unique_ptr<X11PasteboardOwner> m_owner;
    PasteboardReadings<X11PasteboardReading> m_readings { m_limits.order };
    PasteboardReadings<X11PasteboardReading> m_drops { m_limits.order };
    int m_claims = 0;
    int m_claimsSeen = 0;
    quint64 m_sequence = 0;
};

} // namespace nimbarrow
