// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

// What every fuzz target has in common. A target is one fuzz_<name>.cpp that defines
// LLVMFuzzerTestOneInput(); linked with libFuzzer it is fed with mutations, linked with replay.cpp
// with the files of folders. Both start it through LLVMFuzzerInitialize(), which makes the
// surroundings of a test program: an application object on the offscreen platform, fresh settings,
// and a home of its own, where everything that a target writes has its place.
//
// One thread.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace FuzzTarget
{

// The input as bytes, without a copy; valid as long as the input.
QByteArray bytes(const std::uint8_t *data, std::size_t size);

// Ends the process in a way that counts as a crash, for what a parser must never give.
void require(bool holds, const char *what);

// The path of a file in the scratch folder, which may or may not exist.
QString scratch(const QString &name);

// Makes the file hold these bytes, and gives its path.
QString write(const QString &name, const QByteArray &bytes);

// The file's bytes; none where it cannot be read.
QByteArray read(const QString &path);

// Deletes what the surroundings made. Called by a main() that returns.
void end();

} // namespace FuzzTarget
