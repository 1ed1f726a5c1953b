// SPDX-License-Identifier: MIT
#include "tests/support/testmain.h"

#include "app/settings.h"
#include "records/localtext.h"
#include "records/vasksettings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

TestSurroundings::TestSurroundings(int &argc, char **argv)
    : home_(std::make_unique<QTemporaryDir>())
{
    const QByteArray home = QFile::encodeName(home_->path());
    qputenv("HOME", home);
    qputenv("XDG_CONFIG_HOME", home + "/.config");
    qunsetenv("LANGUAGE");
    application_ = std::make_unique<QApplication>(argc, argv);
    LocalText::useCodecOfLocale();
    VaskSettings::init();
    freshSettings();
}

TestSurroundings::~TestSurroundings() = default;

Settings *TestSurroundings::freshSettings()
{
    delete Settings::instance();
    auto *settings = new Settings(QSettings::NativeFormat, QSettings::UserScope,
                                  QStringLiteral("Dorvel Ltd"), QStringLiteral("Stallo"), qApp);
    settings->clear();
    settings->init();
    return settings;
}

QString TestSurroundings::home()
{
    return QDir::homePath();
}
