import QtQuick
import QtTest
import Tallowmere
import Tallowmere.Model

ViewTestCase {
    id: testCase

    name: "LocationRemovalReviewView"

    readonly property var cacheFiles: ({
        title: "Cache files", sizeText: "1 GB", countText: "120 files", roots: ["~/.codex/cache"]
    })
    readonly property var sessions: ({
        category: "Sessions", sizeText: "2 GB", shortPath: "~/.codex/sessions", summary: "Saved conversations.",
        itemsText: "40 items"
    })
    readonly property string filesOnlyNotice: "Only eligible cache/log files. Quit Codex first; changed files are skipped."
    readonly property string wholeFolderWarning: "Whole folders include saved data, settings and any nested files. Quit Codex before removing them."

    function review(values) {
        return Object.assign({ owner: "Codex", selectionSummary: "2 items", affectedTools: [], fileGroups: [cacheFiles],
                               folders: [], sizeText: "3 GB" }, values)
    }
    function makeSheet(values) {
        return createTemporaryObject(sheetView, testCase, { review: review(values) })
    }
    function pick(sheet, method) {
        const picker = firstUnder(sheet, item => typeof item.methodPicked === "function", "the method picker")
        mouseClick(textItem(picker, method))
    }

    function test_whatTheNoticeWarnsOf_data() {
        return [
            // Files alone never reach into another tool's storage, whatever the review lists.
            { tag: "files only", folders: [], affected: ["Cursor"], filesOnly: true, warning: false, also: "" },
            { tag: "folders of one tool", folders: [sessions], affected: [], filesOnly: false, warning: true, also: "" },
            { tag: "folders shared with others", folders: [sessions], affected: ["Cursor", "Cline"], filesOnly: false,
              warning: true, also: "Also includes storage belonging to: Cursor, Cline." }
        ]
    }
    function test_whatTheNoticeWarnsOf(data) {
        const sheet = makeSheet({ folders: data.folders, affectedTools: data.affected })
        compare(textItem(sheet, filesOnlyNotice).visible, data.filesOnly)
        compare(textItem(sheet, wholeFolderWarning).visible, data.warning)
        const also = textStarting(sheet, "Also includes storage belonging to:")
        compare(also.visible, data.also !== "")
        if (data.also !== "")
            compare(also.text, data.also)
    }

    function test_footerFollowsTheMethod() {
        const sheet = makeSheet({ sizeText: ViewStyle.sizeText(0) })
        verify(textItem(sheet, "0 KB on disk").visible)
        verify(textItem(sheet, "Undo available · Trash still uses space.").visible)
        verify(button(sheet, "Move to Trash").visible)

        pick(sheet, "Delete permanently")
        compare(sheet.removalMethod, AppStore.Permanent)
        verify(textItem(sheet, "Bypasses Trash · Cannot be undone.").visible)
        verify(button(sheet, "Delete permanently…").visible)

        pick(sheet, "Move to Trash")
        compare(sheet.removalMethod, AppStore.Trash)
        verify(textItem(sheet, "Undo available · Trash still uses space.").visible)
    }

    // Nothing is deleted on the first press: a second confirmation comes first, and backing
    // out of it keeps the sheet as it was. (The store holds no review, so it would refuse a
    // removal anyway; `cleaning` shows whether one was asked for and started.)
    function test_permanentDeletionAsksFirst() {
        const sheet = makeSheet({ folders: [sessions] })
        const alert = popupOf(sheet)
        pick(sheet, "Delete permanently")
        verify(!alert.opened)

        mouseClick(button(sheet, "Delete permanently…"))
        tryCompare(alert, "opened", true)
        verify(!AppStore.cleaning)
        verify(textStarting(alert.contentItem, "2 items from Codex (3 GB) will be deleted without going to Trash.").visible)

        mouseClick(button(alert.contentItem, "Cancel"))
        tryCompare(alert, "visible", false)
        verify(!AppStore.cleaning)
        compare(sheet.removalMethod, AppStore.Permanent)
        verify(textItem(sheet, "Bypasses Trash · Cannot be undone.").visible)

        // Backing out leaves the sheet ready to ask again.
        mouseClick(button(sheet, "Delete permanently…"))
        tryCompare(alert, "opened", true)
        mouseClick(button(alert.contentItem, "Cancel"))
        tryCompare(alert, "visible", false)
        verify(!AppStore.cleaning)
    }

    Component {
        id: sheetView

        LocationRemovalReviewView {}
    }
}
