#include "platform/loadedlibrary.h"

// Stands for the editor where a test is the program that loads a library.
int main(int argc, char **argv) {
    if (platform::isLibraryTrialCall(argc, argv))
        platform::runLibraryTrial();
    return 2;
}
