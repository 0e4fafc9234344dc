import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The overview's headline: the total of all tools, the free space, and the graph.
ColumnLayout {
    id: summary

    property var storage: AppStore.storage
    property var diskSpace: AppStore.diskSpace
    property int measuredCount: AppStore.tools.measuredCount

    spacing: 22

    RowLayout {
        Layout.fillWidth: true

        ColumnLayout {
            spacing: 4

            Label {
                text: "AI STORAGE ON " + ViewStyle.computer.toUpperCase()
                font.pixelSize: 10
                font.letterSpacing: 1.2
                color: Colors.muted
            }
            Row {
                spacing: 6

                Label {
                    id: number

                    text: summary.storage !== null ? ViewStyle.sizeNumber(summary.storage.allocatedBytes) : "—"
                    font.pixelSize: 54
                    font.weight: Font.Light
                    color: Colors.ink
                }
                Label {
                    anchors.baseline: number.baseline
                    visible: summary.storage !== null
                    text: summary.storage !== null ? ViewStyle.sizeUnit(summary.storage.allocatedBytes) : ""
                    font.pixelSize: 23
                    color: Colors.muted
                }
            }
            Label {
                visible: summary.storage !== null
                text: "across " + summary.measuredCount + " tool" + (summary.measuredCount === 1 ? "" : "s")
                font.pixelSize: 11
                color: Colors.ink
            }
        }
        Item {
            Layout.fillWidth: true
        }
        ColumnLayout {
            Layout.alignment: Qt.AlignBottom
            visible: summary.diskSpace !== null
            spacing: 2
            Accessible.role: Accessible.StaticText
            Accessible.name: "Available on " + ViewStyle.computer + ", " + available.text

            Text {
                Layout.alignment: Qt.AlignRight
                text: "Available on " + ViewStyle.computer
                font.pixelSize: 11
                color: Colors.muted
                Accessible.ignored: true
            }
            Text {
                id: available

                Layout.alignment: Qt.AlignRight
                text: summary.diskSpace !== null ? summary.diskSpace.availableText : ""
                font.pixelSize: 23
                font.weight: Font.Medium
                color: Colors.ink
                Accessible.ignored: true
            }
        }
    }
    ToolStorageGraph {
        Layout.fillWidth: true
    }
}
