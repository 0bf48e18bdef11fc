// Writes a new key to the path in the first argument, plain at first and then over itself with a
// password, and reads it without one, as any user of the library would. The tests watch its system
// calls.

#include "pki/uapkirsakeypair.h"

#include <sys/stat.h>

int main(int argc, char** argv)
{
    if (argc != 2) {
        return 2;
    }
    // Nothing but the library itself keeps the file closed to others.
    umask(0);
    const UaPkiRSAKeyPair keyPair(1024);
    const bool isWritten =
        keyPair.toPEMFile(argv[1], nullptr) == 0 && keyPair.toPEMFile(argv[1], "secret") == 0;
    const UaPkiRSAKeyPair read = UaPkiRSAKeyPair::fromPEMFile(argv[1], nullptr);
    return isWritten && read.toDER().isEmpty() ? 0 : 1;
}
