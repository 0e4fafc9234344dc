import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The settings popover: monitoring, the low-space threshold, undo, recognised tools and the
// folders the user tracks.
ColumnLayout {
    id: settings

    property bool toolsOpen: false

    spacing: 18

    Item {
        implicitHeight: 24 - 18
    }
    Label {
        Layout.leftMargin: 24
        text: "A quiet eye on your storage"
        font.pixelSize: 17
        color: Colors.ink
    }
    Switch {
        id: monitoring

        Layout.leftMargin: 24
        text: "Check every 5 minutes"
        font.pixelSize: 12
        checked: AppStore.aiMonitoring
        onCheckedChanged: {
            if (checked !== AppStore.aiMonitoring)
                AppStore.aiMonitoring = checked
            checked = Qt.binding(() => AppStore.aiMonitoring)
        }
    }
    SettingsNote {
        text: "Runs while Tallowmere is open. Warnings appear here; files are never removed automatically."
    }
    ColumnLayout {
        Layout.leftMargin: 24
        spacing: 2
        Accessible.role: Accessible.Grouping
        Accessible.name: "Warn below"

        Label {
            text: "Warn below"
            font.pixelSize: 12
            color: Colors.ink
        }
        Repeater {
            model: [10, 20, 50]

            delegate: RadioButton {
                id: threshold

                required property int modelData

                text: modelData + " GB available"
                font.pixelSize: 12
                // The store keeps one checked. The group would uncheck the old choice first,
                // whose handler re-binds it to the unchanged store, which unchecks the new one.
                autoExclusive: false
                checked: AppStore.lowSpaceGB === modelData
                onCheckedChanged: {
                    if (checked && AppStore.lowSpaceGB !== modelData)
                        AppStore.lowSpaceGB = modelData
                    checked = Qt.binding(() => AppStore.lowSpaceGB === modelData)
                }
            }
        }
    }
    ColumnLayout {
        Layout.leftMargin: 24
        visible: AppStore.undoItems.count > 0
        spacing: 6

        QuietButton {
            text: "Undo last cleanup"
            enabled: !AppStore.cleaning && !AppStore.restoring
            onClicked: AppStore.undoCleanup()
        }
        Label {
            Layout.preferredWidth: 312
            text: "Available for this session. New or regenerated files are never overwritten."
            wrapMode: Text.Wrap
            font.pixelSize: 10
            color: Colors.muted
        }
    }
    ColumnLayout {
        Layout.leftMargin: 24
        spacing: 8

        AbstractButton {
            id: toolsToggle

            Accessible.role: Accessible.Button
            Accessible.name: ViewStyle.supportedOwners.length + " recognized AI tools"
            Accessible.onPressAction: if (toolsToggle.enabled) toolsToggle.clicked()
            onClicked: settings.toolsOpen = !settings.toolsOpen

            contentItem: Row {
                spacing: 5

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "chevron.right"
                    size: 10
                    color: Colors.ink
                    rotation: settings.toolsOpen ? 90 : 0
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: toolsToggle.Accessible.name
                    font.pixelSize: 12
                    color: Colors.ink
                }
            }
        }
        Label {
            Layout.preferredWidth: 312
            visible: settings.toolsOpen
            text: ViewStyle.supportedOwners.join(" · ")
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Colors.muted
        }
    }
    SettingsNote {
        text: "Checks known folders and editor profiles. Custom locations and remote machines need separate tracking. Conversation contents aren’t opened."
    }
    TrackedFolders {
        Layout.leftMargin: 24
        Layout.rightMargin: 24
        Layout.fillWidth: true
        visible: AppStore.customAIPaths.length > 0
    }
    Item {
        implicitHeight: 24 - 18
    }
}
