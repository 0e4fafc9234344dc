#pragma once

namespace tallowmere {

// How reviewed items leave their place: to the Trash (undo possible) or deleted for good.
enum class StorageRemovalMethod { trash, permanent };

}  // namespace tallowmere
