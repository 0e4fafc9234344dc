import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// A whole folder in the review: its size, place, what it holds and how many items.
Rectangle {
    id: card

    required property var modelData

    implicitHeight: column.implicitHeight + 32
    radius: 8
    color: Colors.soft

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 16
        spacing: 7

        RowLayout {
            Layout.fillWidth: true

            Label {
                Layout.fillWidth: true
                text: card.modelData.category
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
        TextEdit {
            Layout.fillWidth: true
            text: card.modelData.shortPath
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.WrapAnywhere
            font.pixelSize: 11
            font.family: "monospace"
            color: Colors.ink
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            Layout.fillWidth: true
            text: card.modelData.summary
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: Colors.muted
        }
        Label {
            text: card.modelData.itemsText
            font.pixelSize: 11
            color: Colors.muted
        }
    }
}
