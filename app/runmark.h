// SPDX-License-Identifier: MIT
#pragma once

// The mark of a run that has not ended yet: a file in the working directory, made at the start and
// removed at a clean end. One that is found at the start tells that the former run was killed, or
// its power cut.
//
// Used by the process that holds the lock of the working directory. GUI thread. Does nothing
// without settings or where nothing can be written; such an end then counts as a clean one.
namespace RunMark
{

// Whether a former run has left its mark.
bool isLeft();

// On the disk when it returns.
void set();
// At the latest on the disk when that is unmounted; the end of the program does not wait for it.
void remove();

} // namespace RunMark
