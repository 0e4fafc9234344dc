import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// One tool's page: its total, its folders by guidance group, and the review of a selection.
ColumnLayout {
    id: detail

    property string owner
    property bool includeRecent: true
    readonly property var tool: AppStore.selectedTool
    readonly property alias selection: locationSelection

    spacing: 22

    LocationSelection {
        id: locationSelection

        store: AppStore
        owner: detail.owner
        includeRecent: detail.includeRecent
    }

    Button {
        id: back

        flat: true
        leftPadding: 0
        text: "All AI tools"
        font.pixelSize: 12
        Accessible.onPressAction: if (back.enabled) back.clicked()
        onClicked: AppStore.selectedToolID = ""

        contentItem: Row {
            spacing: 6

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "arrow.left"
                size: 12
                color: Colors.muted
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: back.text
                font: back.font
                color: Colors.muted
            }
        }
        background: Item {}
    }
    DetailHeader {
        Layout.fillWidth: true
        tool: detail.tool
    }
    Label {
        visible: detail.tool !== null && detail.tool.locationCount === 0
        text: "Nothing to clean up here."
        font.pixelSize: 14
        color: Colors.muted
    }
    ColumnLayout {
        Layout.fillWidth: true
        visible: detail.tool !== null && detail.tool.locationCount > 0
        spacing: 18

        BreakdownHeading {
            Layout.fillWidth: true
            selection: locationSelection
            owner: detail.owner
        }
        RowLayout {
            Layout.fillWidth: true

            CheckBox {
                id: selectAll

                text: "Select all"
                font.pixelSize: 12
                checked: locationSelection.allSelected
                onCheckedChanged: {
                    if (checked !== locationSelection.allSelected)
                        locationSelection.setAllSelected(checked)
                    checked = Qt.binding(() => locationSelection.allSelected)
                }
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: locationSelection.selectionText
                font.pixelSize: 12
                color: Colors.muted
            }
        }
        Repeater {
            model: locationSelection.sections

            delegate: GuidanceSection {
                required property var modelData

                Layout.fillWidth: true
                group: modelData.group
                title: modelData.title
                sizeText: modelData.sizeText
                owner: detail.owner
                selection: locationSelection
            }
        }
        Label {
            text: "Caches and logs: up to 500 eligible files per review. Other selections remove whole folders."
            font.pixelSize: 11
            color: Colors.muted
        }
    }
}
