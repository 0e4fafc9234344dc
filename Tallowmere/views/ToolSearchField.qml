import QtQuick
import QtQuick.Controls.Basic
import Tallowmere
import Tallowmere.Model

// The overview's search field: it edits the store's tool query as the user types.
TextField {
    id: field

    placeholderText: "Find a tool…"
    text: AppStore.toolQuery
    font.pixelSize: 12
    leftPadding: 30
    rightPadding: clear.visible ? 30 : 10
    color: Colors.ink
    Accessible.name: "Find a tool…"
    onTextEdited: AppStore.toolQuery = text

    background: Rectangle {
        implicitHeight: 32
        radius: 8
        color: Colors.surface
        border.color: field.activeFocus ? Colors.muted : Colors.line
    }

    Icon {
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: 13
        color: Colors.muted
    }
    AbstractButton {
        id: clear

        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        visible: AppStore.toolQuery !== ""
        Accessible.role: Accessible.Button
        Accessible.name: "Clear tool search"
        Accessible.onPressAction: if (clear.enabled) clear.clicked()
        onClicked: AppStore.toolQuery = ""

        contentItem: Icon {
            name: "xmark.circle.fill"
            size: 15
            color: Colors.muted
        }
    }
}
