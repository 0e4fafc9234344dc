import QtQuick
import Tallowmere

// One of the application's line icons, drawn at `size` in `color`; decorative.
Image {
    id: icon

    property string name
    property real size: 16
    property color color: Colors.ink

    width: size
    height: size
    sourceSize: Qt.size(Math.ceil(size), Math.ceil(size))
    // The colour travels in the address without its "#", which would start a fragment.
    source: name === "" ? "" : "image://icon/" + name + "/" + String(color).slice(1)
    Accessible.ignored: true
}
