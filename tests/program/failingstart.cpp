// The console on a platform that doesn't come up.

#include "console/consoleprogram.h"

#include <cstdio>

int main(int argc, char** argv)
{
    return runConsole(argc, argv,
                      {.init = [] { return -1; }, .cleanup = [] { std::puts("cleaned up"); }});
}
