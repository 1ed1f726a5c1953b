// SPDX-License-Identifier: MIT
#include "records/localtext.h"
#include "records/vasksettings.h"
#include "simulator/commandline.h"
#include "simulator/deviceprogram.h"

#include <QCoreApplication>

#include <cstdio>

namespace
{

constexpr int badCommandLine = 2;
constexpr int cannotRun = 1;

void complain(const QString &text)
{
    std::fprintf(stderr, "stallo-device: %s\n", text.toLocal8Bit().constData());
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("stallo-device"));
    QCoreApplication::setApplicationVersion(QStringLiteral(STALLO_VERSION));
    LocalText::useCodecOfLocale();
    VaskSettings::init();

    CommandLine commandLine;
    if (!commandLine.parse(QCoreApplication::arguments())) {
        complain(commandLine.error());
        return badCommandLine;
    }
    if (!commandLine.notice().isEmpty()) {
        std::fputs(commandLine.notice().toLocal8Bit().constData(), stdout);
        return 0;
    }
    DeviceProgram program;
    QString error;
    if (!program.start(commandLine, &error)) {
        complain(error);
        return cannotRun;
    }
    return QCoreApplication::exec();
}
