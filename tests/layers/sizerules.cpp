// SPDX-License-Identifier: MIT
#include "tests/layers/sizerules.h"

namespace
{

bool startsWithWord(const QString &line, const char *word)
{
    return line == QLatin1String(word) || line.startsWith(QLatin1String(word) + QLatin1Char(' '));
}

// Where the declaration begins whose opening brace stands in this line.
int beginOfHead(const QStringList &lines, int brace)
{
    int begin = brace;
    while (begin > 0) {
        const QString &above = lines.at(begin - 1);
        if (above.isEmpty() || above.startsWith(QLatin1Char('}')) ||
            above.startsWith(QLatin1Char('#')) || above.startsWith(QLatin1String("//")) ||
            above.endsWith(QLatin1Char(';'))) {
            break;
        }
        --begin;
    }
    return begin;
}

QStringList tooLongFunctions(const SourceFile &file, const QStringList &lines)
{
    QStringList found;
    for (int brace = 0; brace < lines.size(); ++brace) {
        if (lines.at(brace) != QLatin1String("{")) {
            continue;
        }
        const int begin = beginOfHead(lines, brace);
        if (startsWithWord(lines.at(begin), "namespace")) {
            continue;
        }
        int end = brace + 1;
        while (end < lines.size() && !lines.at(end).startsWith(QLatin1Char('}'))) {
            ++end;
        }
        // A type ends with a semicolon behind its brace.
        const bool isFunction = end < lines.size() && lines.at(end) == QLatin1String("}");
        const int length = end - begin + 1;
        if (isFunction && length > SizeRules::longestFunction) {
            found.append(QStringLiteral("%1:%2: a function of %3 lines")
                             .arg(file.path)
                             .arg(begin + 1)
                             .arg(length));
        }
        brace = end;
    }
    return found;
}

} // namespace

QStringList SizeRules::violations(const QVector<SourceFile> &files)
{
    QStringList found;
    for (const SourceFile &file : files) {
        QStringList lines = file.text.split(QLatin1Char('\n'));
        if (lines.last().isEmpty()) {
            lines.removeLast();
        }
        if (lines.size() > longestFile) {
            found.append(QStringLiteral("%1: %2 lines").arg(file.path).arg(lines.size()));
        }
        found += tooLongFunctions(file, lines);
    }
    return found;
}
