#include "platform/FileIdentity.h"

namespace tallowmere {

std::string FileIdentity::text() const {
    return std::to_string(device) + ':' + std::to_string(inode);
}

}  // namespace tallowmere
