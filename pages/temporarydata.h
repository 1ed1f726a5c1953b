// SPDX-License-Identifier: MIT
#pragma once

class QString;

// Emptying a folder of temporary files. The folder comes from the settings, which anyone may edit,
// so nothing is deleted in one that could hold anything else. Any thread.
namespace TemporaryData
{

// A real folder, named by its whole path, that is neither the root, the home directory or the
// working directory, nor lies above one of them.
bool isFolderOfItsOwn(const QString &path);

// Deletes the files in the folder and in its sub-folders, one level deep; the folders stay, and
// links are not followed. Does nothing where isFolderOfItsOwn() is false; ends when the thread is
// interrupted.
void clear(const QString &path);

// Deletes what killed transfers have left in the folder: files and folders that are called as
// Settings::transferTemplate() says. The same holds as for clear().
void removeTransfers(const QString &path);

// Deletes what killed writes have left beside a file: regular files with its name and a random
// ending, a dot and six letters. One that stands in small letters or capitals only is taken for a
// copy made by hand, "backup", and stays. The same holds as for clear().
void removeLeftBeside(const QString &file);

} // namespace TemporaryData
