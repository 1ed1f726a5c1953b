// SPDX-License-Identifier: MIT
#include "simulator/console.h"

#include "records/access.h"
#include "simulator/faults.h"
#include "simulator/filetree.h"
#include "simulator/journal.h"
#include "simulator/simulateddevice.h"

#include <QFile>
#include <QProcess>

namespace
{

QString done()
{
    return QStringLiteral("ok");
}

QString failed(const QString &reason)
{
    return QStringLiteral("error ") + reason;
}

// The number at a place of the values; what there is when the place is empty. False for anything
// that is not a number from least up.
template <typename Number>
bool number(const QStringList &values, int place, Number least, Number *result)
{
    if (place >= values.size()) {
        return true;
    }
    bool good = false;
    const double value = values.at(place).toDouble(&good);
    *result = static_cast<Number>(value);
    return good && value >= static_cast<double>(least) && value <= 1e9;
}

QString listText(const QByteArray &list)
{
    return QStringLiteral("%1 entries %2")
        .arg(list.size() / Access::size)
        .arg(QString::fromLatin1(list.toHex()));
}

bool isOnOff(const QString &word)
{
    return word == QLatin1String("on") || word == QLatin1String("off");
}

} // namespace

Console::Console(SimulatedDevice *device, FileTree *files, Faults *faults, Journal *journal)
    : device_(device)
    , files_(files)
    , faults_(faults)
    , journal_(journal)
{
}

QString Console::help()
{
    return QStringLiteral(
        "push [NUMBER] | burst N | rate R [COUNT] | split BYTES MSEC | raw HEX | awkward | count | "
        "fault WORDS | faults | clear | drop | reset | gone MSEC | gone-without-a-word on|off | "
        "listen online|file on|off | "
        "reading on|off | stored | active | put PATH FILE | remove PATH | restore PATH | "
        "late PATH MSEC | requests [PATH] | help | quit");
}

QString Console::execute(const QString &line)
{
    const QString text = line.trimmed();
    if (text.isEmpty()) {
        return QString();
    }
    journal_->add(JournalEntry::Kind::Control, 0, QString(), text);
    const QString command = text.section(QLatin1Char(' '), 0, 0);
    if (command == QLatin1String("fault")) {
        Fault fault;
        QString error;
        if (!Faults::parse(text.mid(command.size()), &fault, &error)) {
            return failed(error);
        }
        faults_->add(fault);
        return done();
    }
    QStringList values = QProcess::splitCommand(text);
    if (!values.isEmpty()) {
        values.removeFirst();
    }
    return take(command, values);
}

QString Console::take(const QString &command, const QStringList &values)
{
    if (command == QLatin1String("quit")) {
        quit_ = true;
        return done();
    }
    if (command == QLatin1String("help")) {
        return help();
    }
    if (command == QLatin1String("count")) {
        return counts();
    }
    if (command == QLatin1String("clear")) {
        faults_->clear();
        return done();
    }
    if (command == QLatin1String("faults")) {
        return QStringLiteral("%1 in force; kinds: %2")
            .arg(faults_->count())
            .arg(Faults::help().join(QStringLiteral(" | ")));
    }
    for (const auto takes :
         {&Console::takeSending, &Console::takeConnections, &Console::takeFiles}) {
        QString answer = (this->*takes)(command, values);
        if (!answer.isNull()) {
            return answer;
        }
    }
    return failed(QStringLiteral("Unknown command \"%1\", try help").arg(command));
}

// Null when the command is none of these; so the following ones.
QString Console::takeSending(const QString &command, const QStringList &values)
{
    if (command == QLatin1String("push")) {
        return push(values);
    }
    if (command == QLatin1String("split")) {
        return split(values);
    }
    if (command == QLatin1String("awkward")) {
        const int reached = device_->pushAll(SampleRecords::all(QDateTime::currentDateTimeUtc()));
        return QStringLiteral("to %1 connections").arg(reached);
    }
    if (command == QLatin1String("raw")) {
        const QByteArray bytes = QByteArray::fromHex(values.join(QString()).toLatin1());
        return QStringLiteral("to %1 connections").arg(device_->pushBytes(bytes));
    }
    if (command == QLatin1String("burst")) {
        int records = 1000;
        return number(values, 0, 1, &records)
                   ? QStringLiteral("sent %1").arg(device_->burst(records))
                   : failed(QStringLiteral("Not a number of records"));
    }
    if (command == QLatin1String("rate")) {
        double rate = 0;
        int count = -1;
        if (values.isEmpty() || !number(values, 0, 0.0, &rate) || !number(values, 1, 0, &count)) {
            return failed(QStringLiteral("Not a rate"));
        }
        device_->setRate(rate, count);
        return done();
    }
    return QString();
}

