pragma Singleton
import QtQuick

// The application's artwork.
QtObject {
    readonly property url icon: "qrc:/artwork/AppIcon-256.png"
}
