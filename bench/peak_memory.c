/* Runs a command and writes its peak resident set, in kilobytes, to a file. A child's peak counts
   the memory of the process it was forked from, so the benchmark measures through this small
   program rather than forking the command from its own, much larger, interpreter. Usage:
   peak_memory result-file command [arguments] */
#include <stdio.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc < 3) {
        fprintf(stderr, "usage: peak_memory result-file command [arguments]\n");
        return 2;
    }
    pid_t child = fork();
    if (child < 0) return 2;
    if (child == 0) {
        execvp(argv[2], argv + 2);
        _exit(127);
    }
    int status;
    struct rusage usage;
    if (wait4(child, &status, 0, &usage) < 0) return 2;
    FILE* result = fopen(argv[1], "w");
    if (!result) return 2;
    fprintf(result, "%ld\n", usage.ru_maxrss);
    fclose(result);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
