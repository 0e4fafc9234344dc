import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// A small modal alert: a title, a message and an "OK" button.
Dialog {
    id: alert

    property string message
    property bool shown: false

    signal dismissed

    anchors.centerIn: parent
    width: 380
    modal: true
    padding: 22
    onShownChanged: shown ? open() : close()
    onClosed: dismissed()

    background: Rectangle {
        radius: 12
        color: Colors.surface
        border.color: Colors.line
    }
    header: Label {
        text: alert.title
        leftPadding: 22
        rightPadding: 22
        topPadding: 20
        wrapMode: Text.Wrap
        font.pixelSize: 15
        font.weight: Font.DemiBold
        color: Colors.ink
    }

    ColumnLayout {
        width: parent.width
        spacing: 18

        Label {
            Layout.fillWidth: true
            text: alert.message
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: Colors.ink
        }
        AccentButton {
            Layout.alignment: Qt.AlignRight
            text: "OK"
            onClicked: alert.close()
        }
    }
}
