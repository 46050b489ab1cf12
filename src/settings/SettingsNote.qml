import QtQuick
import Nimbarrow.Style

/// A remark under the settings, in as many lines as it needs.
Text {
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    color: Theme.secondary
    font.pixelSize: Theme.metaText
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
}
