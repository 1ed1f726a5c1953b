// SPDX-License-Identifier: MIT
#include "tests/soak/devicejournal.h"

namespace
{

constexpr int recordSize = 192;
constexpr int passageSize = 116;

struct Field {
    int from;
    int to;
    int size;
    bool isText;
};

// As docs/protocol.md and docs/files.md have them.
constexpr Field fields[] = {{88, 0, 4, false},  {8, 4, 10, true},   {4, 17, 1, false},
                            {92, 18, 1, false}, {93, 19, 1, false}, {94, 20, 64, true},
                            {158, 84, 32, true}};

QByteArray fieldOf(const QByteArray &record, const Field &field)
{
    QByteArray bytes = record.mid(field.from, field.size);
    if (field.isText) {
        const QByteArray text(bytes.left(field.size - 1).constData());
        bytes = text.leftJustified(field.size, '\0');
    }
    return bytes;
}

} // namespace

DeviceJournal::DeviceJournal(const QString &file)
    : file_(file)
{
}

QByteArray DeviceJournal::passageOf(const QByteArray &record)
{
    if (record.size() != recordSize) {
        return QByteArray();
    }
    QByteArray passage(passageSize, '\0');
    for (const Field &field : fields) {
        passage.replace(field.to, field.size, fieldOf(record, field));
    }
    return passage;
}

bool DeviceJournal::readOn(QVector<SentPassage> *sent, QString *error)
{
    if (!file_.isOpen() && !file_.open(QIODevice::ReadOnly)) {
        *error = file_.fileName() + QStringLiteral(": ") + file_.errorString();
        return false;
    }
    for (;;) {
        const qint64 start = file_.pos();
        const QByteArray line = file_.readLine();
        if (!line.endsWith('\n')) {
            file_.seek(start);
            return true;
        }
        const QList<QByteArray> words = line.trimmed().split(' ');
        if (words.value(1) != "record-sent") {
            continue;
        }
        bool isNumber = false;
        SentPassage passage;
        passage.msec = words.first().toLongLong(&isNumber);
        const QByteArray &data = words.last();
        passage.passage = passageOf(QByteArray::fromHex(data.mid(2)));
        if (!isNumber || !data.startsWith("0x") || passage.passage.isEmpty()) {
            *error = QStringLiteral("not a line of a journal: ") + QString::fromLatin1(line);
            return false;
        }
        sent->append(passage);
    }
}
