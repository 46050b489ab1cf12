#pragma once

#include "linux/pasteboard/PasteboardBed.h"
#include "linux/pasteboard/X11PasteboardConnection.h"

#include <QList>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

namespace nimbarrow {

/// Another program that copies on an X server, on a connection and a thread of its own.
class ForeignOwner final : public ClipboardOwner {
public:
    explicit ForeignOwner(const QByteArray& display, const QByteArray& selection = "CLIPBOARD");
    ~ForeignOwner() override;
    Q_DISABLE_COPY_MOVE(ForeignOwner)

    void copy(Offer offer, Manner manner = Manner::Polite, int incrPieces = 0) override;
    void copyEach(const QList<QByteArray>& texts) override;

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    [[nodiscard]] int dataRequests() const override { return m_dataRequests; }
    [[nodiscard]] int piecesSent() const override { return m_piecesSent; }

    /// What the server refused, such as an answer to a window that is gone. It ends many a program.
    [[nodiscard]] int errors() const { return m_errors; }

private:
    void claim();
    void serveUntilAsked(int times);
    void answer(const xcb_selection_request_event_t& request);
    void sendPiece(xcb_window_t requestor, xcb_atom_t property);
    void start(std::function<void()> work);

    X11PasteboardConnection m_connection;
    QByteArray m_selection;
    xcb_window_t m_window;
    Offer m_offer;
    Manner m_manner = Manner::Polite;
    int m_incrPieces = 0;
    xcb_atom_t m_incrTarget = XCB_ATOM_NONE;
    std::atomic_int m_dataRequests = 0;
    std::atomic_int m_piecesSent = 0;
    std::atomic_int m_errors = 0;
    std::atomic_bool m_stop = false;
    std::thread m_thread;
};

} // namespace nimbarrow
