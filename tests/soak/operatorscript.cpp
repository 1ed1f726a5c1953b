// SPDX-License-Identifier: MIT
#include "tests/soak/operatorscript.h"

#include "records/access.h"
#include "records/deviceindex.h"
#include "records/scan.h"
#include "records/vasksettings.h"
#include "simulator/livefeed.h"
#include "tests/soak/panelprocess.h"
#include "tests/soak/soakdevice.h"

#include <cstring>

namespace
{

constexpr int archiveMsec = 60000;
constexpr int sendMsec = 20000;
constexpr int restMsec = 1500;
constexpr int entrySize = Access::size;
constexpr int mostEntries = 500;

// Where the fields of an entry lie.
constexpr int numberAt = 2;
constexpr int numberSize = 10;
constexpr int keyAt = 20;
constexpr int keySize = 32;
constexpr int commentAt = 52;
constexpr int commentSize = 64;

void put(QByteArray *entry, int at, int size, const QString &text)
{
    entry->replace(at, size, text.toLatin1().leftJustified(size, '\0'));
}

const QString listFile = QStringLiteral("SufferedTemp/tmpaccessbase.tpa");

} // namespace

QString OperatorScript::Results::text() const
{
    return QStringLiteral("archives %1, lists fetched %2 and sent %3, edits %4, looks %5, cut "
                          "short %6, wrong %7")
        .arg(archives)
        .arg(fetches)
        .arg(sends)
        .arg(edits)
        .arg(looks)
        .arg(cutShort)
        .arg(wrong);
}

OperatorScript::OperatorScript(PanelProcess *panel, const std::vector<SoakDevice *> &devices,
                               quint32 seed)
    : panel_(panel)
    , devices_(devices)
    , mixer_(seed, 0x4F504552U)
{
    sinceArchive_.start();
    sinceSend_.start();
    sinceAny_.start();
}

QByteArray OperatorScript::list() const
{
    return panel_->content(listFile);
}

QString OperatorScript::doing() const
{
    static const char *const words[] = {"nothing", "connect", "archive", "fetch", "send",
                                        "edit",    "add",     "delete",  "look"};
    return QLatin1String(words[static_cast<int>(action_)]);
}

void OperatorScript::wrong(const QString &what)
{
    ++results_.wrong;
    if (results_.problems.size() < 20) {
        results_.problems.append(what);
    }
}

void OperatorScript::panelStarted()
{
    starts_ = true;
    action_ = Action::None;
}

void OperatorScript::tick()
{
    if (panel_->isPending()) {
        return;
    }
    if (action_ != Action::None) {
        check();
        action_ = Action::None;
        sinceAny_.start();
    } else if (starts_ || sinceAny_.hasExpired(restMsec)) {
        begin();
    }
}

void OperatorScript::begin()
{
    if (starts_) {
        starts_ = false;
        action_ = Action::Connect;
        panel_->command({QStringLiteral("online"), QStringLiteral("2"), devices_[1]->address()});
        return;
    }
    device_ = mixer_.below(devices_.size());
    if (!fetched_ || mixer_.below(40) == 0) {
        action_ = Action::Fetch;
        expected_ = device().host().storedAccessList();
        panel_->command({QStringLiteral("fetch"), device().address()});
    } else if (sinceArchive_.hasExpired(archiveMsec)) {
        action_ = Action::Archive;
        sinceArchive_.start();
        panel_->command({QStringLiteral("archive"), device().address()});
    } else if (sinceSend_.hasExpired(sendMsec)) {
        action_ = Action::Send;
        sinceSend_.start();
        panel_->command({QStringLiteral("send"), device().address()});
    } else if (mixer_.below(3) == 0) {
        action_ = Action::Look;
        const quint32 row = mixer_.below(50);
        panel_->command(
            {QStringLiteral("look"), row < 40 ? QStringLiteral("-1") : QString::number(row - 40)});
    } else {
        beginEdit();
    }
}

