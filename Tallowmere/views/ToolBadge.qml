import QtQuick
import Tallowmere
import Tallowmere.Model

// A tool's square badge: its letters on its graph colour, or the terminal symbol for an owner
// without a badge of its own. Decorative; the tool's name stands beside it.
Rectangle {
    id: badge

    property string owner
    property real size

    readonly property string letters: ViewStyle.badgeText(owner)

    width: size
    height: size
    radius: 9
    color: Colors.surface
    border.width: 0.5
    border.color: Colors.line
    Accessible.ignored: true

    Rectangle {
        anchors.centerIn: parent
        width: badge.size * 0.62
        height: width
        radius: width * 0.28
        visible: badge.letters !== ""
        color: ViewStyle.toolColor(badge.owner)

        Text {
            anchors.centerIn: parent
            text: badge.letters
            color: Colors.ink
            font.pixelSize: Math.max(7, parent.width * 0.42)
            font.weight: Font.DemiBold
        }
    }
    Icon {
        anchors.centerIn: parent
        visible: badge.letters === ""
        name: "terminal"
        size: badge.size * 0.62
        color: Colors.ink
    }
}
