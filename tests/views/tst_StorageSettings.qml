import QtQuick
import QtTest
import Tallowmere
import Tallowmere.Model

// Against the real store, which tracks no folder of its own and has removed nothing.
ViewTestCase {
    id: testCase

    name: "StorageSettings"

    function makeSettings() {
        return createTemporaryObject(settingsView, testCase)
    }
    function cleanup() {
        AppStore.lowSpaceGB = 20
    }

    function test_sectionsWithNothingToShow() {
        const settings = makeSettings()
        compare(AppStore.customAIPaths.length, 0)
        verify(!textItem(settings, "Added folders").visible)
        compare(AppStore.undoItems.count, 0)
        verify(!button(settings, "Undo last cleanup").visible)
    }

    function test_recognizedTools() {
        const settings = makeSettings()
        const owners = ViewStyle.supportedOwners
        verify(owners.length > 0)
        const toggle = buttonNamed(settings, owners.length + " recognized AI tools")
        verify(textItem(toggle, owners.length + " recognized AI tools").visible)
        const list = textItem(settings, owners.join(" · "))
        verify(!list.visible)
        mouseClick(toggle)
        verify(list.visible)
    }

    function test_lowSpaceThreshold() {
        const settings = makeSettings()
        compare(AppStore.lowSpaceGB, 20)
        const ten = button(settings, "10 GB available")
        const twenty = button(settings, "20 GB available")
        const fifty = button(settings, "50 GB available")
        verify(twenty.checked)

        mouseClick(fifty)
        compare(AppStore.lowSpaceGB, 50)
        compare([ten.checked, twenty.checked, fifty.checked], [false, false, true])
        mouseClick(fifty)
        compare(AppStore.lowSpaceGB, 50)
        verify(fifty.checked, "picking the current choice again keeps it")
        mouseClick(ten)
        compare(AppStore.lowSpaceGB, 10)
        compare([ten.checked, twenty.checked, fifty.checked], [true, false, false])

        // After clicks the buttons still follow the store.
        AppStore.lowSpaceGB = 20
        compare([ten.checked, twenty.checked, fifty.checked], [false, true, false])
    }

    Component {
        id: settingsView

        StorageSettings {}
    }
}
