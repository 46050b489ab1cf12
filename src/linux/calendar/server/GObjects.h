#pragma once

#include <QString>

#include <glib-object.h>
#include <memory>

namespace nimbarrow {

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// A reference to a GObject that is given back.
template <typename T>
using Reference = std::unique_ptr<T, Unreference>;

/// One more reference to an object that somebody else holds.
template <typename T>
[[nodiscard]] Reference<T> referenceTo(T* object)
{
    return Reference<T>(static_cast<T*>(g_object_ref(object)));
}

/// Takes over a text that GLib has allocated.
[[nodiscard]] inline QString taken(gchar* text)
{
    const auto result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

/// Where a call of GLib's puts why it failed.
class Failure {
public:
    Failure() = default;
    ~Failure() { g_clear_error(&m_error); }
    Q_DISABLE_COPY_MOVE(Failure)

    /// To be handed to the call; forgets the last one.
    [[nodiscard]] GError** out()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    [[nodiscard]] bool isSet() const { return m_error != nullptr; }
    [[nodiscard]] QString text() const { return m_error ? QString::fromUtf8(m_error->message) : QString(); }

private:
    GError* m_error = nullptr;
};

} // namespace nimbarrow
