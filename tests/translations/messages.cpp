// SPDX-License-Identifier: MIT
#include "tests/translations/messages.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>

namespace
{

Message readMessage(QXmlStreamReader &xml, const QString &context)
{
    Message message;
    message.context = context;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.name() == QLatin1String("comment")) {
            message.comment = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            message.type = xml.attributes().value(QLatin1String("type")).toString();
            message.translation = xml.readElementText();
        } else {
            xml.skipCurrentElement();
        }
    }
    return message;
}

QStringList found(const QString &text, const char *expression)
{
    QStringList all;
    const QRegularExpression pattern(QString::fromLatin1(expression),
                                     QRegularExpression::UseUnicodePropertiesOption);
    auto match = pattern.globalMatch(text);
    while (match.hasNext()) {
        all.append(match.next().captured());
    }
    return all;
}

QStringList sorted(QStringList list)
{
    std::sort(list.begin(), list.end());
    return list;
}

QString edges(const QString &text)
{
    const QString trimmed = text.trimmed();
    return text.left(text.indexOf(trimmed)) + QLatin1Char('|') +
           text.mid(text.indexOf(trimmed) + trimmed.size());
}

// Names of files, keys and formats of times, which are not words.
bool isKept(const Message &message)
{
    static const QRegularExpression kept(
        QStringLiteral("^((Alt|Ctrl|Shift)\\+.+|[Hhms:]+|accessbase_.*|Stallo|[\\d.]|[%\\d]+)$"));
    return message.context == QLatin1String("Settings") || kept.match(message.source).hasMatch();
}

bool isCyrillic(QChar letter)
{
    return letter.script() == QChar::Script_Cyrillic;
}

// A word is of one alphabet, and a Latin one stands in the source, too.
QString wordFault(const Message &message)
{
    const QString plain = QString(message.translation).remove(QLatin1Char('&'));
    const QStringList words = found(plain, "\\p{L}+");
    for (const QString &word : words) {
        const auto cyrillic = std::count_if(word.begin(), word.end(), isCyrillic);
        if (cyrillic != 0 && cyrillic != word.size()) {
            return QStringLiteral("mixes alphabets in ") + word;
        }
        if (cyrillic == 0 && !message.source.contains(word, Qt::CaseInsensitive)) {
            return QStringLiteral("brings the foreign word ") + word;
        }
    }
    return QString();
}

} // namespace

QString Message::key() const
{
    return context + QLatin1Char('|') + source + QLatin1Char('|') + comment;
}

QVector<Message> Messages::read(const QString &file)
{
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        qFatal("cannot read %s", qPrintable(file));
    }
    QVector<Message> messages;
    QXmlStreamReader xml(&input);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            messages.append(readMessage(xml, context));
        }
    }
    if (xml.hasError()) {
        qFatal("%s: %s", qPrintable(file), qPrintable(xml.errorString()));
    }
    return messages;
}

QString Messages::fault(const Message &message)
{
    const QString &source = message.source;
    const QString &translation = message.translation;
    if (!message.type.isEmpty()) {
        return QStringLiteral("is ") + message.type;
    }
    if (translation.isEmpty()) {
        return QStringLiteral("is empty");
    }
    if (message.comment == QLatin1String("VaskSettings")) {
        return QString(); // letters and patterns
    }
    if (isKept(message)) {
        return translation == source ? QString() : QStringLiteral("is changed");
    }
    const auto same = [&](const char *expression) {
        return sorted(found(source, expression)) == sorted(found(translation, expression));
    };
    if (!same("%\\d+")) {
        return QStringLiteral("has other places for values");
    }
    if (!same("&(?!&)(?=.)") || found(translation, "&(?!\\p{L})").size() != 0) {
        return QStringLiteral("has another count of mnemonics, or one that is no letter");
    }
    if (!same("<[^>]*>")) {
        return QStringLiteral("has other tags");
    }
    if (edges(source) != edges(translation) ||
        source.endsWith(QLatin1Char(':')) != translation.endsWith(QLatin1Char(':'))) {
        return QStringLiteral("has other ends");
    }
    return wordFault(message);
}
