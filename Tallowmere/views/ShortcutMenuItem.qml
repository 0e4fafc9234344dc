import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere

// A menu item that shows its action's shortcut at the right, as desktop menus do.
MenuItem {
    id: item

    contentItem: RowLayout {
        spacing: 28

        Label {
            Layout.fillWidth: true
            text: item.text
            font: item.font
            color: item.enabled ? Colors.ink : Colors.muted
        }
        Label {
            text: item.action ? item.action.shortcut : ""
            font: item.font
            color: Colors.muted
        }
    }
}
