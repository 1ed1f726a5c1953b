// SPDX-License-Identifier: MIT
#include "tests/layers/layerrules.h"

#include <QRegularExpression>
#include <QSet>

namespace
{

QString roomOf(const QString &path)
{
    return path.left(path.lastIndexOf(QLatin1Char('.')));
}

QString withoutComment(const QString &line)
{
    return line.section(QLatin1Char('#'), 0, 0).trimmed();
}

struct Include {
    QString path;
    bool isQuoted;
};

QVector<Include> includesOf(const SourceFile &file)
{
    static const QRegularExpression inSource(
        QStringLiteral(R"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"])"),
        QRegularExpression::MultilineOption);
    static const QRegularExpression inForm(QStringLiteral(R"(<header()[^>]*>([^<]+)</header>)"));
    const bool isForm = file.path.endsWith(QLatin1String(".ui"));
    QVector<Include> includes;
    auto matches = (isForm ? inForm : inSource).globalMatch(file.text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        includes.append({match.captured(2).trimmed(), match.captured(1) != QLatin1String("<")});
    }
    return includes;
}

} // namespace

LayerRules::LayerRules(const QString &floors)
{
    const QStringList lines = floors.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString entry = withoutComment(line);
        if (entry.isEmpty()) {
            continue;
        }
        const QStringList words = entry.simplified().split(QLatin1Char(' '));
        bool isNumber = false;
        const int floor = words.last().toInt(&isNumber);
        if (words.size() != 2 || !isNumber || !words.first().contains(QLatin1Char('/'))) {
            mistakes_.append(QStringLiteral("not a room and its floor: %1").arg(entry));
        } else if (floors_.contains(words.first())) {
            mistakes_.append(QStringLiteral("%1 is listed twice").arg(words.first()));
        } else {
            floors_.insert(words.first(), floor);
        }
    }
}

QStringList LayerRules::folders() const
{
    QSet<QString> folders;
    for (auto room = floors_.cbegin(); room != floors_.cend(); ++room) {
        folders.insert(room.key().section(QLatin1Char('/'), 0, 0));
    }
    QStringList sorted(folders.cbegin(), folders.cend());
    sorted.sort();
    return sorted;
}

QStringList LayerRules::violations(const QVector<SourceFile> &files) const
{
    QStringList found = mistakes_;
    for (const SourceFile &file : files) {
        found += ofFile(file);
    }
    return found;
}

QStringList LayerRules::ofFile(const SourceFile &file) const
{
    const QString room = roomOf(file.path);
    if (!floors_.contains(room)) {
        return {QStringLiteral("%1: the room has no floor").arg(file.path)};
    }
    QStringList found;
    const QStringList ownFolders = folders();
    const QVector<Include> includes = includesOf(file);
    for (const Include &include : includes) {
        const QString folder = include.path.section(QLatin1Char('/'), 0, 0);
        QString problem;
        if (include.isQuoted) {
            problem = ofInclude(room, include.path);
        } else if (include.path.contains(QLatin1Char('/')) && ownFolders.contains(folder)) {
            problem = QStringLiteral("is ours and belongs in quotes");
        }
        if (!problem.isEmpty()) {
            found.append(QStringLiteral("%1: \"%2\" %3").arg(file.path, include.path, problem));
        }
    }
    return found;
}

QString LayerRules::ofInclude(const QString &room, const QString &included) const
{
    const QString name = room.section(QLatin1Char('/'), -1);
    if (included.endsWith(QLatin1String(".moc"))) {
        return QString();
    }
    if (included.startsWith(QLatin1String("ui_"))) {
        return included == QStringLiteral("ui_%1.h").arg(name)
                   ? QString()
                   : QStringLiteral("is the form of another class");
    }
    const QString folder = included.section(QLatin1Char('/'), 0, 0);
    if (!included.contains(QLatin1Char('/')) || !folders().contains(folder)) {
        return QStringLiteral("is not included from the root");
    }
    const QString other = roomOf(included);
    if (other == room) {
        return QString();
    }
    if (!floors_.contains(other)) {
        return QStringLiteral("has no floor");
    }
    return floors_.value(other) < floors_.value(room)
               ? QString()
               : QStringLiteral("stands on floor %1, not below %2")
                     .arg(floors_.value(other))
                     .arg(floors_.value(room));
}
