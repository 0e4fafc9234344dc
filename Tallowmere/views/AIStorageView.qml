import QtQuick
import Tallowmere
import Tallowmere.Model

// The main area: the overview of all tools, or the detail of the selected one.
Loader {
    sourceComponent: AppStore.selectedTool === null ? overview : detail

    Component {
        id: overview

        StorageOverview {}
    }
    Component {
        id: detail

        ToolStorageDetail {
            owner: AppStore.selectedToolID
        }
    }
}
