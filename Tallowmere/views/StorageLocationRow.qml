import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// One measured folder of the tool detail: its selection, size, status, and details on request.
Rectangle {
    id: row

    required property string locationID
    required property string category
    required property string path
    required property string detail
    required property bool canSelect
    required property string sizeText
    required property string sizeLabel
    required property string statusText
    required property bool rebuildable
    required property string consequence
    required property string partialText
    required property var largestFiles
    property string owner
    property bool selected: false
    property bool expanded: false
    readonly property string shortPath: ViewStyle.shortPath(path)

    signal selectRequested(bool on)
    signal expandRequested(bool on)

    implicitHeight: column.implicitHeight + 28
    radius: 10
    color: Colors.surface
    border.color: Colors.line

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 14
        anchors.leftMargin: 12
        anchors.rightMargin: 16
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            CheckBox {
                id: check

                Layout.alignment: Qt.AlignTop
                enabled: row.canSelect
                checked: row.selected
                padding: 0
                Accessible.name: "Select " + row.category + " at " + row.shortPath
                onCheckedChanged: {
                    if (checked !== row.selected)
                        row.selectRequested(checked)
                    checked = Qt.binding(() => row.selected)
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                Label {
                    text: row.category
                    font.pixelSize: 12
                    font.weight: Font.Medium
                    color: Colors.ink
                }
                Label {
                    id: pathLabel

                    Layout.fillWidth: true
                    text: row.shortPath
                    elide: Text.ElideMiddle
                    font.pixelSize: 11
                    color: Colors.muted
                    ToolTip.visible: pathHover.hovered
                    ToolTip.text: row.path
                    ToolTip.delay: 600

                    HoverHandler {
                        id: pathHover
                    }
                }
            }
            ColumnLayout {
                spacing: 1

                Label {
                    Layout.alignment: Qt.AlignRight
                    text: row.sizeText
                    font.pixelSize: 12
                    color: Colors.ink
                }
                Label {
                    Layout.alignment: Qt.AlignRight
                    text: row.sizeLabel
                    font.pixelSize: 10
                    color: Colors.muted
                }
            }
            QuietButton {
                iconName: "folder"
                leftPadding: 8
                rightPadding: 8
                topPadding: 6
                bottomPadding: 6
                Accessible.name: "Show " + row.owner + " " + row.category + " at " + row.shortPath + " in "
                                 + ViewStyle.fileViewer
                ToolTip.visible: hovered
                ToolTip.text: "Show in " + ViewStyle.fileViewer
                ToolTip.delay: 600
                onClicked: Desktop.reveal(row.path)
            }
        }
        Label {
            Layout.fillWidth: true
            Layout.leftMargin: check.width + 10
            text: row.statusText
            wrapMode: Text.Wrap
            font.pixelSize: 12
            color: row.rebuildable ? Colors.success : Colors.muted
        }
        LocationDetails {
            Layout.fillWidth: true
            Layout.leftMargin: check.width + 10
            category: row.category
            shortPath: row.shortPath
            consequence: row.consequence
            detail: row.detail
            largestFiles: row.largestFiles
            expanded: row.expanded
            onExpandRequested: on => row.expandRequested(on)
        }
        Label {
            Layout.fillWidth: true
            Layout.leftMargin: check.width + 10
            visible: row.partialText !== ""
            text: row.partialText
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Colors.orange
        }
    }
}
