#pragma once

#include "linux/display/DisplayPanel.h"
#include "linux/display/ScreenCutouts.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QStringList>

namespace nimbarrow {

/// The cut-outs that display-panel descriptions tell of: files named for a screen, or else for the machine,
/// which count for its built-in screen.
class DisplayPanels final : public ScreenCutouts {
    Q_OBJECT

public:
    /// Looks in the user's and the system's data folders, and at this machine's device tree.
    DisplayPanels();
    DisplayPanels(QStringList dataFolders, const QString& deviceTree);

    [[nodiscard]] std::optional<QRectF> topCutout(const QString& screen, QSize mode) const override;
    [[nodiscard]] NotchDeclaration declare(const QString& screen, QSize mode, const QRect& box) override;
    [[nodiscard]] bool isBuiltIn(const QString& screen) const override;

private:
    [[nodiscard]] std::optional<DisplayPanel> panelFor(const QString& key) const;
    void readAgain();
    void watch();

    QStringList m_folders;
    QStringList m_compatibles;
    int m_hiddenRows = 0;
    QFileSystemWatcher m_watcher;
    mutable QHash<QString, std::optional<DisplayPanel>> m_panels;
};

} // namespace nimbarrow
