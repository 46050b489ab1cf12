#pragma once

#include <QByteArray>
#include <QUrl>

#include <atomic>
#include <functional>

struct sockaddr;

namespace nimbarrow {

/// Gets a picture from the network as a stranger would: over TLS alone, from where it may, without saying
/// who or in which language asks, and never for long.
class ArtworkDownload {
public:
    /// Bytes.
    static constexpr qsizetype largest = 4 * 1024 * 1024;

    /// Asked of the very address that is connected to, at every redirection too.
    using MayConnect = std::function<bool(const sockaddr& address)>;

    /// To the public internet alone, trusting whom the system trusts.
    ArtworkDownload();
    /// `authorities` is a file with the certificates that are trusted; empty for the system's.
    ArtworkDownload(MayConnect mayConnect, QByteArray authorities);

    /// Empty when there is nothing to be had. Blocks for 10 s at most; any thread. Ends within about a second
    /// once `cancelled` is set.
    [[nodiscard]] QByteArray run(const QUrl& url, const std::atomic<bool>& cancelled) const;

private:
    MayConnect m_mayConnect;
    QByteArray m_authorities;
};

} // namespace nimbarrow
