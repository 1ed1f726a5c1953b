// SPDX-License-Identifier: MIT
#include "records/localtext.h"
#include "records/vasksettings.h"
#include "tests/soak/soak.h"
#include "tests/soak/soakoptions.h"

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

constexpr int notGood = 1;
constexpr int cannotRun = 2;

int complain(const QString &text)
{
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    return cannotRun;
}

} // namespace

int main(int argc, char *argv[])
{
    // Pictures are painted here, nothing is shown; the panel keeps the platform that was asked for.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (!platform.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", platform);
    }
    LocalText::useCodecOfLocale();
    VaskSettings::init();

    SoakOptions options;
    QString text;
    if (!options.parse(QCoreApplication::arguments(), &text)) {
        return complain(text);
    }
    QTemporaryDir temporary;
    const QString folder = options.folder.isEmpty() ? temporary.path() : options.folder;
    if (!temporary.isValid() || !QDir().mkpath(folder)) {
        return complain(QStringLiteral("The folder cannot be made."));
    }
    Soak soak(options, QDir(folder).absolutePath());
    if (!soak.run(&text)) {
        return complain(text);
    }
    return soak.isGood() ? 0 : notGood;
}
