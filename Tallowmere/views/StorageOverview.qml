import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The main page: the headline and graph, the searchable list of tools and notes on the numbers.
ColumnLayout {
    id: overview

    readonly property bool searchFocused: search.activeFocus
    // What the page shows; the store's by default.
    property var storage: AppStore.storage
    property var tools: AppStore.visibleTools
    property int toolCount: AppStore.visibleTools.count

    spacing: 22

    Shortcut {
        sequence: "Ctrl+F"
        onActivated: search.forceActiveFocus()
    }

    ColumnLayout {
        spacing: 6

        Label {
            text: "A little room to create."
            font.pixelSize: 29
            font.letterSpacing: -0.6
            color: Colors.ink
        }
        Label {
            text: "Your AI tools, all accounted for."
            font.pixelSize: 13
            color: Colors.muted
        }
    }
    StorageOverviewSummary {
        Layout.fillWidth: true
        storage: overview.storage
    }
    RowLayout {
        Layout.fillWidth: true

        Label {
            Layout.fillWidth: true
            text: "Your AI tools"
            font.pixelSize: 17
            color: Colors.ink
        }
        ToolSearchField {
            id: search

            Layout.preferredWidth: 220
        }
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: card.implicitHeight
        radius: 12
        color: Colors.surface
        border.color: Colors.line

        ColumnLayout {
            id: card

            width: parent.width
            spacing: 0

            RowLayout {
                Layout.fillWidth: true
                Layout.margins: 20
                Layout.topMargin: 14
                Layout.bottomMargin: 10

                Label {
                    Layout.fillWidth: true
                    text: "TOOL"
                    font.pixelSize: 10
                    font.letterSpacing: 0.8
                    color: Colors.muted
                }
                Label {
                    text: "STORAGE USED"
                    font.pixelSize: 10
                    font.letterSpacing: 0.8
                    color: Colors.muted
                }
            }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 1
                color: Colors.line
            }
            OverviewWaiting {
                Layout.fillWidth: true
                visible: overview.storage === null
            }
            OverviewEmpty {
                Layout.fillWidth: true
                visible: overview.storage !== null && overview.toolCount === 0
            }
            Repeater {
                model: overview.storage !== null ? overview.tools : null

                delegate: ColumnLayout {
                    id: entry

                    required property int index
                    required property string owner
                    required property var allocatedBytes
                    required property string sizeText
                    required property var locationCount
                    required property bool incomplete

                    Layout.fillWidth: true
                    spacing: 0

                    ToolStorageRow {
                        Layout.fillWidth: true
                        owner: entry.owner
                        sizeText: entry.sizeText
                        locationCount: entry.locationCount
                        incomplete: entry.incomplete
                    }
                    Rectangle {
                        Layout.fillWidth: true
                        Layout.leftMargin: 20
                        implicitHeight: 1
                        visible: entry.index < overview.toolCount - 1
                        color: Colors.line
                        opacity: 0.65
                    }
                }
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        Icon {
            Layout.alignment: Qt.AlignTop
            name: "info.circle"
            size: 13
            color: Colors.muted
        }
        Label {
            Layout.fillWidth: true
            text: "One total per tool. Editor totals include app data and extensions. Sizes are estimates; moving files to Trash doesn’t free their space until Trash is emptied."
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Colors.muted
        }
    }
    Label {
        Layout.fillWidth: true
        visible: overview.storage !== null && overview.storage.incomplete
        text: "Some locations could only be partly measured. Open a tool for details. "
              + (overview.storage ? overview.storage.unreadableLocations : 0) + " locations unavailable."
        wrapMode: Text.Wrap
        font.pixelSize: 11
        color: Colors.orange
    }
}
