import QtQuick
import QtQuick.Controls.Basic
import Tallowmere
import Tallowmere.Model

// One tool's segment of the storage graph.
AbstractButton {
    id: segment

    required property string owner
    required property var allocatedBytes
    required property string sizeText
    required property var graph

    readonly property bool isHovered: graph.hoveredTool === owner

    width: graph.segmentWidth(allocatedBytes)
    height: 48
    visible: allocatedBytes > 0
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: "Explore " + owner + " storage, " + sizeText
    Accessible.onPressAction: if (segment.enabled) segment.clicked()
    ToolTip.visible: hovered
    ToolTip.text: "Open " + owner + " · " + sizeText
    ToolTip.delay: 600
    onHoveredChanged: graph.hover(owner, hovered)
    onClicked: AppStore.selectedToolID = owner

    background: Rectangle {
        radius: 5
        color: ViewStyle.toolColor(segment.owner)
        border.width: 1.5
        border.color: segment.isHovered ? Qt.rgba(Colors.ink.r, Colors.ink.g, Colors.ink.b, 0.4)
                                        : "transparent"

        Behavior on border.color {
            enabled: !segment.graph.reduceMotion

            ColorAnimation {
                duration: 140
                easing.type: Easing.OutQuad
            }
        }
    }
    contentItem: Column {
        leftPadding: 10
        topPadding: 9
        spacing: 1

        Text {
            width: segment.width - 16
            visible: segment.width >= 100
            text: segment.owner
            elide: Text.ElideRight
            font.pixelSize: 11
            color: Colors.ink
        }
        Text {
            width: segment.width - 16
            visible: segment.width >= 135
            text: segment.sizeText
            elide: Text.ElideRight
            font.pixelSize: 10
            color: Colors.ink
        }
    }
}
