// SPDX-License-Identifier: MIT
#include "fuzz/fuzztarget.h"

#include "tests/support/testmain.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace
{

// Never destroyed by itself: libFuzzer ends the process by exit(), when objects of the toolkit that
// were made later are already gone.
TestSurroundings *surroundings = nullptr;

// Decoders say what they think of each damaged file; a million times is too often.
void keepQuiet(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(text));
    }
}

void removeHome()
{
    std::error_code ignored;
    std::filesystem::remove_all(TestSurroundings::home().toStdString(), ignored);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    // The toolkit keeps both; options of libFuzzer are none of its business.
    static int count = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    surroundings = new TestSurroundings(count, arguments);
    qInstallMessageHandler(keepQuiet);
    std::atexit(removeHome);
    return 0;
}

QByteArray FuzzTarget::bytes(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

void FuzzTarget::require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}

QString FuzzTarget::scratch(const QString &name)
{
    return TestSurroundings::home() + QLatin1Char('/') + name;
}

QString FuzzTarget::write(const QString &name, const QByteArray &bytes)
{
    QFile file(scratch(name));
    require(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                file.write(bytes) == bytes.size(),
            "the scratch folder can be written");
    return file.fileName();
}

QByteArray FuzzTarget::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void FuzzTarget::end()
{
    delete surroundings;
    surroundings = nullptr;
}
