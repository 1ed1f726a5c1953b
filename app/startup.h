// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <atomic>
#include <memory>

class QLockFile;

// The steps of the start and of a clean end that main names one after the other. GUI thread.
namespace Startup
{

// Makes the working directory and the temporary directories in it, with their picture folders where
// they have some. Each is one level, none is ever emptied, and what cannot be made is passed over.
// A relative working directory lies in the home directory, any other relative one in the working
// directory; the process's own directory is never changed.
void initTempDirectories();

// Two programs would empty each other's tables. Null when another one of this user has the working
// directory; a lock whose process is gone does not count, nor does a directory that takes no lock.
std::unique_ptr<QLockFile> lockWorkingDirectory();

// Places the frame where it was left and shows it. The size is read under another key than the one
// it is stored under, so the frame starts with the size set there by hand, normally its smallest.
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
