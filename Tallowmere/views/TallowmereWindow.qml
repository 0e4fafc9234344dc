import QtQuick
import QtQuick.Controls.Basic
import Tallowmere
import Tallowmere.Model

// The application's one window: its menus, and the content below them.
ApplicationWindow {
    id: window

    visible: true
    title: "Tallowmere · AI Storage"
    width: 1180
    height: 840
    minimumWidth: 1020
    minimumHeight: 700 + (menuBar ? menuBar.height : 0)
    color: Colors.background

    menuBar: MenuBar {
        Menu {
            title: "&File"

            ShortcutMenuItem {
                action: Action {
                    text: "Track an AI Folder…"
                    shortcut: "Ctrl+O"
                    // Once the press has returned: the dialog waits in its own loop, and a screen
                    // reader waits for the press.
                    onTriggered: Qt.callLater(AppStore.chooseAIStorageFolder)
                }
            }
            ShortcutMenuItem {
                action: Action {
                    text: "Scan AI Storage"
                    shortcut: "Ctrl+R"
                    enabled: !AppStore.aiScanning && !AppStore.cleaning
                    onTriggered: AppStore.scanAI()
                }
            }
            MenuSeparator {}
            ShortcutMenuItem {
                action: Action {
                    text: "Quit"
                    shortcut: "Ctrl+Q"
                    onTriggered: Qt.quit()
                }
            }
        }
        Menu {
            title: "&Navigate"

            ShortcutMenuItem {
                action: Action {
                    text: "All AI Tools"
                    shortcut: "Ctrl+["
                    onTriggered: AppStore.selectedToolID = ""
                }
            }
        }
    }

    ContentView {
        anchors.fill: parent
    }
}
