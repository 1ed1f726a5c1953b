// SPDX-License-Identifier: MIT
#include "net/deviceidentity.h"

#include "app/settings.h"
#include "net/getfile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryFile>
#include <QTextCodec>

namespace
{

// The toolkit's reader turns values that begin with such a mark into objects of any type, escaped
// characters included. A device has no business sending one.
bool buildsObjects(const QByteArray &file)
{
    static const QRegularExpression mark(
        QStringLiteral(R"(@Variant\(|@[A-Za-z]*\\|\\x0*40|\\0*100)"),
        QRegularExpression::CaseInsensitiveOption);
    return mark.match(QString::fromLatin1(file)).hasMatch();
}

// The folder of camera pictures is the one that nothing empties meanwhile.
bool openTemporary(QTemporaryFile &file)
{
    if (const Settings *settings = Settings::instance()) {
        file.setFileTemplate(settings->transferTemplate(settings->videoTempDirectory()));
        if (file.open()) {
            return true;
        }
        file.setFileTemplate(QDir::temp().filePath(QStringLiteral("stallo-XXXXXX")));
    }
    return file.open();
}

} // namespace

QString DeviceIdentity::parse(const QByteArray &file, const QString &fallback)
{
    if (file.size() > largestFile || buildsObjects(file)) {
        return fallback;
    }
    // The toolkit reads INI texts from files only, and remembers them by name: a name of its own.
    QTemporaryFile copy;
    if (!openTemporary(copy) || copy.write(file) != file.size() || !copy.flush()) {
        return fallback;
    }
    QSettings ini(copy.fileName(), QSettings::IniFormat);
    ini.setIniCodec(QTextCodec::codecForLocale());
    return ini.value(QStringLiteral("/common/deviceid"), fallback)
        .toStringList()
        .join(QStringLiteral(", "));
}

QString DeviceIdentity::fetch(const QString &host, Patience patience, const QString &fallback,
                              const SocketWait::Cancelled &cancelled)
{
    QTemporaryFile local;
    if (!openTemporary(local)) {
        return fallback;
    }
    GetFile get(host, local.fileName(), nullptr);
    QElapsedTimer clock;
    clock.start();
    // A device that accepts and stays silent must not use up more than the patience.
    const auto over = [&] { return cancelled() || clock.elapsed() >= patience.totalMsec; };
    get.setCancelled(over);
    get.setTimeout(patience.totalMsec);
    while (!over()) {
        if (get(QStringLiteral("/etc/streams.ini"))) {
            local.seek(0);
            return parse(local.read(largestFile + 1), fallback);
        }
        SocketWait::pause(patience.pauseMsec, over);
    }
    return fallback;
}
