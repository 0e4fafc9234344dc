import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowmere
import Tallowmere.Model

// The choice between moving to the Trash and deleting permanently.
ColumnLayout {
    id: picker

    property int method: AppStore.Trash

    signal methodPicked(int method)

    spacing: 8

    RowLayout {
        spacing: 12

        Label {
            text: "Removal method"
            font.pixelSize: 12
            color: Colors.ink
        }
        Rectangle {
            implicitWidth: 360
            implicitHeight: 28
            radius: 7
            color: Colors.soft
            border.color: Colors.line
            Accessible.role: Accessible.PageTabList
            Accessible.name: "Removal method"

            Row {
                anchors.fill: parent
                anchors.margins: 2

                Repeater {
                    model: [{ "label": "Move to Trash", "value": AppStore.Trash },
                        { "label": "Delete permanently", "value": AppStore.Permanent }]

                    delegate: AbstractButton {
                        id: segment

                        required property var modelData

                        width: parent.width / 2
                        height: parent.height
                        checkable: true
                        checked: picker.method === modelData.value
                        opacity: picker.enabled ? 1 : 0.5
                        Accessible.role: Accessible.RadioButton
                        Accessible.name: modelData.label
                        Accessible.checkable: true
                        Accessible.checked: checked
                        Accessible.onPressAction: if (segment.enabled) segment.clicked()
                        Accessible.onToggleAction: segment.clicked()
                        onClicked: {
                            picker.methodPicked(modelData.value)
                            checked = Qt.binding(() => picker.method === modelData.value)
                        }

                        background: Rectangle {
                            radius: 5
                            color: segment.checked ? Colors.surface : "transparent"
                            border.color: segment.checked ? Colors.line : "transparent"
                        }
                        contentItem: Text {
                            text: segment.modelData.label
                            horizontalAlignment: Text.AlignHCenter
                            verticalAlignment: Text.AlignVCenter
                            font.pixelSize: 12
                            font.weight: segment.checked ? Font.Medium : Font.Normal
                            color: Colors.ink
                        }
                    }
                }
            }
        }
    }
    Label {
        text: picker.method === AppStore.Permanent ? "No Trash and no Undo. A final confirmation follows."
                                                   : ViewStyle.trashNote
        font.pixelSize: 11
        color: picker.method === AppStore.Permanent ? Colors.red : Colors.muted
    }
}
