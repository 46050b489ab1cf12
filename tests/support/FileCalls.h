#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace nimbarrow {

/// Sees every call of this program that changes files in one folder, before it takes effect. A program that
/// makes one of these answers such calls in the place of the C library, for Qt as well; one at a time.
class FileCalls {
public:
    /// `name` is the call's; an error number makes it fail with it, 0 lets it take effect. Calls made from
    /// here are not seen. A write is seen twice: before it, and with half of its bytes written.
    using Watch = std::function<int(const char* name)>;

    FileCalls(const QString& folder, Watch watch);
    ~FileCalls();

    [[nodiscard]] bool isWatched(const QByteArray& path) const;
    /// With the error number set.
    bool denies(const char* name, const QByteArray& path);

private:
    QByteArray m_folder;
    Watch m_watch;
    bool m_inside = false;
};

} // namespace nimbarrow
