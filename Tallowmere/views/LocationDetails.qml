import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// A location row's disclosure: what removal costs, the catalog's note and the largest files.
ColumnLayout {
    id: details

    property string category
    property string shortPath
    property string consequence
    property string detail
    property var largestFiles: []
    property bool expanded: false

    signal expandRequested(bool on)

    spacing: 8

    AbstractButton {
        id: toggle

        Accessible.role: Accessible.Button
        Accessible.name: "Details and largest files for " + details.category + " at " + details.shortPath
        Accessible.onPressAction: if (toggle.enabled) toggle.clicked()
        onClicked: details.expandRequested(!details.expanded)

        contentItem: Row {
            spacing: 5

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "chevron.right"
                size: 10
                color: Colors.muted
                rotation: details.expanded ? 90 : 0
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: "Details & largest files"
                font.pixelSize: 11
                color: Colors.muted
            }
        }
    }
    ColumnLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 15
        visible: details.expanded
        spacing: 6

        TextEdit {
            Layout.fillWidth: true
            text: details.shortPath
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.WrapAnywhere
            font.pixelSize: 11
            color: Colors.ink
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            Layout.fillWidth: true
            text: details.consequence
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: Colors.muted
        }
        Label {
            Layout.fillWidth: true
            text: details.detail
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Colors.muted
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            visible: details.largestFiles.length > 0
            color: Colors.line
        }
        Repeater {
            model: details.largestFiles

            delegate: RowLayout {
                id: file

                required property var modelData

                Layout.fillWidth: true
                spacing: 10

                Label {
                    Layout.fillWidth: true
                    text: file.modelData.name
                    elide: Text.ElideMiddle
                    font.pixelSize: 11
                    color: Colors.ink
                    ToolTip.visible: nameHover.hovered
                    ToolTip.text: file.modelData.path
                    ToolTip.delay: 600

                    HoverHandler {
                        id: nameHover
                    }
                }
                Label {
                    text: file.modelData.sizeText
                    font.pixelSize: 11
                    color: Colors.ink
                }
                Button {
                    id: reveal

                    flat: true
                    text: "Reveal"
                    font.pixelSize: 11
                    padding: 2
                    Accessible.name: "Reveal " + file.modelData.name + " in " + ViewStyle.fileViewer
                    Accessible.onPressAction: if (reveal.enabled) reveal.clicked()
                    onClicked: Desktop.reveal(file.modelData.path)
                }
            }
        }
    }
}
