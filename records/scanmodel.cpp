// SPDX-License-Identifier: MIT
#include "records/scanmodel.h"

#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/regularfile.h"
#include "records/spokencell.h"
#include "records/vasksettings.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>

const QString scanModelDateTimeFormat = QStringLiteral("dd MMMM yyyy hh:mm:ss");

namespace
{

QDateTime timeOf(const QModelIndex &index)
{
    if (index.model() == nullptr) {
        return QDateTime();
    }
    const QModelIndex date =
        index.column() == ScanModel::DateColumn
            ? index
            : index.model()->index(index.row(), ScanModel::DateColumn, index.parent());
    return date.data(Qt::EditRole).toDateTime();
}

} // namespace

ScanModel::ScanModel(QObject *parent)
    : StructureFileModel<Scan>(parent)
{
}

ScanModel::ScanModel(const QString &fileName, QObject *parent)
    : StructureFileModel<Scan>(parent)
{
    ScanModel::setFileName(fileName);
}

QString ScanModel::indexFileOf(const QString &recordFile)
{
    const QFileInfo record(recordFile);
    return record.absolutePath() + QDir::separator() + record.baseName() +
           VaskSettings::passbaseIndexSuffix();
}

QString ScanModel::shownNumber(Scan scan)
{
    scan.translateFromLocal();
    return VaskSettings::readableNumber(scan.number());
}

void ScanModel::setFileName(const QString &name)
{
    cachedScan_ = Scan();
    cachedRow_ = -1;
    cachedDevice_.clear();
    oldPhotos_.reset();
    indexFile_.close();
    indexName_ = name.isEmpty() ? QString() : indexFileOf(name);
    indexFile_.setFileName(indexName_);
    if (!name.isEmpty()) {
        if (!indexFile_.exists() && indexFile_.open(QIODevice::WriteOnly)) {
            indexFile_.close();
        }
        // Unbuffered: the entries are written through another handle.
        RegularFile::open(indexFile_, QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    StructureFileModel<Scan>::setFileName(name);
}

QString ScanModel::indexFile() const
{
    return indexName_;
}

int ScanModel::columnCount(const QModelIndex &) const
{
    return columns;
}

QVariant ScanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole) {
        return int(Qt::AlignCenter);
    }
    if (role != Qt::DisplayRole) {
        return QVariant();
    }
    if (orientation == Qt::Vertical) {
        return section + 1;
    }
    switch (section) {
    case DateColumn:
        return tr("Date");
    case NumberColumn:
        return tr("Number");
    case InListColumn:
        return tr("In access list");
    case GrantedColumn:
        return tr("Access granted");
    case DeviceColumn:
        return tr("Vask ID");
    case CommentColumn:
        return tr("Comment");
    case KeyColumn:
        return tr("Key");
    default:
        return QVariant();
    }
}

QVariant ScanModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return QVariant();
    }
    if (index.row() != cachedRow_) {
        readRow(index.row());
    }
    if (!cachedRead_) {
        return QVariant();
    }
    switch (role) {
    case Qt::DisplayRole:
        return display(index.column());
    case Qt::EditRole:
        return edit(index.column());
    case Qt::ForegroundRole:
        return foreground(index.column());
    case Qt::AccessibleTextRole:
        return SpokenCell::text(headerData(index.column(), Qt::Horizontal, Qt::DisplayRole),
                                display(index.column()));
    default:
        return QVariant();
    }
}

void ScanModel::readRow(int row) const
{
    cachedRow_ = row;
    // Reading goes through the file's position only; the table itself does not change.
    const std::optional<Scan> scan = const_cast<ScanModel *>(this)->read(row);
    cachedRead_ = scan.has_value();
    cachedScan_ = scan.value_or(Scan());
    cachedScan_.translateFromLocal();
    if (qint64(row) * DeviceIndex::entrySize < indexFile_.size()) {
        cachedDevice_ = deviceOf(row);
    }
}

QString ScanModel::deviceOf(int row) const
{
    char entry[DeviceIndex::entrySize] = {};
    if (!indexFile_.isOpen() || !indexFile_.seek(qint64(row) * DeviceIndex::entrySize)) {
        return QString();
    }
    indexFile_.read(entry, DeviceIndex::entrySize);
    return LocalText::decoded(entry, DeviceIndex::entrySize).trimmed();
}

QVariant ScanModel::display(int column) const
{
    const auto yesOrNo = [](bool yes) { return yes ? tr("Yes") : tr("No"); };
    switch (column) {
    case DateColumn:
        return cachedScan_.dateTime().toString(scanModelDateTimeFormat);
    case NumberColumn:
        return shownNumber(cachedScan_);
    case InListColumn:
        return yesOrNo(cachedScan_.isInAccessList());
    case GrantedColumn:
        return yesOrNo(cachedScan_.isAccessGranted());
    case DeviceColumn:
        return cachedDevice_;
    case CommentColumn:
        return cachedScan_.comment();
    case KeyColumn:
        return cachedScan_.accessKey();
    default:
        return QVariant();
    }
}

QVariant ScanModel::edit(int column) const
{
    switch (column) {
    case DateColumn:
        return cachedScan_.dateTime();
    case InListColumn:
        return cachedScan_.isInAccessList();
    case GrantedColumn:
        return cachedScan_.isAccessGranted();
    default:
        return QVariant();
    }
}

QVariant ScanModel::foreground(int column) const
{
    if (column != InListColumn && column != GrantedColumn) {
        return QVariant();
    }
    const bool good =
        column == InListColumn ? cachedScan_.isInAccessList() : cachedScan_.isAccessGranted();
    return good ? QGuiApplication::palette().color(QPalette::WindowText) : QColor(Qt::red);
}

bool ScanModel::removeRows(int first, int last, const QModelIndex &parent)
{
    oldPhotos_.reset(); // its place is that of other rows now
    return StructureFileModel<Scan>::removeRows(first, last, parent);
}

DiskSpace ScanModel::diskSpace() const
{
    return DiskSpace::of(fileName());
}

void ScanModel::freeSpace()
{
    const Settings *settings = Settings::instance();
    if (settings == nullptr || fileName().isEmpty()) {
        return;
    }
    const qint64 reserve = settings->minReservedFreeSpace();
    const DiskSpace disk = diskSpace();
    // A disk that could never hold the reserve keeps its photos.
    if (disk.total <= reserve || disk.available >= reserve) {
        return;
    }
    if (!oldPhotos_) {
        oldPhotos_ = std::make_unique<OldPhotos>(fileName());
    }
    oldPhotos_->free(reserve, [this] { return diskSpace().available; });
}

bool isIndexEqualDateTime(const QModelIndex &index, const QDateTime &dateTime)
{
    return timeOf(index) == dateTime;
}

bool indexLessThanDateTime(const QModelIndex &index, const QDateTime &dateTime)
{
    return timeOf(index) < dateTime;
}

bool dateTimeLessThanIndex(const QDateTime &dateTime, const QModelIndex &index)
{
    return dateTime < timeOf(index);
}
