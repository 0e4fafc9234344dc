import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// A kind of file in the review: its size, count and the folders the files lie in.
Rectangle {
    id: card

    required property var modelData
    property bool locationsOpen: false

    implicitHeight: column.implicitHeight + 32
    radius: 8
    color: Colors.soft

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 16
        spacing: 9

        RowLayout {
            Layout.fillWidth: true

            Label {
                Layout.fillWidth: true
                text: card.modelData.title
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Colors.ink
            }
            Label {
                text: card.modelData.sizeText
                font.pixelSize: 13
                font.family: "monospace"
                color: Colors.ink
            }
        }
        Label {
            text: card.modelData.countText
            font.pixelSize: 12
            color: Colors.muted
        }
        AbstractButton {
            id: toggle

            Accessible.role: Accessible.Button
            Accessible.name: "Locations"
            Accessible.onPressAction: if (toggle.enabled) toggle.clicked()
            onClicked: card.locationsOpen = !card.locationsOpen

            contentItem: Row {
                spacing: 5

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "chevron.right"
                    size: 10
                    color: Colors.ink
                    rotation: card.locationsOpen ? 90 : 0
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Locations"
                    font.pixelSize: 11
                    color: Colors.ink
                }
            }
        }
        Repeater {
            model: card.locationsOpen ? card.modelData.roots : []

            delegate: TextEdit {
                required property string modelData

                Layout.fillWidth: true
                Layout.leftMargin: 15
                text: modelData
                readOnly: true
                selectByMouse: true
                wrapMode: TextEdit.WrapAnywhere
                font.pixelSize: 11
                font.family: "monospace"
                color: Colors.ink
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
