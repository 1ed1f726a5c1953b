// SPDX-License-Identifier: MIT
// Feeds a fuzz target with the files of folders, one after the other and an empty input first,
// where libFuzzer is not at hand. An input that takes a minute counts as a crash. A folder that
// does not exist is passed over; no file at all is a failure (2), since a check must not pass
// because it saw nothing.
#include "fuzz/fuzztarget.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <memory>

#include <unistd.h>

namespace
{

// Seconds for one input; then the process is ended. Some findings took for ever.
constexpr unsigned longest = 60;

void feed(const QByteArray &input)
{
    // A copy of exactly this size, so that the sanitizer sees a read behind its end.
    const std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[std::size_t(input.size())]);
    std::copy(input.begin(), input.end(), copy.get());
    alarm(longest);
    LLVMFuzzerTestOneInput(copy.get(), std::size_t(input.size()));
    alarm(0);
}

int feedFolder(const QString &name)
{
    const QDir folder(name);
    const QStringList files = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &entry : files) {
        QFile file(folder.filePath(entry));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
            return -1;
        }
        // Said before, for the reader of a crash.
        std::fprintf(stderr, "%s\n", qPrintable(file.fileName()));
        feed(file.readAll());
    }
    return files.size();
}

} // namespace

int main(int argc, char *argv[])
{
    LLVMFuzzerInitialize(&argc, &argv);
    feed(QByteArray());
    int fed = 0;
    for (int i = 1; i < argc; ++i) {
        const int files = feedFolder(QFile::decodeName(argv[i]));
        if (files < 0) {
            fed = 0;
            break;
        }
        fed += files;
    }
    FuzzTarget::end();
    std::fprintf(stderr, "%d files\n", fed);
    return fed > 0 ? 0 : 2;
}
