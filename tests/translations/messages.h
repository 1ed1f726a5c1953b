// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// One text of a catalogue's source file.
struct Message {
    QString context;
    QString comment;
    QString source;
    QString translation;
    // Empty for a finished text.
    QString type;
    // The key that its form gives the button of this text, if it gives one.
    QString shortcut;

    // What makes it the same text in another catalogue.
    QString key() const;
};

// The texts of catalogues, and the rules that a translation keeps to. A file that cannot be read or
// is no catalogue ends the test program.
namespace Messages
{

QVector<Message> read(const QString &file);

// Says of each text which key its form, one of the given .ui files, gives it. Returns how many
// have one.
int addShortcuts(QVector<Message> &messages, const QStringList &forms);

// What is wrong with a translation into Russian; empty when nothing is.
QString fault(const Message &message);

} // namespace Messages
