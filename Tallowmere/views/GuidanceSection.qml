import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The folders of one guidance group in the tool detail.
ColumnLayout {
    id: section

    property string group
    property string title
    property string sizeText
    property string owner
    property var selection

    spacing: 10

    RowLayout {
        Layout.fillWidth: true

        Label {
            Layout.fillWidth: true
            text: section.title
            font.pixelSize: 15
            color: Colors.ink
        }
        Label {
            text: section.sizeText + " on disk"
            font.pixelSize: 13
            color: Colors.ink
        }
    }
    Label {
        visible: section.group === "rebuildable"
        text: "Quit " + section.owner + " before removing cache or logs. Cache may rebuild."
        font.pixelSize: 11
        color: Colors.muted
    }
    Repeater {
        model: FindingSectionModel {
            sourceModel: AppStore.selectedToolFindings
            group: section.group
        }

        delegate: StorageLocationRow {
            Layout.fillWidth: true
            owner: section.owner
            selected: section.selection.selectedLocations.includes(locationID)
            expanded: section.selection.expandedLocationID === locationID
            onSelectRequested: on => section.selection.setSelected(locationID, on)
            onExpandRequested: on => section.selection.setExpanded(locationID, on)
        }
    }
}
