import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The bar along the bottom: privacy and the scan's state, or the result of the last cleanup.
Rectangle {
    id: footer

    readonly property bool showingNotice: AppStore.notice !== ""
    readonly property string scanStatus: {
        const storage = AppStore.storage
        if (AppStore.aiScanning)
            return storage === null ? "Measuring storage…" : "Updating storage…"
        if (storage === null)
            return ""
        if (!AppStore.hasFreshScan)
            return "Last scan · Scan again to update"
        return "Updated " + ViewStyle.shortTime(storage.completedAt) + (storage.incomplete ? " · Partial scan" : "")
    }

    implicitHeight: 52
    color: Colors.surface

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        height: 1
        color: Colors.line
    }
    RowLayout {
        id: privacyRow

        anchors.fill: parent
        anchors.leftMargin: 36
        anchors.rightMargin: 36
        spacing: 7
        opacity: footer.showingNotice ? 0 : 1
        visible: opacity > 0

        Behavior on opacity {
            enabled: !Desktop.reduceMotion

            NumberAnimation {
                duration: Motion.feedback
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Motion.curve
            }
        }

        Icon {
            name: "lock"
            size: 11
            color: Colors.muted
        }
        Label {
            Layout.fillWidth: true
            text: "Private by design. Your files stay on " + ViewStyle.computer + "."
            font.pixelSize: 10
            color: Colors.muted
        }
        Rectangle {
            visible: footer.scanStatus.startsWith("Updated ")
            implicitWidth: 5
            implicitHeight: 5
            radius: 2.5
            color: Colors.success
            Accessible.ignored: true
        }
        Label {
            visible: footer.scanStatus !== ""
            text: footer.scanStatus
            font.pixelSize: 10
            color: Colors.muted
        }
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 36
        anchors.rightMargin: 36
        spacing: 8
        opacity: footer.showingNotice ? 1 : 0
        visible: opacity > 0

        Behavior on opacity {
            enabled: !Desktop.reduceMotion

            NumberAnimation {
                duration: Motion.feedback
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Motion.curve
            }
        }

        Icon {
            name: "checkmark.circle"
            size: 14
            color: Colors.success
        }
        Label {
            Layout.fillWidth: true
            text: AppStore.notice
            elide: Text.ElideRight
            font.pixelSize: 11
            color: Colors.ink
        }
        QuietButton {
            visible: AppStore.undoItems.count > 0
            text: AppStore.restoring ? "Restoring…" : "Undo"
            enabled: !AppStore.cleaning && !AppStore.restoring && !AppStore.preparingLocations
                     && AppStore.locationRemovalReview === null
            onClicked: AppStore.undoCleanup()
        }
        AbstractButton {
            id: dismiss

            implicitWidth: 24
            implicitHeight: 24
            Accessible.role: Accessible.Button
            Accessible.name: "Dismiss cleanup status"
            Accessible.onPressAction: if (dismiss.enabled) dismiss.clicked()
            onClicked: AppStore.notice = ""

            contentItem: Item {
                Icon {
                    anchors.centerIn: parent
                    name: "xmark"
                    size: 12
                    color: Colors.muted
                }
            }
        }
    }
}
