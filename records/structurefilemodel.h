// SPDX-License-Identifier: MIT
#pragma once

#include "records/record.h"
#include "records/recordfile.h"

#include <QAbstractItemModel>

#include <iterator>
#include <memory>
#include <optional>

// A flat table over a file of fixed-size records, one row per record. The file is the only storage:
// every read goes to it and every change is written through at once, so memory does not grow with
// the table. T is a Record: T::size bytes at T::data().
//
// GUI thread only; a worker that needs the rows opens the file itself. Without a file, or after one
// that could not be opened, the table is empty and every change returns false. Two habits differ
// from the toolkit's on purpose: removeRows() takes the last row, not a count, so the toolkit's own
// removeRow() and removeRows(row, count) must not be called on it; and insertRows() adds exactly
// one row at the end, whatever it is asked for.
template <typename T>
class StructureFileModel : public QAbstractItemModel
{
public:
    // A row of the table for binary searches; end() is behind the last row. Valid while the model
    // lives and keeps its rows.
    class Iterator
    {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = QModelIndex;
        using difference_type = int;
        using pointer = const QModelIndex *;
        using reference = QModelIndex;

        Iterator() = default;
        Iterator(const StructureFileModel *model, int row)
            : model_(model)
            , row_(row)
        {
        }

        int row() const { return row_; }

        QModelIndex operator*() const { return model_ ? model_->index(row_, 0) : QModelIndex(); }
        QModelIndex operator[](int step) const { return *(*this + step); }

        Iterator &operator+=(int step)
        {
            row_ += step;
            return *this;
        }
        Iterator &operator-=(int step) { return *this += -step; }
        Iterator &operator++() { return *this += 1; }
        Iterator &operator--() { return *this += -1; }
        Iterator operator++(int)
        {
            const Iterator old = *this;
            ++*this;
            return old;
        }
        Iterator operator--(int)
        {
            const Iterator old = *this;
            --*this;
            return old;
        }
        friend Iterator operator+(Iterator it, int step) { return it += step; }
        friend Iterator operator+(int step, Iterator it) { return it += step; }
        friend Iterator operator-(Iterator it, int step) { return it -= step; }
        friend int operator-(const Iterator &a, const Iterator &b) { return a.row_ - b.row_; }
        friend bool operator==(const Iterator &a, const Iterator &b) { return a.row_ == b.row_; }
        friend bool operator!=(const Iterator &a, const Iterator &b) { return a.row_ != b.row_; }
        friend bool operator<(const Iterator &a, const Iterator &b) { return a.row_ < b.row_; }
        friend bool operator>(const Iterator &a, const Iterator &b) { return a.row_ > b.row_; }
        friend bool operator<=(const Iterator &a, const Iterator &b) { return a.row_ <= b.row_; }
        friend bool operator>=(const Iterator &a, const Iterator &b) { return a.row_ >= b.row_; }

    private:
        const StructureFileModel *model_ = nullptr;
        int row_ = 0;
    };

    explicit StructureFileModel(QObject *parent)
        : QAbstractItemModel(parent)
    {
    }

    // Binds the table to a record file, which is created when missing; an empty name unbinds it.
    virtual void setFileName(const QString &name)
    {
        beginResetModel();
        file_.reset();
        if (!name.isEmpty()) {
            file_ = std::make_unique<RecordFile>(name, T::size);
            if (!file_->open()) {
                file_.reset();
            }
        }
        endResetModel();
        if (!name.isEmpty() && !file_) {
            // Through the virtual call, so that a derived table drops what it keeps beside the
            // file.
            setFileName(QString());
        }
    }

    // Empty while the table has no file.
    QString fileName() const { return file_ ? file_->fileName() : QString(); }

    int rowCount(const QModelIndex &parent) const override
    {
        return file_ && !parent.isValid() ? file_->count() : 0;
    }
    virtual int rowCount() const { return rowCount(QModelIndex()); }

