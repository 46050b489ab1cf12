#pragma once

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace nimbarrow {

/// The window of a text editor, which has the keyboard once the compositor has given it. To the desktop it is
/// the program "org.example.editor".
class EditorWindow final : public QQuickWindow {
public:
    EditorWindow()
    {
        QGuiApplication::setDesktopFileName(QStringLiteral("org.example.editor"));
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nTextEdit { focus: true }", {});
        m_editor.reset(qobject_cast<QQuickItem*>(component.create()));
        if (!m_editor)
            qFatal("%s", qPrintable(component.errorString()));
        m_editor->setParentItem(contentItem());
        show();
    }

    /// Whether another window has the keyboard, as Qt sees it. A test waits for this, or for isActive(),
    /// before the next window gets it: Qt compares with what it has not yet told, and of two changes at once
    /// one is lost.
    [[nodiscard]] bool isLeft() const { return !isActive(); }

    [[nodiscard]] QString text() const { return m_editor->property("text").toString(); }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_editor;
};

} // namespace nimbarrow
