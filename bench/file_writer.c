/* The floor of the output benchmark: the least a program can do to leave the same files on disk.
   It reads a manifest ("d <path>" makes a folder, "f <size> <path>" writes a file of that many
   bytes) and replays it below the current folder with one mkdir per folder and one open, write
   and close per file. The newest folder stays open and its files are opened relative to it, so
   that no path is resolved twice. */
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static char zeroes[1 << 16];

static int write_file(int folder, char const* path, long size) {
    int fd = openat(folder, path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (fd < 0) return 1;
    while (size > 0) {
        long chunk = size < (long)sizeof zeroes ? size : (long)sizeof zeroes;
        if (write(fd, zeroes, (size_t)chunk) != chunk) break;
        size -= chunk;
    }
    return close(fd) != 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: file_writer manifest\n");
        return 2;
    }
    FILE* manifest = fopen(argv[1], "r");
    if (!manifest) return 2;
    char line[4096];
    char folder_path[4096] = "";
    int folder = AT_FDCWD;
    int failed = 0;
    while (fgets(line, sizeof line, manifest)) {
        line[strcspn(line, "\n")] = 0;
        char* end;
        if (line[0] == 'd') {
            mkdir(line + 2, 0777);
            if (folder != AT_FDCWD) close(folder);
            folder = open(line + 2, O_RDONLY | O_DIRECTORY);
            snprintf(folder_path, sizeof folder_path, "%s/", line + 2);
        } else if (line[0] == 'f') {
            long size = strtol(line + 2, &end, 10);
            char const* path = end + 1;
            size_t prefix = strlen(folder_path);
            int inside = prefix > 0 && strncmp(path, folder_path, prefix) == 0;
            failed |= write_file(inside ? folder : AT_FDCWD, inside ? path + prefix : path, size);
        }
    }
    if (folder != AT_FDCWD) close(folder);
    fclose(manifest);
    return failed;
}
