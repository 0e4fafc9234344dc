import QtQuick
import QtQuick.Controls.Basic
import Tallowmere
import Tallowmere.Model

// The dark button of a primary action.
Button {
    id: control

    font.pixelSize: 12
    font.weight: Font.Medium
    leftPadding: 14
    rightPadding: 14
    topPadding: 10
    bottomPadding: 10
    hoverEnabled: true
    opacity: !enabled ? 0.35 : pressed ? 0.8 : 1
    scale: enabled && hovered && pressed && !Desktop.reduceMotion ? 0.985 : 1
    Accessible.onPressAction: if (control.enabled) control.clicked()

    Behavior on scale {
        enabled: control.hovered && !Desktop.reduceMotion

        NumberAnimation {
            duration: Motion.press
            easing.type: Easing.BezierSpline
            easing.bezierCurve: Motion.curve
        }
    }

    contentItem: Text {
        text: control.text
        font: control.font
        color: "white"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: 7
        color: Colors.ink
    }
}
