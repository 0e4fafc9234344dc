import QtQuick
import Tallowmere

// Two tools in a graph with room around it, for the mouse to move between them and off them.
Item {
    width: 440
    height: 260

    ToolStorageGraph {
        objectName: "graph"
        x: 18
        y: 18
        width: 404
        measuredCount: 2
        total: 4000000000
        reduceMotion: true
        tools: ListModel {
            ListElement {
                owner: "Codex"
                allocatedBytes: 3000000000
                sizeText: "3 GB"
            }
            ListElement {
                owner: "Cursor"
                allocatedBytes: 1000000000
                sizeText: "1 GB"
            }
        }
    }
}
