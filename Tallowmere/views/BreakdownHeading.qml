import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The heading of the breakdown, with "Collapse details" and the review button.
RowLayout {
    id: heading

    required property var selection
    required property string owner

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 3

        Label {
            Layout.fillWidth: true
            text: "Storage breakdown"
            font.pixelSize: 17
            color: Colors.ink
        }
        Label {
            text: "Choose what you no longer need. Details are optional."
            font.pixelSize: 12
            color: Colors.muted
        }
    }
    Button {
        id: collapse

        visible: heading.selection.expandedLocationID !== ""
        flat: true
        text: "Collapse details"
        font.pixelSize: 12
        Accessible.onPressAction: if (collapse.enabled) collapse.clicked()
        onClicked: heading.selection.setExpanded(heading.selection.expandedLocationID, false)
    }
    BusyIndicator {
        visible: AppStore.preparingLocations
        running: visible
        implicitWidth: 18
        implicitHeight: 18
        Accessible.name: "Checking folders"
    }
    Label {
        visible: AppStore.preparingLocations
        text: "Checking folders…"
        font.pixelSize: 12
        color: Colors.muted
    }
    AccentButton {
        visible: !AppStore.preparingLocations
        text: "Review selected…"
        enabled: !heading.selection.planEmpty && AppStore.hasFreshScan && !AppStore.aiScanning
                 && !AppStore.cleaning && !AppStore.restoring
        onClicked: AppStore.reviewLocations(heading.selection.selectedLocations, heading.owner,
                                            heading.selection.includeRecent)
    }
}
