#include "support/FileCalls.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace nimbarrow {

namespace {

FileCalls* current = nullptr;

} // namespace

FileCalls::FileCalls(const QString& folder, Watch watch)
    : m_folder(QFile::encodeName(folder))
    , m_watch(std::move(watch))
{
    current = this;
}

FileCalls::~FileCalls()
{
    current = nullptr;
}

bool FileCalls::isWatched(const QByteArray& path) const
{
    return !m_inside && path.startsWith(m_folder);
}

bool FileCalls::denies(const char* name, const QByteArray& path)
{
    if (!isWatched(path))
        return false;
    m_inside = true;
    const auto error = m_watch(name);
    m_inside = false;
    if (error != 0)
        errno = error;
    return error != 0;
}

namespace {

QByteArray pathOf(int file)
{
    std::array<char, PATH_MAX> path {};
    const auto link = "/proc/self/fd/" + QByteArray::number(file);
    const auto size = current ? ::readlink(link.constData(), path.data(), path.size()) : 0;
    return { path.data(), std::max(size, ssize_t { 0 }) };
}

bool isWatched(int file)
{
    return current && current->isWatched(pathOf(file));
}

bool denies(const char* name, const QByteArray& path)
{
    return current && current->denies(name, path);
}

bool denies(const char* name, int file)
{
    return denies(name, pathOf(file));
}

template <typename Subject, typename... Arguments>
int call(const char* name, Subject subject, long number, Arguments... arguments)
{
    return denies(name, subject) ? -1 : static_cast<int>(::syscall(number, arguments...));
}

} // namespace

} // namespace nimbarrow

using nimbarrow::call;
using nimbarrow::denies;

// The kernel is asked directly: the C library's own functions are hidden behind these, whose parameters have
// names that are not ours to use.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
// Visible, or the libraries would not find them before the real ones.
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...)
{
    std::va_list more;
    va_start(more, flags);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the analyzer overlooks the start above.
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return (flags & (O_CREAT | O_TRUNC)) != 0 && denies(__func__, path)
        ? -1
        : static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int mkdir(const char* path, mode_t mode) noexcept
{
    return call(__func__, path, SYS_mkdirat, AT_FDCWD, path, mode);
}

int chmod(const char* path, mode_t mode) noexcept
{
    return call(__func__, path, SYS_fchmodat, AT_FDCWD, path, mode);
}

int fchmod(int file, mode_t mode) noexcept
{
    return call(__func__, file, SYS_fchmod, file, mode);
}

int rename(const char* path, const char* target) noexcept
{
    return call(__func__, target, SYS_renameat2, AT_FDCWD, path, AT_FDCWD, target, 0);
}

int unlink(const char* path) noexcept
{
    return call(__func__, path, SYS_unlinkat, AT_FDCWD, path, 0);
}

int fsync(int file)
{
    // A kill takes nothing from the kernel, so it need not reach the disk.
    return denies(__func__, file) ? -1 : 0;
}

ssize_t write(int file, const void* data, size_t size)
{
    // Some files take a write whole or not at all.
    const auto half = nimbarrow::isWatched(file) ? static_cast<ssize_t>(size / 2) : 0;
    if (denies(__func__, file) || (half > 0 && ::syscall(SYS_write, file, data, half) != half))
        return -1;
    if (half > 0 && denies(__func__, file))
        return -1;
    const auto* const rest = static_cast<const char*>(data) + half;
    const auto written = ::syscall(SYS_write, file, rest, size - static_cast<size_t>(half));
    return written < 0 ? -1 : half + written;
}

} // extern "C"
#pragma GCC visibility pop
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
