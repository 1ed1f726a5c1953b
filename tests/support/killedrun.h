// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// An operation in a process of its own that is killed, as by a power cut or the system, right
// before one of its system calls. What it did to files until then stays; this process itself is
// not touched. The operation uses no thread but the one that it runs in.
//
// Not everywhere may a process follow another one: the first run then ends as NotAllowed, and the
// test is skipped.
class KilledRun
{
public:
    enum class End { Killed, Finished, NotAllowed };

    // Killed before system call number call, counted from 0; Finished when there were fewer.
    static End before(int call, const std::function<void()> &operation);
};
