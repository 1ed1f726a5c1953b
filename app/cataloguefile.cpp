// SPDX-License-Identifier: MIT
#include "app/cataloguefile.h"

#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace
{

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr int mostSteps = 4'000'000; // of reading; texts may lie over one another
constexpr int deepest = 4;           // files that depend on files

const QByteArray magic =
    QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd"); // in front of every catalogue

enum Section : uchar { Contexts = 0x2f, Hashes = 0x42, Messages = 0x69, Dependencies = 0x96 };
enum Tag : uchar {
    EndTag = 1,
    TranslationTag = 3,
    NumberTag = 5, // of older tools
    SourceTag = 6,
    ContextTag = 7,
    CommentTag = 8
};

quint32 wordAt(const QByteArray &bytes, int place)
{
    return qFromBigEndian<quint32>(bytes.constData() + place);
}

int shortAt(const QByteArray &bytes, int place)
{
    return qFromBigEndian<quint16>(bytes.constData() + place);
}

struct Sections {
    QByteArray contexts;
    QByteArray hashes;
    QByteArray messages;
    QByteArray dependencies;
};

// Of two of a kind the later one counts; what comes behind an empty one is not read.
bool split(const QByteArray &file, Sections *sections)
{
    constexpr int head = 5; // kind and length
    for (int place = magic.size(); place < file.size() - head;) {
        const auto kind = static_cast<uchar>(file.at(place));
        const quint32 length = wordAt(file, place + 1);
        place += head;
        if (kind == 0 || length == 0) {
            break;
        }
        if (length > quint32(file.size() - place)) {
            return false;
        }
        const QByteArray content = file.mid(place, static_cast<int>(length));
        place += static_cast<int>(length);
        switch (kind) {
        case Contexts:
            sections->contexts = content;
            break;
        case Hashes:
            sections->hashes = content;
            break;
        case Messages:
            sections->messages = content;
            break;
        case Dependencies:
            sections->dependencies = content;
            break;
        default:
            break; // language and rules of numbers, which the toolkit tests itself
        }
    }
    return true;
}

// A table of places, and behind it names with their lengths, each row of them ended by a zero.
bool areContextsSound(const QByteArray &contexts)
{
    if (contexts.isEmpty()) {
        return true;
    }
    const int entries = contexts.size() < 2 ? 0 : shortAt(contexts, 0);
    const int names = 2 + 2 * entries;
    if (entries == 0 || names > contexts.size()) {
        return false;
    }
    for (int entry = 0; entry < entries; ++entry) {
        const int offset = shortAt(contexts, 2 + 2 * entry);
        int place = names + 2 * offset;
        while (offset != 0 && place < contexts.size() && contexts.at(place) != '\0') {
            place += 1 + static_cast<uchar>(contexts.at(place));
        }
        if (offset != 0 && place >= contexts.size()) {
            return false;
        }
    }
    return true;
}

// The message that begins here, up to its end or to a tag that ends the reading.
bool isMessageSound(const QByteArray &messages, int place, int *steps)
{
    static constexpr std::array<uchar, 4> withLength{TranslationTag, SourceTag, ContextTag,
                                                     CommentTag};
    while (place < messages.size() && ++*steps < mostSteps) {
        const auto tag = static_cast<uchar>(messages.at(place++));
        const bool hasLength =
            std::find(withLength.begin(), withLength.end(), tag) != withLength.end();
        if (!hasLength && tag != NumberTag) {
            return true;
        }
        if (messages.size() - place < 4) {
            return false;
        }
        const quint32 length = hasLength ? wordAt(messages, place) : 0;
        if (tag == TranslationTag && length % 2 != 0) {
            return true; // a text without a translation; the reading ends
        }
        place += 4;
        if (length > quint32(messages.size() - place)) {
            return false;
        }
        place += static_cast<int>(length);
    }
    return *steps < mostSteps;
}

bool areMessagesSound(const Sections &sections)
{
    constexpr int entry = 8; // a hash and a place
    int steps = 0;
    for (int i = 0; i + entry <= sections.hashes.size(); i += entry) {
        const quint32 place = wordAt(sections.hashes, i + 4);
        if (place >= quint32(sections.messages.size()) ||
            !isMessageSound(sections.messages, static_cast<int>(place), &steps)) {
            return false;
        }
    }
    return sections.hashes.size() % entry == 0;
}

bool isSound(const QString &path, int depth)
{
    QFile file(path);
    if (depth > deepest || !QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray bytes = file.read(largestFile + 1);
    Sections sections;
    if (bytes.size() > largestFile || !bytes.startsWith(magic) || !split(bytes, &sections) ||
        !areContextsSound(sections.contexts) || !areMessagesSound(sections)) {
        return false;
    }
    QDataStream names(sections.dependencies);
    while (!names.atEnd()) {
        QString name;
        names >> name;
        const QString other = CatalogueFile::find(name, QFileInfo(path).absolutePath());
        if (names.status() != QDataStream::Ok || name.contains(QLatin1Char('/')) ||
            !isSound(other, depth + 1)) {
            return false;
        }
    }
    return true;
}

} // namespace

QString CatalogueFile::find(const QString &name, const QString &folder)
{
    const QDir place(folder);
    QString shorter = name;
    while (!shorter.isEmpty()) {
        for (const QString &ending : {QStringLiteral(".qm"), QString()}) {
            const QFileInfo file(place.absoluteFilePath(shorter + ending));
            if (file.isFile() && file.isReadable()) {
                return file.filePath();
            }
        }
        const int cut =
            std::max(shorter.lastIndexOf(QLatin1Char('_')), shorter.lastIndexOf(QLatin1Char('.')));
        shorter.truncate(std::max(cut, 0));
    }
    return QString();
}

bool CatalogueFile::isSound(const QString &path)
{
    return ::isSound(path, 0);
}
