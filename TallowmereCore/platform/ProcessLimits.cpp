#include "platform/ProcessLimits.h"

#include <sys/resource.h>

namespace tallowmere::ProcessLimits {

void raiseOpenFileLimit() {
    rlimit limit;
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

}  // namespace tallowmere::ProcessLimits
