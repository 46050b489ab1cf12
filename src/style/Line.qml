import QtQuick

/// One line of plain text that ends in an ellipsis where it does not fit.
Text {
    color: Theme.title
    elide: Text.ElideRight
    font.pixelSize: Theme.smallText
    maximumLineCount: 1
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
