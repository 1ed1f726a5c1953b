// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

// Small files that fit together, and are replaced all or none: whoever reads them finds the whole
// old set or the whole new one, but for the moment of the replacing itself, and never finds one
// missing.
//
// The new ones are written and flushed as NAME.new first. Then a mark is set, an empty file, and
// they are put in place one by one. From the mark on the new set counts: cut off behind it, by a
// kill or a power cut, the next repair() completes the set; cut off before it, the old set stays. A
// link stays a link, the file that it names is replaced.
//
// Any thread, one at a time, and one program at a time.
class FileSet
{
public:
    explicit FileSet(const QString &mark);

    void add(const QString &name, const QByteArray &bytes);
    // The reason why nothing was replaced; empty on success.
    QString commit();

    // What a commit that was cut off has left is completed or taken away. Where one of the new ones
    // cannot be put in place, the mark stays, and the next repair tries again.
    static void repair(const QString &mark, const QStringList &names);

private:
    struct Member {
        QString name; // of the file itself, not of a link to it
        QByteArray bytes;
        bool wasThere;
        QByteArray former;
    };

    static QString target(const QString &name);
    static QString beside(const QString &target);
    static QString write(const Member &member);
    QString dropFormerMark() const;
    QString prepare();
    QString replaceAll();
    void putBack(int count) const;
    void clear() const;
    QString flushFolders() const;

    QString mark_;
    QVector<Member> members_;
};
