// SPDX-License-Identifier: MIT
#include "net/passagetickets.h"

namespace
{

constexpr int pollMsec = 50;

} // namespace

PassageTickets::PassageTickets(int most)
    : free_(std::make_shared<QSemaphore>(most))
{
}

PassageTickets::Ticket PassageTickets::take(const std::function<bool()> &cancelled) const
{
    while (!cancelled()) {
        if (free_->tryAcquire(1, pollMsec)) {
            return taken();
        }
    }
    return nullptr;
}

PassageTickets::Ticket PassageTickets::takeAtOnce() const
{
    return free_->tryAcquire(1) ? taken() : nullptr;
}

PassageTickets::Ticket PassageTickets::taken() const
{
    return Ticket(free_.get(), [free = free_](void *) { free->release(); });
}
