// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <sys/resource.h>

// A full disk: while it lives, no file of this process can grow beyond so many bytes. A write that
// would is cut short, the next one fails. Files that are longer already keep their length.
class FileLimit
{
public:
    explicit FileLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // fail the write, as a full disk does, not the process
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit now = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FileLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
    FileLimit(const FileLimit &) = delete;
    FileLimit &operator=(const FileLimit &) = delete;

private:
    rlimit before_{};
};
