import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// The second confirmation before a permanent deletion.
Dialog {
    id: alert

    required property var review
    property bool shown: false
    property bool deleting: false

    signal answered(bool deleting)

    anchors.centerIn: parent
    width: 420
    modal: true
    padding: 22
    onShownChanged: {
        if (shown) {
            deleting = false
            open()
        } else {
            close()
        }
    }
    onClosed: answered(deleting)

    background: Rectangle {
        radius: 12
        color: Colors.surface
        border.color: Colors.line
    }
    header: Label {
        text: "Permanently delete these items?"
        leftPadding: 22
        rightPadding: 22
        topPadding: 20
        font.pixelSize: 15
        font.weight: Font.DemiBold
        color: Colors.ink
    }

    ColumnLayout {
        width: parent.width
        spacing: 18

        Label {
            Layout.fillWidth: true
            text: alert.review.selectionSummary + " from " + alert.review.owner + " (" + alert.review.sizeText
                  + ") will be deleted without going to Trash. Whole folders include all their contents. This cannot be undone."
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: Colors.ink
        }
        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: 10

            QuietButton {
                text: "Cancel"
                onClicked: alert.close()
            }
            Button {
                id: destroy

                text: "Delete permanently"
                font.pixelSize: 12
                font.weight: Font.Medium
                leftPadding: 14
                rightPadding: 14
                topPadding: 10
                bottomPadding: 10
                Accessible.onPressAction: if (destroy.enabled) destroy.clicked()
                onClicked: {
                    alert.deleting = true
                    alert.close()
                }

                contentItem: Text {
                    text: destroy.text
                    font: destroy.font
                    color: "white"
                }
                background: Rectangle {
                    radius: 7
                    color: destroy.down ? Qt.darker(Colors.red, 1.15) : Colors.red
                }
            }
        }
    }
}
