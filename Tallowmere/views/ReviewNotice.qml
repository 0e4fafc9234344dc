import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// What the review sheet warns of: only eligible files, or whole folders and whom they touch.
ColumnLayout {
    id: notice

    property string owner
    property bool wholeFolders
    property var affectedTools: []

    spacing: 8

    RowLayout {
        Layout.fillWidth: true
        visible: !notice.wholeFolders
        spacing: 8

        Icon {
            name: "checkmark.shield"
            size: 14
            color: Colors.muted
        }
        Label {
            Layout.fillWidth: true
            text: "Only eligible cache/log files. Quit " + notice.owner + " first; changed files are skipped."
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: Colors.muted
        }
    }
    Rectangle {
        Layout.fillWidth: true
        visible: notice.wholeFolders
        implicitHeight: warning.implicitHeight + 28
        radius: 9
        color: Qt.rgba(Colors.orange.r, Colors.orange.g, Colors.orange.b, 0.07)

        RowLayout {
            id: warning

            anchors.fill: parent
            anchors.margins: 14
            spacing: 8

            Icon {
                name: "exclamationmark.triangle"
                size: 14
                color: Colors.orange
            }
            Label {
                Layout.fillWidth: true
                text: "Whole folders include saved data, settings and any nested files. Quit " + notice.owner
                      + " before removing them."
                wrapMode: Text.Wrap
                font.pixelSize: 12
                color: Colors.ink
            }
        }
    }
    Label {
        Layout.fillWidth: true
        visible: notice.wholeFolders && notice.affectedTools.length > 0
        text: "Also includes storage belonging to: " + notice.affectedTools.join(", ") + "."
        wrapMode: Text.Wrap
        font.pixelSize: 12
        color: Colors.muted
    }
}
