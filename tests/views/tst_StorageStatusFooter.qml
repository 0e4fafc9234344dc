import QtQuick
import QtTest
import Tallowmere
import Tallowmere.Model

// Against the real store, past its first scan of an empty home.
ViewTestCase {
    id: testCase

    name: "StorageStatusFooter"

    function makeFooter() {
        return createTemporaryObject(footerView, testCase)
    }
    function init() {
        tryCompare(AppStore, "aiScanning", false, 20000)
    }
    function cleanup() {
        AppStore.notice = ""
    }

    function test_scanStatus() {
        const footer = makeFooter()
        const status = textStarting(footer, "Updated ")
        verify(status.visible)
        verify(!status.text.endsWith(" · Partial scan"), status.text)

        // A scan over the one on screen says so until it ends.
        AppStore.scanAI()
        verify(AppStore.aiScanning)
        compare(status.text, "Updating storage…")
        tryCompare(AppStore, "aiScanning", false, 20000)
        verify(status.text.startsWith("Updated "), status.text)
    }

    function test_noticeReplacesThePrivacyLine() {
        const footer = makeFooter()
        const privacy = textStarting(footer, "Private by design.")
        AppStore.notice = "Moved 2 items to Trash."
        const notice = textItem(footer, "Moved 2 items to Trash.")
        tryCompare(notice, "visible", true)
        tryCompare(privacy, "visible", false)
        // Nothing to put back: this store has removed nothing.
        compare(AppStore.undoItems.count, 0)
        verify(!button(footer, "Undo").visible)

        mouseClick(buttonNamed(footer, "Dismiss cleanup status"))
        compare(AppStore.notice, "")
        tryCompare(privacy, "visible", true)
        tryCompare(notice, "visible", false)
    }

    Component {
        id: footerView

        StorageStatusFooter {
            width: 760
        }
    }
}
