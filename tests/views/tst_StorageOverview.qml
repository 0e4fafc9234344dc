import QtQuick
import QtTest
import Tallowmere

ViewTestCase {
    id: testCase

    name: "StorageOverview"

    readonly property var twoTools: [
        { owner: "Codex", allocatedBytes: 3000000000, sizeText: "3 GB", locationCount: 3, incomplete: false },
        { owner: "Cursor", allocatedBytes: 1000000000, sizeText: "1 GB", locationCount: 1, incomplete: true }
    ]

    function scan(values) {
        return Object.assign({ allocatedBytes: 0, allocatedText: "0 KB", incomplete: false, absentLocations: 0,
                               unreadableLocations: 0 }, values)
    }
    function makeOverview(storage, rows) {
        return createTemporaryObject(overviewView, testCase,
                                     { storage: storage, tools: listOf(rows), toolCount: rows.length })
    }
    function toolRows(overview) {
        return itemsUnder(overview, item => isControl(item) && item.locationCount !== undefined)
    }

    function test_beforeTheFirstResult() {
        // Tools handed over early must not be listed under the waiting message.
        const overview = makeOverview(null, twoTools)
        verify(textItem(overview, "Getting to know your tools…").visible)
        verify(!textItem(overview, "No tools found at these locations.").visible)
        compare(toolRows(overview).length, 0)
        verify(textItem(overview, "—").visible, "the headline has no number yet")
        verify(!textStarting(overview, "across ").visible)
        verify(!textStarting(overview, "Some locations could only be partly measured.").visible)
    }

    function test_aScanThatFoundNothing() {
        const overview = makeOverview(scan({}), [])
        verify(!textItem(overview, "Getting to know your tools…").visible)
        verify(textItem(overview, "No tools found at these locations.").visible)
        verify(button(overview, "Add a folder…").visible)
        compare(toolRows(overview).length, 0)
    }

    function test_oneRowPerTool() {
        const overview = makeOverview(scan({ allocatedBytes: 4000000000 }), twoTools)
        const rows = toolRows(overview)
        compare(rows.map(row => row.owner), ["Codex", "Cursor"])
        compare(rows.map(row => row.incomplete), [false, true])
        verify(textItem(overview, "4").visible, "the headline is this scan's total")
        verify(!textItem(overview, "Getting to know your tools…").visible)
        verify(!textItem(overview, "No tools found at these locations.").visible)
    }

    function test_partialScanNote_data() {
        return [
            { tag: "complete", incomplete: false, unreadable: 0, shown: false },
            // Walks stopped at their limit with every location readable: still worth saying.
            { tag: "partial, nothing unreadable", incomplete: true, unreadable: 0, shown: true },
            { tag: "partial, two unreadable", incomplete: true, unreadable: 2, shown: true }
        ]
    }
    function test_partialScanNote(data) {
        const overview = makeOverview(scan({ incomplete: data.incomplete, unreadableLocations: data.unreadable }),
                                      twoTools)
        const note = textStarting(overview, "Some locations could only be partly measured.")
        compare(note.visible, data.shown)
        if (data.shown)
            verify(note.text.endsWith(" " + data.unreadable + " locations unavailable."), note.text)
    }

    Component {
        id: overviewView

        StorageOverview {
            width: 760
        }
    }
}
