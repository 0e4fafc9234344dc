import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// A muted note of the settings panel.
Label {
    Layout.leftMargin: 24
    Layout.preferredWidth: 312
    wrapMode: Text.Wrap
    font.pixelSize: 11
    color: Colors.muted
}
