import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The tool card when no tool matches: a search without results, or a scan that found nothing.
ColumnLayout {
    spacing: 8

    Icon {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 34
        name: "magnifyingglass"
        size: 26
        color: Colors.muted
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: "No tools found at these locations."
        font.pixelSize: 15
        color: Colors.ink
    }
    Label {
        Layout.alignment: Qt.AlignHCenter
        text: "Try another search or add your tool’s storage folder."
        font.pixelSize: 12
        color: Colors.muted
    }
    QuietButton {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 4
        Layout.bottomMargin: 34
        text: "Add a folder…"
        // Once the press has returned: the dialog waits in its own loop, and a screen
        // reader waits for the press.
        onClicked: Qt.callLater(AppStore.chooseAIStorageFolder)
    }
}
