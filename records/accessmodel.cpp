// SPDX-License-Identifier: MIT
#include "records/accessmodel.h"

#include "records/spokencell.h"

#include <QVector>

#include <algorithm>

const QString accessModelDateTimeFormat = QStringLiteral("dd MMMM yyyy hh:mm:ss");

namespace
{

Access translated(Access access)
{
    access.translateFromLocal();
    return access;
}

// own where the list has no id to give.
qint16 newId(QVector<qint16> ids, qint16 own)
{
    if (ids.isEmpty()) {
        return 1;
    }
    std::sort(ids.begin(), ids.end());
    if (ids.last() < AccessModel::mostEntries) {
        return static_cast<qint16>(ids.last() + 1);
    }
    for (int place = 1; place < ids.size(); ++place) {
        if (ids.at(place) > ids.at(place - 1) + 1) {
            return static_cast<qint16>(ids.at(place - 1) + 1);
        }
    }
    return own;
}

} // namespace

AccessModel::AccessModel(QObject *parent)
    : StructureFileModel<Access>(parent)
{
}

AccessModel::AccessModel(const QString &fileName, QObject *parent)
    : StructureFileModel<Access>(parent)
{
    StructureFileModel<Access>::setFileName(fileName);
}

int AccessModel::columnCount(const QModelIndex &) const
{
    return columns;
}

QVariant AccessModel::headerData(int section, Qt::Orientation orientation, int role) const
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
    case IdColumn:
        return tr("Id");
    case NumberColumn:
        return tr("Number");
    case FromColumn:
        return tr("Date from");
    case TillColumn:
        return tr("Date till");
    case KeyColumn:
        return tr("Key");
    case CommentColumn:
        return tr("Comment");
    default:
        return QVariant();
    }
}

QStringList AccessModel::titles() const
{
    QStringList all;
    for (int column = 0; column < columns; ++column) {
        all << headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    return all;
}

QVariant AccessModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return QVariant();
    }
    const int row = index.row();
    if (role == Qt::DisplayRole) {
        return display(row, index.column());
    }
    if (role == Qt::AccessibleTextRole) {
        return SpokenCell::text(headerData(index.column(), Qt::Horizontal, Qt::DisplayRole),
                                data(index, Qt::DisplayRole));
    }
    if (role == Qt::EditRole && index.column() == FromColumn) {
        const auto entry = partOf(row, AccessLayout::dateTimeFrom);
        return entry ? QVariant(entry->dateTimeFrom()) : QVariant();
    }
    if (role == Qt::EditRole && index.column() == TillColumn) {
        const auto entry = partOf(row, AccessLayout::dateTimeTill);
        return entry ? QVariant(entry->dateTimeTill()) : QVariant();
    }
    return QVariant();
}

QVariant AccessModel::display(int row, int column) const
{
    const auto time = [](const QDateTime &value) {
        return value.toString(accessModelDateTimeFormat);
    };
    const auto cell = [this, row](const RecordField &field, const auto &shown) {
        const std::optional<Access> entry = partOf(row, field);
        return entry ? QVariant(shown(*entry)) : QVariant();
    };
    switch (column) {
    case IdColumn:
        return cell(AccessLayout::id, [](const Access &entry) { return int(entry.id()); });
    case NumberColumn:
        return cell(AccessLayout::number, [](const Access &entry) { return entry.number(); });
    case FromColumn:
        return cell(AccessLayout::dateTimeFrom,
                    [&time](const Access &entry) { return time(entry.dateTimeFrom()); });
    case TillColumn:
        return cell(AccessLayout::dateTimeTill,
                    [&time](const Access &entry) { return time(entry.dateTimeTill()); });
    case KeyColumn:
        return cell(AccessLayout::accessKey,
                    [](const Access &entry) { return entry.accessKey().trimmed(); });
    case CommentColumn:
        return cell(AccessLayout::comment,
                    [](const Access &entry) { return entry.comment().trimmed(); });
    default:
        return QString();
    }
}

bool AccessModel::setValue(int row, const Access &access)
{
    return StructureFileModel<Access>::setValue(row, translated(access));
}

bool AccessModel::setStored(int row, const Access &access)
{
    return StructureFileModel<Access>::setValue(row, access);
}

bool AccessModel::append(const Access &access)
{
    if (rowCount() >= mostEntries) {
        return false;
    }
    const std::optional<QVector<qint16>> taken = ids();
    if (!taken) {
        return false; // the new id could be one that is there
    }
    Access entry = translated(access);
    entry.setId(newId(*taken, access.id()));
    return StructureFileModel<Access>::append(entry);
}

std::optional<QVector<qint16>> AccessModel::ids() const
{
    QVector<qint16> all;
    all.reserve(rowCount());
    for (int row = 0; row < rowCount(); ++row) {
        const std::optional<Access> entry = partOf(row, AccessLayout::id);
        if (!entry) {
            return std::nullopt;
        }
        all.append(entry->id());
    }
    return all;
}