QString Console::push(const QStringList &values)
{
    const int reached = values.isEmpty() ? device_->burst(1)
                                         : device_->push(device_->feed().record(
                                               values.first(), QDateTime::currentDateTimeUtc()));
    return QStringLiteral("sent %1").arg(reached > 0 ? 1 : 0);
}

QString Console::split(const QStringList &values)
{
    int first = 191;
    int msec = 1500;
    if (!number(values, 0, 1, &first) || !number(values, 1, 0, &msec) || first >= OnLine::size) {
        return failed(QStringLiteral("Not a number of bytes and milliseconds"));
    }
    const OnLine record = device_->feed().next(QDateTime::currentDateTimeUtc());
    const QByteArray bytes = SampleRecords::bytes(record);
    const int reached = device_->pushPieces(record, {bytes.left(first), bytes.mid(first)}, msec);
    return QStringLiteral("to %1 connections").arg(reached);
}

QString Console::takeConnections(const QString &command, const QStringList &values)
{
    if (command == QLatin1String("drop")) {
        device_->onLine().drop();
        device_->fileService().drop();
        return done();
    }
    if (command == QLatin1String("reset")) {
        device_->onLine().reset();
        device_->fileService().reset();
        return done();
    }
    if (command == QLatin1String("gone")) {
        int msec = 5000;
        if (!number(values, 0, 0, &msec)) {
            return failed(QStringLiteral("Not a number of milliseconds"));
        }
        device_->goneFor(msec);
        return done();
    }
    if (command == QLatin1String("gone-without-a-word")) {
        if (values.size() != 1 || !isOnOff(values.first())) {
            return failed(QStringLiteral("Usage: gone-without-a-word on|off"));
        }
        return device_->setCutOff(values.first() == QLatin1String("on"))
                   ? done()
                   : failed(QStringLiteral("Packets cannot be dropped here"));
    }
    if (command == QLatin1String("listen")) {
        return listen(values);
    }
    if (command == QLatin1String("reading")) {
        if (values.size() != 1 || !isOnOff(values.first())) {
            return failed(QStringLiteral("Usage: reading on|off"));
        }
        device_->onLine().setReading(values.first() == QLatin1String("on"));
        return done();
    }
    return QString();
}

QString Console::listen(const QStringList &values)
{
    if (values.size() == 2 && isOnOff(values.at(1))) {
        const bool on = values.at(1) == QLatin1String("on");
        QString error;
        if (values.first() == QLatin1String("online")) {
            return device_->setOnLineListening(on, &error) ? done() : failed(error);
        }
        if (values.first() == QLatin1String("file")) {
            return device_->setFileListening(on, &error) ? done() : failed(error);
        }
    }
    return failed(QStringLiteral("Usage: listen online|file on|off"));
}

QString Console::takeFiles(const QString &command, const QStringList &values)
{
    if (command == QLatin1String("stored")) {
        return listText(device_->storedAccessList());
    }
    if (command == QLatin1String("active")) {
        return listText(device_->activeAccessList());
    }
    if (command == QLatin1String("requests")) {
        return QStringLiteral("%1").arg(journal_->countRequests(values.value(0)));
    }
    if (command == QLatin1String("put") && values.size() == 2) {
        QFile file(values.at(1));
        if (!file.open(QIODevice::ReadOnly)) {
            return failed(values.at(1) + QStringLiteral(": ") + file.errorString());
        }
        files_->set(values.first(), file.readAll());
        return done();
    }
    if (command == QLatin1String("remove") && values.size() == 1) {
        files_->remove(values.first());
        return done();
    }
    if (command == QLatin1String("restore") && values.size() == 1) {
        files_->restore(values.first());
        return done();
    }
    int msec = 0;
    if (command == QLatin1String("late") && values.size() == 2 && number(values, 1, 0, &msec)) {
        files_->setLate(values.first(), msec);
        return done();
    }
    return QString();
}

QString Console::counts() const
{
    const OnLineService &onLine = device_->onLine();
    return QStringLiteral("barrier %1 reload %2 keep-alive %3 sent %4 connections %5 unexpected %6")
        .arg(onLine.barrierCount())
        .arg(onLine.reloadCount())
        .arg(onLine.keepAliveCount())
        .arg(device_->sentCount())
        .arg(onLine.connections())
        .arg(onLine.unexpectedBytes().size());
}
