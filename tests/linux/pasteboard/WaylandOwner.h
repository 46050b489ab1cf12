#pragma once

#include "linux/pasteboard/PasteboardBed.h"
#include "linux/pasteboard/WaylandDataControl.h"

#include <QFile>

#include <csignal>
#include <data-control-client.h>
#include <poll.h>
#include <unistd.h>
#include <wayland-client.h>

namespace nimbarrow {

/// Another program that copies on a compositor.
class WaylandOwner final : public ClipboardOwner {
public:
    explicit WaylandOwner(const QByteArray& display)
        : m_display(wl_display_connect(display.constData()))
    {
        static constexpr zwlr_data_control_device_v1_listener listener {
            [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {},
            [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
                if (offer)
                    zwlr_data_control_offer_v1_destroy(offer);
            },
            [](void*, zwlr_data_control_device_v1*) {},
            [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {},
        };
        const WaylandRegistry registry(m_display);
        m_seat = registry.bind<wl_seat>(wl_seat_interface, 1);
        m_control = std::make_unique<WaylandDataControl>(registry);
        m_device = m_control->createDevice(m_seat);
        zwlr_data_control_device_v1_add_listener(m_device, &listener, nullptr);
    }

    ~WaylandOwner() override
    {
        stop();
        for (const int file : std::as_const(m_open))
            ::close(file);
        // Offers that nobody has looked at yet.
        wl_display_roundtrip(m_display);
        if (m_source)
            zwlr_data_control_source_v1_destroy(m_source);
        zwlr_data_control_device_v1_destroy(m_device);
        m_control.reset();
        wl_seat_destroy(m_seat);
        wl_display_disconnect(m_display);
    }
    Q_DISABLE_COPY_MOVE(WaylandOwner)

private:
    void claim() override
    {
        static constexpr zwlr_data_control_source_v1_listener listener {
            [](void* self, zwlr_data_control_source_v1*, const char* type, int32_t file) {
                static_cast<WaylandOwner*>(self)->send(type, file);
            },
            [](void* self, zwlr_data_control_source_v1* source) {
                auto& current = static_cast<WaylandOwner*>(self)->m_source;
                zwlr_data_control_source_v1_destroy(source);
                if (current == source)
                    current = nullptr;
            },
        };
        auto* const source = m_control->createSource();
        m_source = source;
        zwlr_data_control_source_v1_add_listener(source, &listener, this);
        for (const auto& [type, bytes] : std::as_const(m_offer))
            zwlr_data_control_source_v1_offer(source, type.constData());
        zwlr_data_control_device_v1_set_selection(m_device, source);
    }

    void sync() override { wl_display_roundtrip(m_display); }

    void serve() override
    {
        // Who reads may leave.
        sigset_t brokenPipe {};
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        while (!m_stop && wl_display_get_error(m_display) == 0) {
            while (wl_display_prepare_read(m_display) != 0)
                wl_display_dispatch_pending(m_display);
            wl_display_flush(m_display);
            pollfd source { wl_display_get_fd(m_display), POLLIN, 0 };
            if (poll(&source, 1, 5) > 0)
                wl_display_read_events(m_display);
            else
                wl_display_cancel_read(m_display);
            wl_display_dispatch_pending(m_display);
        }
    }

    void send(const QByteArray& type, int file)
    {
        ++m_dataRequests;
        if (m_manner == Manner::SilentOnData
            || (m_manner == Manner::SilentAfterIncr && writeAll(file, "begun"))) {
            m_open << file;
            return;
        }
        if (m_manner == Manner::Busy)
            m_goOn.acquire();
        for (const auto& [name, bytes] : std::as_const(m_offer)) {
            if (name != type)
                continue;
            if (!bytes.isEmpty())
                writeAll(file, bytes);
            while (bytes.isEmpty() && m_piecesSent < m_pieces && writeAll(file, m_piece))
                ++m_piecesSent;
        }
        ::close(file);
        claimNext();
    }

    static bool writeAll(int file, const QByteArray& bytes)
    {
        QFile pipe;
        return pipe.open(file, QFile::WriteOnly | QFile::Unbuffered) && pipe.write(bytes) == bytes.size();
    }

    wl_display* m_display;
    wl_seat* m_seat = nullptr;
    std::unique_ptr<WaylandDataControl> m_control;
    zwlr_data_control_device_v1* m_device = nullptr;
    /// What stands on the clipboard; null when another program's does.
    zwlr_data_control_source_v1* m_source = nullptr;
    /// What it does not go on with.
    QList<int> m_open;
};

} // namespace nimbarrow
