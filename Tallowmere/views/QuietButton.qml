import QtQuick
import QtQuick.Controls.Basic
import Tallowmere

// The light button of a secondary action, with an optional icon before its text.
Button {
    id: control

    property string iconName

    font.pixelSize: 12
    font.weight: Font.Medium
    leftPadding: 12
    rightPadding: 12
    topPadding: 9
    bottomPadding: 9
    opacity: enabled ? 1 : 0.4
    Accessible.onPressAction: if (control.enabled) control.clicked()

    contentItem: Row {
        spacing: 6

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: control.iconName !== ""
            name: control.iconName
            size: 13
            color: Colors.ink
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: control.text !== ""
            text: control.text
            font: control.font
            color: Colors.ink
        }
    }
    background: Rectangle {
        radius: 7
        color: control.down ? Colors.soft : Colors.surface
        border.width: 1
        border.color: Colors.line
    }
}
