// SPDX-License-Identifier: MIT
#include "tests/translations/messages.h"

#include "tests/translations/keyletters.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
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

// The keys of a form, each by the context and the text of its button.
QMap<QString, QString> shortcutsOf(const QString &form)
{
    QFile input(form);
    if (!input.open(QIODevice::ReadOnly)) {
        qFatal("cannot read %s", qPrintable(form));
    }
    QMap<QString, QString> shortcuts;
    QXmlStreamReader xml(&input);
    QString context;
    QString text;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("class") && context.isEmpty()) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("widget")) {
            text.clear();
        } else if (xml.name() == QLatin1String("property")) {
            const auto name = xml.attributes().value(QLatin1String("name"));
            const bool isText = name == QLatin1String("text");
            const bool isShortcut = name == QLatin1String("shortcut");
            if ((isText || isShortcut) && xml.readNextStartElement()) {
                const QString value = xml.readElementText();
                text = isText ? value : text;
                if (isShortcut) {
                    shortcuts.insert(context + QLatin1Char('|') + text, value);
                }
            }
        }
    }
    return shortcuts;
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

// There are as many as in the source; where the form has a key of its own, none or that key's
// letter.
bool hasOtherMnemonics(const Message &message)
{
    const char *mnemonic = "&(?!&)(?=.)";
    const int count = found(message.translation, mnemonic).size();
    if (!found(message.translation, "&(?!\\p{L})").isEmpty()) {
        return true;
    }
    if (message.shortcut.isEmpty()) {
        return count != found(message.source, mnemonic).size();
    }
    return count > 1 ||
           !KeyLetters::isLetterOf(QKeySequence(message.shortcut), message.translation);
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

int Messages::addShortcuts(QVector<Message> &messages, const QStringList &forms)
{
    QMap<QString, QString> shortcuts;
    for (const QString &form : forms) {
        const QMap<QString, QString> ofTheForm = shortcutsOf(form);
        for (auto shortcut = ofTheForm.begin(); shortcut != ofTheForm.end(); ++shortcut) {
            shortcuts.insert(shortcut.key(), shortcut.value());
        }
    }
    int count = 0;
    for (Message &message : messages) {
        message.shortcut = shortcuts.value(message.context + QLatin1Char('|') + message.source);
        count += message.shortcut.isEmpty() ? 0 : 1;
    }
    return count;
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
    if (hasOtherMnemonics(message)) {
        return QStringLiteral("has other mnemonics, or one that does nothing");
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
