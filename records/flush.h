// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Bringing what was written onto the disk, so that it outlives a power cut or a stick that is
// pulled out. Each returns the reason of the failure, empty on success. They take as long as the
// disk takes: for workers, and in the GUI thread for small files only. A worker that is asked to
// end does not wait any longer; the disk goes on by itself.
namespace Flush
{

// An open file. The text is never empty where the disk did not take all.
QString file(int descriptor);
// The folder that holds the file: its name there, and that the former one is gone. File systems
// that cannot be asked for that have nothing to bring.
QString folderOf(const QString &name);
// Everything that was written to the file system that holds the path, by whomever.
QString fileSystemOf(const QString &path);

// The system's calls. Tests count them, and have them fail.
struct Calls {
    int (*file)(int descriptor);
    int (*fileSystem)(int descriptor);
};
// Set back by whoever sets them, while no worker runs.
extern Calls calls;

} // namespace Flush
