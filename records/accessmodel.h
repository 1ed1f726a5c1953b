// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"
#include "records/structurefilemodel.h"

// How a list prints its times.
extern const QString accessModelDateTimeFormat;

// The table of an access list: the numbers that may pass. Numbers are stored in Latin capitals. A
// list holds at most 1000 entries; each gets an id that no other entry of the list has, 1 to 1000
// in a list that was made here.
//
// Nothing is cached: a cell is one read of its field, an append reads all ids. A cell that cannot
// be read is empty. Otherwise as StructureFileModel.
class AccessModel : public StructureFileModel<Access>
{
    Q_OBJECT

public:
    enum Column {
        IdColumn,
        NumberColumn,
        FromColumn,
        TillColumn,
        KeyColumn,
        CommentColumn,
        columns
    };
    static constexpr int mostEntries = 1000;

    explicit AccessModel(QObject *parent);
    AccessModel(const QString &fileName, QObject *parent);

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QStringList titles() const;

    bool setValue(int row, const Access &access) override;
    // As it stands: an entry whose number nobody has touched keeps it as it was stored.
    bool setStored(int row, const Access &access);
    // With a new id: one above the largest up to 1000, then the first hole between two entries.
    // Where there is none either, the entry keeps its own. False when the list is full or
    // an id cannot be read.
    bool append(const Access &access) override;

private:
    QVariant display(int row, int column) const;
    // Nothing when one of them cannot be read.
    std::optional<QVector<qint16>> ids() const;
};
