// SPDX-License-Identifier: MIT
#include "tests/docs/document.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>

namespace
{

QStringList captured(const QString &text, const QString &pattern)
{
    static const auto options =
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;
    QStringList all;
    auto matches = QRegularExpression(pattern, options).globalMatch(text);
    while (matches.hasNext()) {
        all.append(matches.next().captured(1));
    }
    return all;
}

QString plain(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("<[^>]*>|&")));
}

// As pages of Markdown name the place of a heading.
QString placeOf(const QString &heading)
{
    QString place = heading.toLower().remove(QRegularExpression(QStringLiteral("^#+ ")));
    place.remove(QRegularExpression(QStringLiteral("[^\\w\\- ]"),
                                    QRegularExpression::UseUnicodePropertiesOption));
    return place.replace(QLatin1Char(' '), QLatin1Char('-'));
}

} // namespace

Document::Document(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        text_ = QString::fromUtf8(file.readAll());
    }
}

QStringList Document::headings() const
{
    return captured(text_, QStringLiteral("^(#+ .*)$"));
}

QStringList Document::pictures() const
{
    return captured(text_, QStringLiteral("!\\[[^\\]]*\\]\\(([^)]*)\\)"));
}

// A heading that is there twice gets a number.
QStringList Document::places() const
{
    QStringList places;
    for (const QString &heading : headings()) {
        const QString place = placeOf(heading);
        QString unique = place;
        for (int number = 1; places.contains(unique); ++number) {
            unique = place + QLatin1Char('-') + QString::number(number);
        }
        places.append(unique);
    }
    return places;
}

QStringList Document::links() const
{
    return captured(text_, QStringLiteral("\\]\\(([^)]*)\\)"));
}

QVector<QStringList> Document::rows(const QString &heading) const
{
    const QString section = text_.section(QStringLiteral("\n## ") + heading + QLatin1Char('\n'), 1)
                                .section(QStringLiteral("\n## "), 0, 0);
    QVector<QStringList> rows;
    for (const QString &line : section.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("|---"))) {
            rows.removeLast(); // the titles
        } else if (line.startsWith(QLatin1String("| "))) {
            QStringList cells = line.split(QLatin1Char('|')).mid(1);
            cells.removeLast();
            std::transform(cells.begin(), cells.end(), cells.begin(),
                           [](const QString &cell) { return cell.trimmed(); });
            rows.append(cells);
        }
    }
    return rows;
}

QStringList Document::firstCells(const QString &heading) const
{
    QStringList cells;
    for (const QStringList &row : rows(heading)) {
        cells.append(row.first());
    }
    return cells;
}

QMultiMap<QString, QString> catalogueTexts(const QString &path, const QStringList &contexts)
{
    QMultiMap<QString, QString> texts;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return texts;
    }
    QXmlStreamReader xml(&file);
    QString context;
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = plain(xml.readElementText());
        } else if (xml.name() == QLatin1String("translation")) {
            const QString translation = plain(xml.readElementText());
            if (contexts.isEmpty() || contexts.contains(context)) {
                texts.insert(source, translation);
            }
        }
    }
    return texts;
}
