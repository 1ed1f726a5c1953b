// SPDX-License-Identifier: MIT
#include "pages/numberproxy.h"

#include "records/regularfile.h"
#include "records/vasksettings.h"

#include <QFile>

namespace
{

constexpr int rowsAtOnce = 1024;

} // namespace

NumberProxy::NumberProxy(const NumberSource &source, QObject *parent)
    : QSortFilterProxyModel(parent)
    , source_(source)
{
    setDynamicSortFilter(true);
    setFilterKeyColumn(source.column);
}

void NumberProxy::change(const std::function<void()> &action)
{
    QAbstractItemModel *table = sourceModel();
    setSourceModel(nullptr);
    action();
    matches_ = matches();
    setSourceModel(table);
    rowCount(); // has the map of rows made
    matches_.clear();
}

bool NumberProxy::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    if (row < matches_.size()) {
        return matches_.testBit(row);
    }
    const QRegExp expression = filterRegExp();
    if (expression.isEmpty()) {
        return true; // without reading the row from its file
    }
    const QString number = sourceModel()->index(row, source_.column, parent).data().toString();
    return expression.indexIn(VaskSettings::translateFromLocal(number)) >= 0;
}

// Empty where the table itself must be asked.
QBitArray NumberProxy::matches() const
{
    const QString name = source_.file();
    const QRegExp expression = filterRegExp();
    QFile file(name);
    if (name.isEmpty() || expression.isEmpty() ||
        !RegularFile::open(file, QIODevice::ReadOnly).isEmpty()) {
        return QBitArray();
    }
    QBitArray found(static_cast<int>(file.size() / source_.recordSize));
    for (int row = 0; row < found.size();) {
        const QByteArray records = file.read(qint64(rowsAtOnce) * source_.recordSize);
        const int rows = qMin(records.size() / source_.recordSize, found.size() - row);
        if (rows == 0) {
            return QBitArray();
        }
        for (int place = 0; place < rows; ++place, ++row) {
            const char *record = records.constData() + qint64(place) * source_.recordSize;
            found.setBit(row, expression.indexIn(source_.number(record)) >= 0);
        }
    }
    return found;
}
