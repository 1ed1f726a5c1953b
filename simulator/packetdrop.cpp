// SPDX-License-Identifier: MIT
#include "simulator/packetdrop.h"

#include <cerrno>

#include <linux/filter.h>
#include <sys/socket.h>

bool PacketDrop::set(qintptr socket, bool on)
{
    const int descriptor = static_cast<int>(socket);
    if (!on) {
        const int unused = 0;
        return setsockopt(descriptor, SOL_SOCKET, SO_DETACH_FILTER, &unused, sizeof unused) == 0 ||
               errno == ENOENT;
    }
    // "Of every packet keep 0 bytes."
    sock_filter keepNothing = BPF_STMT(BPF_RET | BPF_K, 0);
    const sock_fprog program{1, &keepNothing};
    return setsockopt(descriptor, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) == 0;
}
