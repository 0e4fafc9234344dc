import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// The tool detail's header: badge, name, how many folders, and the total on disk.
RowLayout {
    id: header

    property var tool: null

    spacing: 14

    ToolBadge {
        owner: header.tool ? header.tool.owner : ""
        size: 46
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2

        Label {
            Layout.fillWidth: true
            text: header.tool ? header.tool.owner : ""
            font.pixelSize: 28
            font.weight: Font.DemiBold
            font.letterSpacing: -0.6
            color: Colors.ink
        }
        Label {
            readonly property int count: header.tool ? header.tool.locationCount : 0

            text: count + " storage location" + (count === 1 ? "" : "s") + ", measured together."
            font.pixelSize: 12
            color: Colors.muted
        }
    }
    ColumnLayout {
        spacing: 2

        Label {
            Layout.alignment: Qt.AlignRight
            text: header.tool ? header.tool.sizeText : ""
            font.pixelSize: 28
            font.weight: Font.Medium
            color: Colors.ink
        }
        Label {
            Layout.alignment: Qt.AlignRight
            text: header.tool && header.tool.incomplete ? "on disk · partial scan" : "on disk"
            font.pixelSize: 11
            color: Colors.muted
        }
    }
}
