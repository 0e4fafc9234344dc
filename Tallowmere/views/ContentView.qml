import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The window's content: the header bar, the scrolling main area and the status footer, with
// the review sheet, the settings popover and the failure alert over them.
Item {
    id: content

    property bool showSettings: false

    function scanBlocked() {
        return AppStore.cleaning || AppStore.restoring || AppStore.preparingLocations
                || AppStore.locationRemovalReview !== null
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        HeaderBar {
            Layout.fillWidth: true
            showSettings: content.showSettings
            scanBlocked: content.scanBlocked()
            onSettingsToggled: content.showSettings = !content.showSettings
        }
        ScrollView {
            id: mainArea

            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

            ColumnLayout {
                x: (mainArea.availableWidth - width) / 2
                width: Math.min(mainArea.availableWidth, 1160)
                spacing: 22

                Item {
                    Layout.preferredHeight: 30 - 22
                }
                LowSpaceBanner {
                    Layout.leftMargin: 36
                    Layout.rightMargin: 36
                    Layout.fillWidth: true
                    visible: AppStore.lowDiskSpace
                }
                AIStorageView {
                    Layout.leftMargin: 36
                    Layout.rightMargin: 36
                    Layout.fillWidth: true
                }
                Item {
                    Layout.preferredHeight: 30 - 22
                }
            }
        }
        StorageStatusFooter {
            Layout.fillWidth: true
        }
    }

    Popup {
        id: settingsPopover

        x: content.width - width - 24
        y: 72
        width: 360
        padding: 0
        visible: content.showSettings
        onClosed: content.showSettings = false

        background: Rectangle {
            radius: 10
            color: Colors.surface
            border.color: Colors.line
        }

        // Made when opened, so that starting the window does not pay for it.
        Loader {
            width: parent.width
            active: settingsPopover.visible

            sourceComponent: StorageSettings {}
        }
    }

    Dialog {
        id: reviewSheet

        anchors.centerIn: parent
        modal: true
        padding: 0
        closePolicy: AppStore.cleaning ? Popup.NoAutoClose : Popup.CloseOnEscape
        onClosed: {
            if (AppStore.locationRemovalReview !== null && !AppStore.cleaning)
                AppStore.locationRemovalReview = null
        }

        background: Rectangle {
            radius: 12
            color: Colors.surface
        }

        Loader {
            active: AppStore.locationRemovalReview !== null

            sourceComponent: LocationRemovalReviewView {
                review: AppStore.locationRemovalReview
            }
        }

        Connections {
            function onLocationRemovalReviewChanged() {
                if (AppStore.locationRemovalReview !== null)
                    reviewSheet.open()
                else
                    reviewSheet.close()
            }

            target: AppStore
        }
    }

    MessageAlert {
        title: "Couldn’t complete that action"
        message: AppStore.error
        shown: AppStore.error !== ""
        onDismissed: AppStore.error = ""
    }
}
