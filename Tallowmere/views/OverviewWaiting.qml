import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// The tool card before the first result arrives.
ColumnLayout {
    spacing: 6

    RowLayout {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 36
        spacing: 8

        BusyIndicator {
            implicitWidth: 18
            implicitHeight: 18
            running: parent.visible
            Accessible.name: "Measuring"
        }
        Label {
            text: "Getting to know your tools…"
            font.pixelSize: 13
            color: Colors.ink
        }
    }
    Label {
        Layout.fillWidth: true
        Layout.bottomMargin: 36
        horizontalAlignment: Text.AlignHCenter
        text: "Measuring file sizes. Your conversations stay private."
        font.pixelSize: 11
        color: Colors.muted
    }
}
