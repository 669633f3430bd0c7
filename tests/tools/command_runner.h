// Runs the built quantor command as a child process with a controlled
// environment and standard input, and collects its exit status and both
// output streams.
#pragma once

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

struct CommandResult {
    int status = -1;  // the exit status, or -1 when the command did not exit normally
    std::string out;
    std::string err;
};

class CommandRunner {
public:
    // `environment`: the child's whole environment ("NAME=value" entries).
    static CommandResult Run(const std::vector<std::string>& args, const std::string& input,
                             const std::vector<std::string>& environment) {
        signal(SIGPIPE, SIG_IGN);  // a command that stops reading early must not end the test
        int in[2], out[2], err[2];
        if (pipe(in) != 0 || pipe(out) != 0 || pipe(err) != 0) return {};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_adddup2(&actions, err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) posix_spawn_file_actions_addclose(&actions, fd);
        std::vector<std::string> words = {QUANTOR_CLI_PATH};
        words.insert(words.end(), args.begin(), args.end());
        std::vector<std::string> variables = environment;
        std::vector<char*> argv = Pointers(words), envp = Pointers(variables);
        pid_t child = -1;
        const int spawned = posix_spawn(&child, QUANTOR_CLI_PATH, &actions, nullptr, argv.data(), envp.data());
        posix_spawn_file_actions_destroy(&actions);
        for (int fd : {in[0], out[1], err[1]}) close(fd);
        CommandResult result;
        if (spawned == 0) Exchange(in[1], input, out[0], err[0], result);
        else for (int fd : {in[1], out[0], err[0]}) close(fd);
        int status = 0;
        if (spawned == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status)) result.status = WEXITSTATUS(status);
        return result;
    }

private:
    static std::vector<char*> Pointers(std::vector<std::string>& words) {
        std::vector<char*> pointers;
        for (std::string& word : words) pointers.push_back(word.data());
        pointers.push_back(nullptr);
        return pointers;
    }

    // Writes the input and reads both outputs at once, so that no pipe fills up.
    static void Exchange(int inFd, const std::string& input, int outFd, int errFd, CommandResult& result) {
        size_t written = 0;
        if (input.empty()) inFd = Close(inFd);
        while (outFd >= 0 || errFd >= 0) {
            pollfd fds[3] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}, {inFd, POLLOUT, 0}};
            if (poll(fds, 3, 60000) <= 0) break;
            if (fds[2].revents) {
                const ssize_t n = write(inFd, input.data() + written, input.size() - written);
                written += n > 0 ? static_cast<size_t>(n) : 0;
                if (n <= 0 || written == input.size()) inFd = Close(inFd);
            }
            if (fds[0].revents && !Drain(outFd, result.out)) outFd = Close(outFd);
            if (fds[1].revents && !Drain(errFd, result.err)) errFd = Close(errFd);
        }
        for (int fd : {inFd, outFd, errFd}) Close(fd);
    }

    static bool Drain(int fd, std::string& text) {
        char buffer[65536];
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n > 0) text.append(buffer, static_cast<size_t>(n));
        return n > 0;
    }

    static int Close(int fd) {
        if (fd >= 0) close(fd);
        return -1;
    }
};