void OperatorScript::beginEdit()
{
    const int entries = list_.size() / entrySize;
    const quint32 pick = mixer_.next();
    const QString number = LiveFeed::makeNumber(77, pick);
    const QString comment = QStringLiteral("changed %1").arg(pick);
    const quint32 kind = mixer_.below(4);
    if (entries == 0 || (kind == 0 && entries < mostEntries)) {
        action_ = Action::Add;
        expected_ = QByteArray(entrySize, '\0');
        put(&expected_, keyAt, keySize, QString::number(pick));
        panel_->command({QStringLiteral("add"), number, QString::number(pick), comment});
    } else {
        const int row = static_cast<int>(pick % static_cast<quint32>(entries));
        expected_ = list_.mid(row * entrySize, entrySize);
        if (kind == 1) {
            action_ = Action::Delete;
            expected_ = QByteArray(list_).remove(row * entrySize, entrySize);
            panel_->command({QStringLiteral("delete"), QString::number(row)});
            return;
        }
        action_ = Action::Edit;
        panel_->command({QStringLiteral("edit"), QString::number(row), number, comment});
        put(&expected_, numberAt, numberSize, number);
        put(&expected_, commentAt, commentSize, comment);
        expected_ = QByteArray(list_).replace(row * entrySize, entrySize, expected_);
        return;
    }
    put(&expected_, numberAt, numberSize, number);
    put(&expected_, commentAt, commentSize, comment);
}

void OperatorScript::check()
{
    const QString failure = panel_->takeFailure();
    if (!failure.isEmpty()) {
        wrong(QStringLiteral("the operator could not act: ") + failure);
        return;
    }
    switch (action_) {
    case Action::Archive:
        ++results_.archives;
        checkArchive();
        break;
    case Action::Send:
        ++results_.sends;
        checkSent();
        break;
    case Action::Fetch:
        ++results_.fetches;
        fetched_ = true;
        checkList();
        break;
    case Action::Edit:
    case Action::Add:
    case Action::Delete:
        ++results_.edits;
        checkList();
        break;
    case Action::Look:
        ++results_.looks;
        break;
    case Action::Connect:
    case Action::None:
        break;
    }
}

void OperatorScript::checkArchive()
{
    const QByteArray archive = device().host().files().get(DevicePaths::archive());
    const int rows = archive.size() / static_cast<int>(Scan::size);
    if (panel_->content(QStringLiteral("ArchiveTemp/tmppassbase.tpp")) != archive) {
        wrong(QStringLiteral("an archive is not the device's"));
        return;
    }
    if (panel_->content(QStringLiteral("ArchiveTemp/tmppassbase.tpp.index")) !=
        DeviceIndex::entry(QString::fromLatin1(device().id())).repeated(rows)) {
        wrong(QStringLiteral("an archive's index has not the device's identifier"));
    }
    for (int row = 0; row < rows; ++row) {
        Scan scan;
        std::memcpy(scan.data(), archive.constData() + qint64(row) * Scan::size, Scan::size);
        const QString name = VaskSettings::picFileName(scan);
        if (panel_->content(QStringLiteral("ArchiveTemp/tmppassbase.jpegdata/") + name) !=
            device().photo(name)) {
            wrong(QStringLiteral("a photo of an archive is not the device's: ") + name);
        }
    }
}

bool OperatorScript::isListAsExpected(const QByteArray &list) const
{
    if (action_ != Action::Add) {
        return list == expected_;
    }
    const QByteArray added = list.mid(list_.size());
    return list.startsWith(list_) && added.size() == entrySize &&
           added.mid(numberAt, numberSize) == expected_.mid(numberAt, numberSize) &&
           added.mid(keyAt) == expected_.mid(keyAt);
}

void OperatorScript::checkList()
{
    const QByteArray now = list();
    if (!isListAsExpected(now)) {
        wrong(QStringLiteral("the list is not as it was left, after %1: %2 entries before, "
                             "%3 now")
                  .arg(doing())
                  .arg(list_.size() / entrySize)
                  .arg(now.size() / entrySize));
    }
    list_ = now;
}

void OperatorScript::checkSent()
{
    if (device().host().storedAccessList() != list_ ||
        device().host().activeAccessList() != list_) {
        wrong(QStringLiteral("the device has not the list that it was sent"));
    }
}

void OperatorScript::panelKilled()
{
    if (action_ != Action::None) {
        ++results_.cutShort;
    }
    const QByteArray now = list();
    const bool changes = action_ == Action::Fetch || action_ == Action::Edit ||
                         action_ == Action::Add || action_ == Action::Delete;
    if (now != list_ && !(changes && isListAsExpected(now))) {
        wrong(QStringLiteral("the list did not survive a kill: %1 entries before, %2 bytes now")
                  .arg(list_.size() / entrySize)
                  .arg(now.size()));
    }
    list_ = now;
    action_ = Action::None;
}
