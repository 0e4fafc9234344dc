import QtQuick
import QtQuick.Shapes
import Tallowmere
import "IconPaths.js" as IconPaths

// One of the application's line icons, drawn at `size` in `color`; decorative.
Item {
    id: icon

    property string name
    property real size: 16
    property color color: Colors.ink

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Repeater {
        model: IconPaths.shapes(icon.name)

        Shape {
            required property var modelData

            width: 24
            height: 24
            scale: icon.size / 24
            transformOrigin: Item.TopLeft
            layer.enabled: true
            layer.samples: 4
            layer.smooth: true

            ShapePath {
                strokeColor: modelData.filled ? "transparent" : icon.color
                strokeWidth: modelData.filled ? 0 : 1.6
                fillColor: modelData.filled ? icon.color : "transparent"
                fillRule: modelData.oddEven ? ShapePath.OddEvenFill : ShapePath.WindingFill
                capStyle: ShapePath.RoundCap
                joinStyle: ShapePath.RoundJoin

                PathSvg {
                    path: modelData.d
                }
            }
        }
    }
}
