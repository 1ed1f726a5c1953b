// SPDX-License-Identifier: MIT
// cataloguespeaker [FOLDER]: loads the catalogues as the program does, ours also from FOLDER, and
// says what they gave, one line each, in UTF-8: the locale's name, one of our own texts, one of the
// toolkit's, a plate number, and the names of files. A program of its own because the toolkit reads
// the language of its environment once.
#include "app/catalogue.h"
#include "app/settings.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QLocale>

#include <cstdio>

namespace
{

void say(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList folders;
    if (argc > 1) {
        folders.append(QString::fromLocal8Bit(argv[1]));
    }
    const Catalogue toolkitCatalogue(QStringLiteral("qt_"), {Catalogue::toolkitFolder()});
    const Catalogue ownCatalogue(QStringLiteral("vaskparking_"), folders);
    VaskSettings::init();

    say(QLocale::system().name());
    say(QCoreApplication::translate("AddressDialogClass", "Cancel"));
    say(QCoreApplication::translate("QFileDialog", "Look in:"));
    say(VaskSettings::translateFromLocal(QString::fromUtf8("а123вс77")));

    const Settings settings(QSettings::NativeFormat, QSettings::UserScope,
                            QStringLiteral("Dorvel Ltd"), QStringLiteral("Stallo"), nullptr);
    for (const QString &name : {settings.archiveTempFile(), settings.onLineTempFile(),
                                settings.sufferedTempFile(), settings.lastSavedArchiveFile(),
                                settings.lastSavedOnLineFile(), settings.lastSavedSufferedFile()}) {
        say(name);
    }
    return 0;
}
