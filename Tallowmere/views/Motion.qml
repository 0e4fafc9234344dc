pragma Singleton
import QtQuick

// The two animation curves: a quick press and the gentler appearance of status messages.
QtObject {
    readonly property int press: 120
    readonly property int feedback: 200
    readonly property var curve: [0.23, 1.0, 0.32, 1.0, 1.0, 1.0]
}
