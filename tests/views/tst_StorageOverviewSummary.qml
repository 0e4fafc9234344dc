import QtQuick
import QtTest
import Tallowmere

ViewTestCase {
    id: testCase

    name: "StorageOverviewSummary"

    function makeSummary(values) {
        return createTemporaryObject(summaryView, testCase,
                                     Object.assign({ storage: { allocatedBytes: 1500000000 }, diskSpace: null,
                                                     measuredCount: 1 }, values))
    }

    function test_toolCount_data() {
        return [
            { tag: "one", count: 1, expected: "across 1 tool" },
            { tag: "three", count: 3, expected: "across 3 tools" },
            { tag: "none", count: 0, expected: "across 0 tools" }
        ]
    }
    function test_toolCount(data) {
        const summary = makeSummary({ measuredCount: data.count })
        verify(textItem(summary, data.expected).visible)
    }

    function test_headline() {
        const summary = makeSummary({})
        verify(textItem(summary, "1.5").visible)
        const unit = textItem(summary, "GB")
        verify(unit.visible)

        summary.storage = null
        verify(textItem(summary, "—").visible)
        verify(!unit.visible, "no unit without a number")
        verify(!textStarting(summary, "across ").visible)
    }

    function test_freeSpace() {
        const summary = makeSummary({})
        verify(!textItem(summary, "Available on this computer").visible)

        summary.diskSpace = { total: 500000000000, available: 120000000000, availableText: "120 GB" }
        verify(textItem(summary, "Available on this computer").visible)
        verify(textItem(summary, "120 GB").visible)
    }

    Component {
        id: summaryView

        StorageOverviewSummary {
            width: 760
        }
    }
}
