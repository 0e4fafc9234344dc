import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// One line of the overview's list; pressing it opens the tool's detail.
AbstractButton {
    id: row

    property string owner
    property string sizeText
    property var locationCount: 0
    property bool incomplete: false

    leftPadding: 20
    rightPadding: 20
    topPadding: 12
    bottomPadding: 12
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: "Open " + owner + ", " + sizeText
    Accessible.onPressAction: if (row.enabled) row.clicked()
    onClicked: AppStore.selectedToolID = owner

    background: Rectangle {
        color: row.hovered ? Qt.rgba(Colors.soft.r, Colors.soft.g, Colors.soft.b, 0.5) : "transparent"
    }
    contentItem: RowLayout {
        spacing: 12

        ToolBadge {
            owner: row.owner
            size: 34
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                Layout.fillWidth: true
                text: row.owner
                elide: Text.ElideRight
                font.pixelSize: 14
                color: Colors.ink
            }
            Label {
                text: row.locationCount + " location" + (row.locationCount === 1 ? "" : "s")
                      + (row.incomplete ? " · Partial scan" : "")
                font.pixelSize: 11
                color: Colors.muted
            }
        }
        Label {
            text: row.sizeText
            font.pixelSize: 16
            color: Colors.ink
        }
        Icon {
            name: "chevron.right"
            size: 11
            color: Colors.muted
        }
    }
}
