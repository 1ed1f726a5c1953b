// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

// One text of a catalogue's source file.
struct Message {
    QString context;
    QString comment;
    QString source;
    QString translation;
    // Empty for a finished text.
    QString type;

    // What makes it the same text in another catalogue.
    QString key() const;
};

// The texts of catalogues, and the rules that a translation keeps to. A file that cannot be read or
// is no catalogue ends the test program.
namespace Messages
{

QVector<Message> read(const QString &file);

// What is wrong with a translation into Russian; empty when nothing is.
QString fault(const Message &message);

} // namespace Messages
