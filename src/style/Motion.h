#pragma once

#include <QObject>
#include <qqmlintegration.h>

class QJSEngine;
class QQmlEngine;

namespace nimbarrow {

/// Whether the interface may move. There is one desktop, so there is one answer in the process.
class Motion final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The user asked for less motion: what would move or fade is simply there.
    Q_PROPERTY(bool reduced READ isReduced NOTIFY reducedChanged FINAL)

public:
    static Motion& instance();
    static Motion* create(QQmlEngine* engine, QJSEngine* script);

    [[nodiscard]] bool isReduced() const { return m_reduced; }
    void setReduced(bool reduced);

Q_SIGNALS:
    void reducedChanged();

private:
    Motion() = default;

    bool m_reduced = false;
};

} // namespace nimbarrow
