// run_measured TIMES COMMAND [ARGUMENT...]: runs a program TIMES times, one run after the other,
// without input or output, and prints a line for each run:
//
//   seconds from start to end, seconds of processor time in user mode, peak resident KiB
//
// Times include the programs that it waited for; memory is that of the largest process. A program's
// peak begins with the memory of the process that starts it, so this one is small. Ends with status
// 1 after the first run with a status other than 0.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

bool runOnce(char** command, const posix_spawn_file_actions_t& actions) {
    const Clock::time_point start = Clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, command[0], &actions, nullptr, command, environ) != 0) return false;
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) return false;
    const std::chrono::duration<double> taken = Clock::now() - start;
    const double user = static_cast<double>(usage.ru_utime.tv_sec) +
                        static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
    std::printf("%.6f %.6f %ld\n", taken.count(), user, usage.ru_maxrss);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    const long times = argc > 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (times < 1) {
        std::fputs("usage: run_measured TIMES COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    for (long i = 0; i < times; ++i) {
        if (runOnce(argv + 2, actions)) continue;
        std::fprintf(stderr, "run_measured: %s has failed\n", argv[2]);
        return 1;
    }
    return 0;
}
