#include "console/coredumps.h"

#include <sys/resource.h>

void disableCoreDumps()
{
#ifdef NDEBUG
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
#endif
}
