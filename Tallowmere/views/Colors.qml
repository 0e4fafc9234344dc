pragma Singleton
import QtQuick

// The window's palette (QtQuick already has a type named Palette); it is always drawn light.
QtObject {
    readonly property color background: Qt.rgba(0.985, 0.984, 0.981, 1)
    readonly property color surface: Qt.rgba(1, 1, 1, 1)
    readonly property color ink: Qt.rgba(0.09, 0.09, 0.085, 1)
    readonly property color muted: Qt.rgba(0.43, 0.43, 0.41, 1)
    readonly property color line: Qt.rgba(0.89, 0.89, 0.875, 1)
    readonly property color soft: Qt.rgba(0.955, 0.954, 0.945, 1)
    readonly property color success: Qt.rgba(0.2, 0.4, 0.3, 1)
    // The system's orange and red, for warnings and destructive choices.
    readonly property color orange: Qt.rgba(1, 0.584, 0, 1)
    readonly property color red: Qt.rgba(1, 0.231, 0.188, 1)
}
