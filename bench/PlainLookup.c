#include "bench/PlainLookup.h"

#include <dirent.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

enum { kLineSize = 128 };

int ReadAllStatFiles(void) {
    int count = 0;
    DIR* const directory = opendir("/proc");
    if (directory == NULL) {
        return 0;
    }
    const struct dirent* entry = NULL;
    while ((entry = readdir(directory)) != NULL) {
        if (entry->d_name[0] < '0' || entry->d_name[0] > '9') {
            continue;
        }
        char path[sizeof("/proc//stat") + sizeof(entry->d_name)] = "/proc/";
        strcat(path, entry->d_name);
        strcat(path, "/stat");
        const int fd = open(path, O_RDONLY | O_CLOEXEC);
        if (fd != -1) {
            char line[kLineSize];
            count += read(fd, line, sizeof(line)) > 0;
            close(fd);
        }
    }
    closedir(directory);
    return count;
}
