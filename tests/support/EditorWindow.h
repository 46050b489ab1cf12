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

    [[nodiscard]] QString text() const { return m_editor->property("text").toString(); }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_editor;
};

} // namespace nimbarrow
