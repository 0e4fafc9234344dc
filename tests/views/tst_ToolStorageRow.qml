import QtQuick
import QtTest
import Tallowmere
import Tallowmere.Model

ViewTestCase {
    id: testCase

    name: "ToolStorageRow"

    function makeRow(values) {
        return createTemporaryObject(rowView, testCase,
                                     Object.assign({ owner: "Codex", sizeText: "3 GB", locationCount: 3,
                                                     incomplete: false }, values))
    }

    function cleanup() {
        AppStore.selectedToolID = ""
    }

    function test_locationLine_data() {
        return [
            { tag: "one", count: 1, incomplete: false, expected: "1 location" },
            { tag: "three", count: 3, incomplete: false, expected: "3 locations" },
            { tag: "one, partial", count: 1, incomplete: true, expected: "1 location · Partial scan" },
            { tag: "three, partial", count: 3, incomplete: true, expected: "3 locations · Partial scan" }
        ]
    }
    function test_locationLine(data) {
        const row = makeRow({ locationCount: data.count, incomplete: data.incomplete })
        verify(textItem(row, data.expected).visible)
    }

    function test_opensItsTool() {
        const row = makeRow({})
        compare(row.Accessible.name, "Open Codex, 3 GB")
        mouseClick(row)
        compare(AppStore.selectedToolID, "Codex")
    }

    Component {
        id: rowView

        ToolStorageRow {
            width: 600
        }
    }
}
