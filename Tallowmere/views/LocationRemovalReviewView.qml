import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The last step before a removal: what the review covers, what it costs, and how to remove it.
Item {
    id: sheet

    required property var review
    property int removalMethod: AppStore.Trash
    property bool confirmPermanent: false
    readonly property bool permanent: removalMethod === AppStore.Permanent
    readonly property bool wholeFolders: review.folders.length > 0

    implicitWidth: 780
    implicitHeight: 650

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 26
        spacing: 20

        RowLayout {
            spacing: 12

            ToolBadge {
                owner: sheet.review.owner
                size: 38
            }
            ColumnLayout {
                spacing: 6

                Label {
                    text: "Review selected items"
                    font.pixelSize: 22
                    font.weight: Font.DemiBold
                    font.letterSpacing: -0.5
                    color: Colors.ink
                }
                Label {
                    text: sheet.review.selectionSummary
                    font.pixelSize: 12
                    color: Colors.muted
                }
            }
        }
        ReviewNotice {
            Layout.fillWidth: true
            owner: sheet.review.owner
            wholeFolders: sheet.wholeFolders
            affectedTools: sheet.review.affectedTools
        }
        ScrollView {
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            clip: true

            ColumnLayout {
                width: parent.width
                spacing: 10

                Repeater {
                    model: sheet.review.fileGroups

                    delegate: ReviewFileGroupCard {
                        Layout.fillWidth: true
                    }
                }
                Repeater {
                    model: sheet.review.folders

                    delegate: ReviewFolderCard {
                        Layout.fillWidth: true
                    }
                }
            }
        }
        RemovalMethodPicker {
            method: sheet.removalMethod
            enabled: !AppStore.cleaning
            onMethodPicked: method => sheet.removalMethod = method
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Colors.line
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                Label {
                    Layout.fillWidth: true
                    text: sheet.review.sizeText + " on disk"
                    font.pixelSize: 14
                    font.weight: Font.Medium
                    color: Colors.ink
                }
                Label {
                    text: sheet.permanent ? "Bypasses Trash · Cannot be undone."
                                          : "Undo available · Trash still uses space."
                    font.pixelSize: 11
                    color: Colors.muted
                }
            }
            BusyIndicator {
                visible: AppStore.cleaning
                running: visible
                implicitWidth: 18
                implicitHeight: 18
                Accessible.name: "Removing"
            }
            QuietButton {
                text: "Cancel"
                enabled: !AppStore.cleaning
                onClicked: AppStore.locationRemovalReview = null
            }
            AccentButton {
                text: AppStore.cleaning ? "Removing…" : sheet.permanent ? "Delete permanently…" : "Move to Trash"
                enabled: !AppStore.cleaning
                onClicked: {
                    if (sheet.permanent)
                        sheet.confirmPermanent = true
                    else
                        AppStore.removeReviewedLocations(AppStore.Trash)
                }
            }
        }
    }
    PermanentDeletionAlert {
        review: sheet.review
        shown: sheet.confirmPermanent
        onAnswered: deleting => {
            sheet.confirmPermanent = false
            if (deleting)
                AppStore.removeReviewedLocations(AppStore.Permanent)
        }
    }
}
