// SPDX-License-Identifier: MIT
#pragma once

#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

#include <cstring>

// The plate rules of a catalogue for cyrillic plates, in force while it lives: the letter sets, and
// patterns that take the twelve cyrillic letters too. All other texts stay as they are. What was
// made before keeps its patterns.
class LocalLetters : public QTranslator
{
public:
    LocalLetters()
    {
        QCoreApplication::installTranslator(this);
        VaskSettings::init();
    }
    ~LocalLetters() override
    {
        QCoreApplication::removeTranslator(this);
        VaskSettings::init();
    }
    LocalLetters(const LocalLetters &) = delete;
    LocalLetters &operator=(const LocalLetters &) = delete;

    static QString local() { return QStringLiteral("АВЕКМНОРСТУХ"); }
    static QString latin() { return QStringLiteral("ABEKMHOPCTYX"); }

    // In place of what is there, key by key. The test library's own typing knows ASCII only.
    static void type(QWidget *edit, const QString &text)
    {
        edit->setFocus();
        QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(edit, Qt::Key_Delete);
        for (const QChar letter : text) {
            QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(letter),
                                Qt::NoModifier);
        }
    }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *comment,
                      int) const override
    {
        if (std::strcmp(context, "QObject") != 0 || comment == nullptr ||
            std::strcmp(comment, "VaskSettings") != 0) {
            return QString();
        }
        const QString text = QString::fromLatin1(source);
        return text == QLatin1String("__") ? local()
               : text == QLatin1String("_")
                   ? latin()
                   : QString(text).replace(QStringLiteral("a-z"),
                                           QStringLiteral("a-zавекмнорстух"));
    }
};
