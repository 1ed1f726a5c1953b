// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <unistd.h>

// Gives up the rights of root, to which nothing is read-only, for as long as it lives.
class PlainUser
{
public:
    PlainUser()
        : changed_(geteuid() == 0 && seteuid(somebody) == 0)
    {
    }
    ~PlainUser()
    {
        if (changed_ && seteuid(0) != 0) {
            qFatal("cannot take the rights back");
        }
    }
    PlainUser(const PlainUser &) = delete;
    PlainUser &operator=(const PlainUser &) = delete;

    // Who it becomes.
    static uid_t user() { return somebody; }
    // False where root cannot give them up.
    static bool isOne() { return geteuid() != 0; }

private:
    static constexpr uid_t somebody = 65534;
    bool changed_;
};