    QModelIndex index(int row, int column, const QModelIndex &parent) const override
    {
        const bool inside =
            row >= 0 && row < rowCount() && column >= 0 && column < columnCount(parent);
        return inside && !parent.isValid() ? createIndex(row, column, quintptr(0)) : QModelIndex();
    }
    virtual QModelIndex index(int row, int column) const
    {
        return index(row, column, QModelIndex());
    }

    QModelIndex parent(const QModelIndex &) const override { return QModelIndex(); }

    // Cells are not edited one by one; see setValue().
    bool setData(const QModelIndex &, const QVariant &, int) override { return false; }

    // Nothing where the table has no such row, or where its file does not give it: for whoever
    // stores, sends or tells what he reads.
    std::optional<T> read(int row)
    {
        T record;
        const bool there = row >= 0 && row < rowCount() && file_->read(row, record.data());
        return there ? std::optional<T>(record) : std::nullopt;
    }

    // A default record where the table has no such row. What cannot be read is passed over in
    // silence, so this is for looking only; see read().
    virtual T value(int row)
    {
        T record;
        if (row >= 0 && row < rowCount()) {
            file_->read(row, record.data());
        }
        return record;
    }

    virtual bool setValue(int row, const T &record)
    {
        if (!file_ || row < 0 || !file_->write(row, record.data())) {
            return false;
        }
        announceChange(row);
        return true;
    }

    // A disk that is full is found out before the row is announced, and the row is never seen
    // empty.
    virtual bool append(const T &record)
    {
        if (!file_ || !file_->append(record.data())) {
            return false;
        }
        if (!file_->shrink()) {
            resetViews(); // the trial cannot be taken back, so it counts
            return true;
        }
        const int row = rowCount();
        beginInsertRows(QModelIndex(), row, row);
        const bool written = file_->append(record.data());
        endInsertRows();
        if (!written) {
            resetViews(); // there is no such row after all
            return false;
        }
        announceChange(row);
        return true;
    }

    // One row of zeros at the end, whatever is asked for.
    bool insertRows(int, int, const QModelIndex &parent) override
    {
        if (!file_ || !file_->grow()) {
            return false;
        }
        if (!file_->shrink()) {
            resetViews();
            return true;
        }
        const int row = rowCount();
        beginInsertRows(parent, row, row);
        const bool grown = file_->grow();
        endInsertRows();
        if (!grown) {
            resetViews();
        }
        return grown;
    }

    // Rows first to last, both included.
    bool removeRows(int first, int last, const QModelIndex &parent) override
    {
        if (!file_ || first < 0 || first > last || last >= rowCount()) {
            return false;
        }
        beginRemoveRows(parent, first, last);
        const bool removed = file_->removeRange(first, last);
        endRemoveRows();
        if (!removed) {
            resetViews(); // they are all still there
        }
        return removed;
    }
    virtual bool removeRows(int first, int last) { return removeRows(first, last, QModelIndex()); }

    // Rows that need not lie together, in rising order, each once: all of them or none.
    bool removeScattered(const QVector<int> &rows)
    {
        if (rows.isEmpty() || rows.last() - rows.first() + 1 == rows.size()) {
            return !rows.isEmpty() && removeRows(rows.first(), rows.last());
        }
        beginResetModel();
        const bool removed = file_ && file_->remove(rows);
        endResetModel();
        return removed;
    }

    Iterator begin() const { return Iterator(this, 0); }
    Iterator end() const { return Iterator(this, rowCount()); }

protected:
    // One field of a row, in its place in an otherwise default record; nothing as for read().
    std::optional<T> partOf(int row, const RecordField &field) const
    {
        T record;
        const bool there =
            row >= 0 && row < rowCount() &&
            file_->readPart(row, static_cast<int>(field.offset), static_cast<int>(field.size),
                            record.data() + field.offset);
        return there ? std::optional<T>(record) : std::nullopt;
    }

private:
    void announceChange(int row)
    {
        for (int column = 0; column < columnCount(QModelIndex()); ++column) {
            Q_EMIT dataChanged(index(row, column), index(row, column));
        }
    }

    // The announcements did not come true: the views read the rows anew.
    void resetViews()
    {
        beginResetModel();
        endResetModel();
    }

    std::unique_ptr<RecordFile> file_;
};
