#include "Support/Folders.h"

#include <sys/stat.h>

namespace kippo {

void makeFolders(std::string folder) {
    for (auto slash = folder.find('/', 1); slash != std::string::npos; slash = folder.find('/', slash + 1)) {
        folder[slash] = '\0';
        mkdir(folder.c_str(), 0700);
        folder[slash] = '/';
    }
    mkdir(folder.c_str(), 0700);
}

} // namespace kippo
