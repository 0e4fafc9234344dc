import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// Each tool's share of the total as one bar of coloured segments, with a legend of links.
ColumnLayout {
    id: toolGraph

    // The tools, largest first; those of 0 bytes are not drawn.
    property var tools: AppStore.tools
    property int measuredCount: AppStore.tools.measuredCount
    property real total: AppStore.tools.measuredBytes
    property bool reduceMotion: Desktop.reduceMotion
    // The owner whose segment or link is under the pointer; "" for none.
    property string hoveredTool: ""

    readonly property real sharedWidth: Math.max(0, width - 4 * (measuredCount - 1))

    // A late leave of one tool must not clear the hover of the tool just entered.
    function hover(owner, active) {
        if (active)
            hoveredTool = owner
        else if (hoveredTool === owner)
            hoveredTool = ""
    }
    function segmentWidth(bytes) {
        return total > 0 ? bytes * sharedWidth / total : 0
    }

    visible: total > 0
    spacing: 12

    RowLayout {
        Layout.fillWidth: true

        Label {
            Layout.fillWidth: true
            text: "Storage by tool"
            font.pixelSize: 12
            color: Colors.ink
        }
        Label {
            text: "Select a tool to explore"
            font.pixelSize: 11
            color: Colors.muted
        }
    }
    Row {
        id: bar

        Layout.fillWidth: true
        Layout.preferredHeight: 48
        spacing: 4

        Repeater {
            id: segments

            model: toolGraph.tools

            delegate: GraphSegment {
                graph: toolGraph
            }
        }
    }
    GraphLegend {
        Layout.fillWidth: true
        graph: toolGraph
    }
}
