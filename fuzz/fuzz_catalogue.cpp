// SPDX-License-Identifier: MIT
// A message catalogue in the directory that the program is started in.
#include "app/catalogue.h"
#include "fuzz/fuzztarget.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>

namespace
{

// Texts with and without a number, and with a comment.
void translateSome()
{
    for (const char *text : {"Archive view", "Number", "Cancel", "OK", "%n row(s)", ""}) {
        for (const char *context : {"ArchiveWidget", "ScanModel", "", "QPlatformTheme"}) {
            QCoreApplication::translate(context, text);
            QCoreApplication::translate(context, text, "comment");
            for (const int number : {0, 1, 2, 5, 11, 21, 1000000}) {
                QCoreApplication::translate(context, text, nullptr, number);
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Back afterwards: libFuzzer reads its folders step by step.
    const QString before = QDir::currentPath();
    FuzzTarget::require(QDir::setCurrent(FuzzTarget::scratch(QString())),
                        "the scratch folder can be entered");
    const QString name = QStringLiteral("vaskparking_");
    FuzzTarget::write(name + QLocale::system().name() + QStringLiteral(".qm"),
                      FuzzTarget::bytes(data, size));
    {
        const Catalogue catalogue(name);
        VaskSettings::init(); // takes letter sets and patterns from it
        VaskSettings::translateFromLocal(QStringLiteral("a123bc77"));
        translateSome();
    }
    FuzzTarget::require(QDir::setCurrent(before), "the folder of before can be entered");
    return 0;
}
