import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The folders the user tracks, each with a way to stop tracking it.
ColumnLayout {
    spacing: 8

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 1
        color: Colors.line
    }
    Label {
        text: "Added folders"
        font.pixelSize: 12
        font.weight: Font.Medium
        color: Colors.ink
    }
    Repeater {
        model: AppStore.customAIPaths

        delegate: RowLayout {
            id: folder

            required property string modelData

            Layout.fillWidth: true

            Label {
                Layout.fillWidth: true
                text: ViewStyle.shortPath(folder.modelData)
                elide: Text.ElideMiddle
                font.pixelSize: 11
                color: Colors.ink
            }
            Button {
                id: stop

                flat: true
                text: "Stop tracking"
                font.pixelSize: 11
                padding: 2
                Accessible.onPressAction: if (stop.enabled) stop.clicked()
                onClicked: AppStore.removeAIStorageFolder(folder.modelData)
            }
        }
    }
    Label {
        text: "Stopping tracking keeps the folder and its files."
        font.pixelSize: 10
        color: Colors.muted
    }
}
