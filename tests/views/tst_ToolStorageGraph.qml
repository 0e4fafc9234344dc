import QtQuick
import QtTest
import Tallowmere

ViewTestCase {
    id: testCase

    name: "ToolStorageGraph"

    function tool(owner, bytes, sizeText) {
        return { owner: owner, allocatedBytes: bytes, sizeText: sizeText }
    }
    function makeGraph(rows) {
        const measured = rows.filter(row => row.allocatedBytes > 0)
        return createTemporaryObject(graphView, testCase, {
            tools: listOf(rows),
            measuredCount: measured.length,
            total: measured.reduce((sum, row) => sum + row.allocatedBytes, 0),
            reduceMotion: true
        })
    }
    // A segment knows its graph; a legend link does not.
    function segmentOf(graph, owner) {
        return firstUnder(graph, item => item.graph === graph && item.owner === owner, "the segment of " + owner)
    }
    function linkOf(graph, owner) {
        return firstUnder(graph, item => isControl(item) && item.graph === undefined && item.owner === owner,
                          "the legend link of " + owner)
    }

    function test_segmentsShareTheWidth() {
        const graph = makeGraph([tool("Codex", 3000000000, "3 GB"), tool("Cursor", 1000000000, "1 GB")])
        verify(graph.visible)
        // 404 points less one 4-point gap between two segments.
        fuzzyCompare(segmentOf(graph, "Codex").width, 300, 0.001)
        fuzzyCompare(segmentOf(graph, "Cursor").width, 100, 0.001)
    }

    function test_labelsThatFit() {
        const graph = makeGraph([tool("Codex", 3000000000, "3 GB"), tool("Cursor", 1000000000, "1 GB")])
        const wide = segmentOf(graph, "Codex")
        verify(textItem(wide, "Codex").visible)
        verify(textItem(wide, "3 GB").visible)
        // 100 points hold a name, but a size needs 135.
        const narrow = segmentOf(graph, "Cursor")
        verify(textItem(narrow, "Cursor").visible)
        verify(!textItem(narrow, "1 GB").visible)
    }

    function test_oneToolFillsTheBar() {
        const graph = makeGraph([tool("Codex", 2000000000, "2 GB")])
        fuzzyCompare(segmentOf(graph, "Codex").width, 404, 0.001)
    }

    function test_toolsWithoutBytes() {
        verify(!makeGraph([]).visible, "no tools")
        verify(!makeGraph([tool("Codex", 0, "0 KB")]).visible, "nothing measured")

        // An empty tool takes neither a share nor a gap, and has no link.
        const graph = makeGraph([tool("Codex", 3000000000, "3 GB"), tool("Cursor", 1000000000, "1 GB"),
                                 tool("Cline", 0, "0 KB")])
        fuzzyCompare(segmentOf(graph, "Codex").width, 300, 0.001)
        fuzzyCompare(segmentOf(graph, "Cursor").width, 100, 0.001)
        verify(!segmentOf(graph, "Cline").visible)
        verify(!linkOf(graph, "Cline").visible)
        verify(linkOf(graph, "Cursor").visible)
    }

    function test_colorsFollowTheOwner_data() {
        return [
            { tag: "Cursor, the first colour", owner: "Cursor", rgb: [0.76, 0.84, 0.67] },
            { tag: "IBM Bob, the eighth", owner: "IBM Bob", rgb: [0.87, 0.83, 0.79] },
            // 'a' + 'b' + 'c' = 294, and 294 % 8 = 6.
            { tag: "a folder the user added", owner: "abc", rgb: [0.79, 0.84, 0.87] }
        ]
    }
    function test_colorsFollowTheOwner(data) {
        const graph = makeGraph([tool("Codex", 1000000000, "1 GB"), tool(data.owner, 1000000000, "1 GB")])
        const [red, green, blue] = data.rgb
        compareColor(segmentOf(graph, data.owner).background.color, red, green, blue, "segment")
        const dot = firstUnder(linkOf(graph, data.owner), item => item.radius === 3.5, "the legend's dot")
        compareColor(dot.color, red, green, blue, "legend")
    }

    function test_hoverGoesToTheToolLastEntered() {
        const graph = makeGraph([tool("Codex", 3000000000, "3 GB"), tool("Cursor", 1000000000, "1 GB")])
        graph.hover("Codex", true)
        verify(segmentOf(graph, "Codex").isHovered)
        // Entering the next tool can be reported before leaving the last.
        graph.hover("Cursor", true)
        graph.hover("Codex", false)
        compare(graph.hoveredTool, "Cursor")
        verify(!segmentOf(graph, "Codex").isHovered)
        verify(segmentOf(graph, "Cursor").isHovered)
        graph.hover("Cursor", false)
        compare(graph.hoveredTool, "")
    }

    Component {
        id: graphView

        ToolStorageGraph {
            width: 404
        }
    }
}
