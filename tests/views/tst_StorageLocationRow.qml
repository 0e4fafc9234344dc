import QtQuick
import QtTest
import Tallowmere

ViewTestCase {
    id: testCase

    name: "StorageLocationRow"

    function file(name) {
        return { name: name, path: testHome + "/.codex/cache/" + name, sizeText: "40 MB" }
    }
    function makeRow(values) {
        return createTemporaryObject(rowView, testCase, Object.assign({
            locationID: "codex-cache",
            category: "Cache",
            path: testHome + "/.codex/cache",
            detail: "Downloaded files Codex fetches again when needed.",
            canSelect: true,
            sizeText: "120 MB",
            sizeLabel: "on disk",
            statusText: "Safe to clear",
            rebuildable: true,
            consequence: "Codex downloads these again.",
            partialText: "",
            largestFiles: [],
            owner: "Codex"
        }, values))
    }
    function checkBoxOf(row) {
        return firstUnder(row, item => item.checkState !== undefined, "a check box")
    }

    // The row only asks; the selection is its owner's, so the box follows `selected` alone.
    function test_selectionIsRequested() {
        const row = makeRow({})
        const box = checkBoxOf(row)
        const requests = spyOn(row, "selectRequested")
        compare(box.Accessible.name, "Select Cache at ~/.codex/cache")
        verify(box.enabled)

        mouseClick(box)
        compare(requests.count, 1)
        compare(requests.signalArguments[0][0], true)
        verify(!box.checked, "checked without the owner's say")

        row.selected = true
        verify(box.checked)
        mouseClick(box)
        compare(requests.count, 2)
        compare(requests.signalArguments[1][0], false)
        verify(box.checked)
    }

    function test_aLocationThatCannotBeSelected() {
        const row = makeRow({ canSelect: false })
        const box = checkBoxOf(row)
        const requests = spyOn(row, "selectRequested")
        verify(!box.enabled)
        mouseClick(box)
        compare(requests.count, 0)
    }

    function test_largestFiles_data() {
        return [
            { tag: "none", files: [] },
            { tag: "one", files: [file("a.bin")] },
            { tag: "three", files: [file("a.bin"), file("b.bin"), file("c.bin")] }
        ]
    }
    function test_largestFiles(data) {
        const row = makeRow({ largestFiles: data.files, expanded: true })
        const shown = buttonsLabelled(row, "Reveal").filter(reveal => reveal.visible)
        compare(shown.length, data.files.length)
        for (const entry of data.files)
            verify(textItem(row, entry.name).visible)
    }

    function test_detailsOpenOnRequest() {
        const row = makeRow({ largestFiles: [file("a.bin")] })
        const requests = spyOn(row, "expandRequested")
        verify(!buttonsLabelled(row, "Reveal")[0].visible)

        mouseClick(buttonNamed(row, "Details and largest files for Cache at ~/.codex/cache"))
        compare(requests.count, 1)
        compare(requests.signalArguments[0][0], true)
        row.expanded = true
        verify(buttonsLabelled(row, "Reveal")[0].visible)
    }

    function test_partialLine() {
        const row = makeRow({ partialText: "Measured the first 100,000 entries." })
        const line = textItem(row, "Measured the first 100,000 entries.")
        verify(line.visible)
        row.partialText = ""
        verify(!line.visible)
    }

    Component {
        id: rowView

        StorageLocationRow {
            width: 640
        }
    }
}
