// The build's programs as processes of a test, and what they leave behind.
#ifndef TESTS_PROGRAMS_H
#define TESTS_PROGRAMS_H

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "shared_objects.h"
#include "well_known.h"

// `settings` (NAME=VALUE) are the program's alone.  What it says goes to the end of the file `output`.  Throws std::system_error.
inline pid_t start_program(const std::string& name, std::vector<std::string> arguments = {},
                           std::vector<std::string> settings = {}, const std::string& output = "/dev/null") {
    const auto pointers = [](std::vector<std::string>& words) {
        std::vector<char*> all;
        std::transform(words.begin(), words.end(), std::back_inserter(all),
                       [](std::string& word) { return word.data(); });
        all.push_back(nullptr);
        return all;
    };
    arguments.insert(arguments.begin(), std::string(BIN_DIR) + "/" + name);
    for (char** variable = environ; *variable != nullptr; ++variable)
        settings.emplace_back(*variable);  // of two with the same name the first counts
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0644);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t pid = 0;
    const int error = posix_spawn(&pid, arguments[0].c_str(), &actions, nullptr, pointers(arguments).data(),
                                  pointers(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::system_error(error, std::generic_category(), arguments[0]);
    return pid;
}

// Its status; 0 where there is none.
inline int end_program(pid_t& pid, int signal) {
    int status = 0;
    if (pid > 0) {
        kill(pid, signal);
        kill(pid, SIGCONT);
        waitpid(std::exchange(pid, 0), &status, 0);
    }
    return status;
}

// The record and the semaphores below DEVICE_ROOT.
inline void remove_shared_objects() {
    if (const auto segment = find_segment())
        shmctl(segment->id, IPC_RMID, nullptr);
    for (const key_t key : {kLoadedKey, kDefaultsKey})
        if (const auto semaphore = Semaphore::find(key))
            semctl(semaphore->id(), 0, IPC_RMID);
}

#endif
