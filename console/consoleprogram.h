#pragma once

/// How the program brings up and takes down everything below the value classes.
struct PlatformDoor
{
    int (*init)();     ///< 0, or a negative value that ends the program.
    void (*cleanup)(); ///< Paired with every init that succeeded.
};

/// Runs the console from the platform start to the end of the event loop. Returns the exit code.
int runConsole(int argc, char** argv, const PlatformDoor& platform);
