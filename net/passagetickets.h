// SPDX-License-Identifier: MIT
#pragma once

#include <QSemaphore>

#include <functional>
#include <memory>

// How many passages of one client may be on their way to the window. A worker takes a ticket for
// each before it posts it, and waits when there is none left; so a device that sends faster than
// the window stores is held back by its own connection, and nothing piles up in between.
//
// A ticket travels inside its event and is given back when the last copy dies, handled or not. It
// may outlive the tickets.
class PassageTickets
{
public:
    using Ticket = std::shared_ptr<void>;

    explicit PassageTickets(int most);

    // Blocks until there is one; null when cancelled() turns true first (asked every 50 ms). Worker
    // threads only.
    Ticket take(const std::function<bool()> &cancelled) const;
    // Null when there is none left. Any thread.
    Ticket takeAtOnce() const;

private:
    Ticket taken() const;

    std::shared_ptr<QSemaphore> free_;
};
