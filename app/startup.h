// SPDX-License-Identifier: MIT
#pragma once

#include "app/processlock.h"

#include <QStringList>
#include <QWidget>

#include <atomic>
#include <memory>

// The steps of the start and of a clean end that main names one after the other. GUI thread.
namespace Startup
{

// What the program makes is for its user alone, and no other program is started by a library of it
// that looks for a session bus where there is none. Both before there is an application object.
void keepToItself();

// Makes the working directory and the temporary directories in it, with their picture folders where
// they have some. Each is one level, none is ever emptied, and what cannot be made is passed over.
// A relative working directory lies in the home directory, any other relative one in the working
// directory; the process's own directory is never changed. Those that others may read or write are
// made the user's alone, unless they are not the panel's own.
void initTempDirectories();

// Those of them, picture folders included, that are not there or not to be written, by whole paths.
// Where the working directory is one, only that.
QStringList unusableDirectories();
// Shows them in a dialog over the frame as soon as the event loop runs, so that the panel watches
// its lanes meanwhile. Nothing when all can be used.
void tellUnusableDirectories(QWidget *frame);

// Two programs would empty each other's tables. Null when another one has the working directory; a
// lock file that no process holds does not count, nor does a directory that takes no lock.
std::unique_ptr<ProcessLock> lockWorkingDirectory();

// What a former run left when it was killed: moves its live table to where it is kept, and deletes
// the pieces of its transfers. Then marks this run as one that has not ended. The text for the
// operator, empty when there was nothing. With the lock, and before there are pages.
QString settleFormerRun();
// This run has ended as it should; the next start finds nothing to recover. Not so where the former
// run's table is still in its place.
void markCleanEnd();

// Places the frame where it was left and shows it. The size is read under another key than the one
// it is stored under, so the frame starts with the size set there by hand, normally its smallest,
// and is never larger than all screens together.
void restoreGeometry(QWidget &frame);
void storeGeometry(const QWidget &frame);

// "--archive", "--sufferred", "--online" and a device address, in any order, the last ones win.
// Other options are passed over, and without an address nothing happens.
void parseCmdLine(int argc, char **argv);

// Bounds the end of the process. Made before the application object; once armed, when everything is
// stored, the process ends with 0 after a second and a half unless the application object has gone
// by then: the toolkit waits there for host names that are being looked up, which may take long.
class BoundedEnd
{
public:
    BoundedEnd() = default;
    ~BoundedEnd();
    BoundedEnd(const BoundedEnd &) = delete;
    BoundedEnd &operator=(const BoundedEnd &) = delete;

    void arm();

private:
    // Shared with the thread that watches, which may be the last one to look at it.
    std::shared_ptr<std::atomic<bool>> over_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace Startup
