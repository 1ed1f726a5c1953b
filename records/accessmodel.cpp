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
        return index.column() == IdColumn ? QVariant(int(partOf(row, AccessLayout::id).id()))
                                          : QVariant(display(row, index.column()));
    }
    if (role == Qt::AccessibleTextRole) {
        return SpokenCell::text(headerData(index.column(), Qt::Horizontal, Qt::DisplayRole),
                                data(index, Qt::DisplayRole));
    }
    if (role == Qt::EditRole && index.column() == FromColumn) {
        return partOf(row, AccessLayout::dateTimeFrom).dateTimeFrom();
    }
    if (role == Qt::EditRole && index.column() == TillColumn) {
        return partOf(row, AccessLayout::dateTimeTill).dateTimeTill();
    }
    return QVariant();
}

QString AccessModel::display(int row, int column) const
{
    const auto time = [](const QDateTime &value) {
        return value.toString(accessModelDateTimeFormat);
    };
    switch (column) {
    case NumberColumn:
        return partOf(row, AccessLayout::number).number();
    case FromColumn:
        return time(partOf(row, AccessLayout::dateTimeFrom).dateTimeFrom());
    case TillColumn:
        return time(partOf(row, AccessLayout::dateTimeTill).dateTimeTill());
    case KeyColumn:
        return partOf(row, AccessLayout::accessKey).accessKey().trimmed();
    case CommentColumn:
        return partOf(row, AccessLayout::comment).comment().trimmed();
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
    const QVector<qint16> taken = ids();
    Access entry = translated(access);
    entry.setId(newId(taken, access.id()));
    return StructureFileModel<Access>::append(entry);
}

QVector<qint16> AccessModel::ids() const
{
    QVector<qint16> all;
    all.reserve(rowCount());
    for (int row = 0; row < rowCount(); ++row) {
        all.append(partOf(row, AccessLayout::id).id());
    }
    return all;
}
