import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The first row of the window: the brand, the scan control, adding a folder and the settings.
Rectangle {
    id: bar

    property bool showSettings
    property bool scanBlocked

    signal settingsToggled

    implicitHeight: row.implicitHeight + 30 + 20
    color: Colors.surface

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 36
        anchors.rightMargin: 36
        anchors.topMargin: 30
        anchors.bottomMargin: 20
        spacing: 12

        AbstractButton {
            id: brand

            hoverEnabled: true
            Accessible.role: Accessible.Button
            Accessible.name: "Tallowmere, all AI tools"
            Accessible.onPressAction: if (brand.enabled) brand.clicked()
            ToolTip.visible: hovered
            ToolTip.text: "All AI tools"
            ToolTip.delay: 600
            onClicked: AppStore.selectedToolID = ""

            contentItem: Row {
                spacing: 9

                Image {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 30
                    height: 30
                    source: BrandArtwork.icon
                    sourceSize: Qt.size(60, 60)
                    smooth: true
                    mipmap: true
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Tallowmere"
                    font.pixelSize: 16
                    font.weight: Font.DemiBold
                    color: Colors.ink
                }
            }
        }
        Rectangle {
            implicitWidth: 1
            implicitHeight: 18
            color: Colors.line
        }
        Label {
            text: "AI storage"
            font.pixelSize: 12
            color: Colors.muted
        }
        Item {
            Layout.fillWidth: true
        }
        BusyIndicator {
            visible: AppStore.aiScanning
            implicitWidth: 20
            implicitHeight: 20
            running: visible
            Accessible.name: "Scanning"
        }
        Button {
            id: stopScan

            visible: AppStore.aiScanning
            flat: true
            text: "Stop scan"
            font.pixelSize: 12
            Accessible.onPressAction: if (stopScan.enabled) stopScan.clicked()
            onClicked: AppStore.stopAIScan()
        }
        QuietButton {
            visible: !AppStore.aiScanning
            text: "Scan again"
            iconName: "arrow.clockwise"
            enabled: !bar.scanBlocked
            onClicked: AppStore.scanAI()
        }
        QuietButton {
            text: "Add a folder…"
            iconName: "plus"
            enabled: !bar.scanBlocked
            // Once the press has returned: the dialog waits in its own loop, and a screen
            // reader waits for the press.
            onClicked: Qt.callLater(AppStore.chooseAIStorageFolder)
        }
        AbstractButton {
            id: settingsButton

            implicitWidth: 30
            implicitHeight: 30
            hoverEnabled: true
            Accessible.role: Accessible.Button
            Accessible.name: "Monitoring settings"
            Accessible.onPressAction: if (settingsButton.enabled) settingsButton.clicked()
            ToolTip.visible: hovered
            ToolTip.text: "Monitoring settings"
            ToolTip.delay: 600
            onClicked: bar.settingsToggled()

            contentItem: Item {
                Icon {
                    anchors.centerIn: parent
                    name: "slider.horizontal.3"
                    size: 18
                    color: Colors.ink
                }
            }
            background: Rectangle {
                radius: 7
                color: bar.showSettings || settingsButton.down ? Colors.soft : "transparent"
            }
        }
    }
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: Colors.line
    }
}
