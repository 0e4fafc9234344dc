import QtQuick
import QtQuick.Controls.Basic
import Tallowmere
import Tallowmere.Model

// The graph's legend: one link per tool, in one row when they fit, else in columns at least
// 165 points wide.
Flow {
    id: legend

    required property var graph

    readonly property int columns: Math.max(1, Math.floor((width + spacing) / (165 + spacing)))
    readonly property real columnWidth: (width - spacing * (columns - 1)) / columns
    readonly property bool fitsOneRow: {
        let total = 0
        let shown = 0
        for (let i = 0; i < links.count; ++i) {
            const link = links.itemAt(i)
            if (link && link.visible) {
                total += link.implicitWidth
                ++shown
            }
        }
        return total + spacing * Math.max(0, shown - 1) <= width
    }

    spacing: 6

    Repeater {
        id: links

        model: legend.graph.tools

        delegate: AbstractButton {
            id: link

            required property string owner
            required property var allocatedBytes
            required property string sizeText

            width: legend.fitsOneRow ? implicitWidth : legend.columnWidth
            visible: allocatedBytes > 0
            leftPadding: 6
            rightPadding: 8
            topPadding: 4
            bottomPadding: 4
            hoverEnabled: true
            Accessible.role: Accessible.Link
            Accessible.name: "Open " + owner + " from chart, " + sizeText
            Accessible.onPressAction: if (link.enabled) link.clicked()
            ToolTip.visible: hovered
            ToolTip.text: "Open " + owner
            ToolTip.delay: 600
            onHoveredChanged: legend.graph.hover(owner, hovered)
            onClicked: AppStore.selectedToolID = owner

            background: Rectangle {
                radius: 6
                color: {
                    const tint = ViewStyle.toolColor(link.owner)
                    return legend.graph.hoveredTool === link.owner ? Qt.rgba(tint.r, tint.g, tint.b, 0.25)
                                                                   : "transparent"
                }

                Behavior on color {
                    enabled: !legend.graph.reduceMotion

                    ColorAnimation {
                        duration: 140
                        easing.type: Easing.OutQuad
                    }
                }
            }
            contentItem: Row {
                spacing: 6

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 7
                    height: 7
                    radius: 3.5
                    color: ViewStyle.toolColor(link.owner)
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: link.owner
                    font.pixelSize: 11
                    color: Colors.ink
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: link.sizeText
                    font.pixelSize: 10
                    color: Colors.muted
                }
            }
        }
    }
}
