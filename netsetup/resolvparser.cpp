// SPDX-License-Identifier: MIT
#include "netsetup/resolvparser.h"

namespace
{

const QLatin1String serverWord("nameserver");

// What stands before a name server's address; 0 for any other line.
int lengthOfBeginning(const QString &line)
{
    if (!line.startsWith(serverWord)) {
        return 0;
    }
    int end = serverWord.size();
    while (end < line.size() &&
           (line.at(end) == QLatin1Char(' ') || line.at(end) == QLatin1Char('\t'))) {
        ++end;
    }
    return end > serverWord.size() ? end : 0;
}

} // namespace

ResolvParser::ResolvParser(const QString &fileName)
    : file_(fileName)
{
    int servers = 0;
    int comments = 0;
    const QStringList lines = file_.read();
    for (const QString &line : lines) {
        const int length = lengthOfBeginning(line);
        if (length > 0) {
            values_.insert(serverWord + QString::number(servers++), line.mid(length));
        } else {
            values_.insert(LineFile::commentKey(comments++), line);
        }
    }
}

QStringList ResolvParser::lines() const
{
    QStringList all;
    for (auto entry = values_.cbegin(); entry != values_.cend(); ++entry) {
        all.append(entry.key().contains(serverWord) ? serverWord + QLatin1Char(' ') + entry.value()
                                                    : entry.value());
    }
    return all;
}
