import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The warning shown while the home volume has less free space than the user's threshold.
Rectangle {
    implicitHeight: row.implicitHeight + 28
    radius: 8
    color: Qt.rgba(Colors.orange.r, Colors.orange.g, Colors.orange.b, 0.06)

    RowLayout {
        id: row

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
            text: ViewStyle.sizeText(AppStore.diskSpace ? AppStore.diskSpace.available : 0) + " left on "
                  + ViewStyle.computer + ". A good time to make a little room."
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: Colors.orange
        }
    }
}
