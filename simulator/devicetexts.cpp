// SPDX-License-Identifier: MIT
#include "simulator/devicetexts.h"

#include <QTextCodec>

namespace
{

// The letters of plates, which look the same in both alphabets, in the same order.
const QString latinLetters = QStringLiteral("ABEKMHOPCTYX");
const QString cyrillicLetters = QStringLiteral("АВЕКМНОРСТУХ");

struct Family {
    const char *latin;
    const char *cyrillic;
};

constexpr Family familyNames[] = {
    {"Abel", "Абель"},      {"Brandt", "Брандт"}, {"Corso", "Корсо"},   {"Dietz", "Дитц"},
    {"Ekman", "Экман"},     {"Ferrer", "Феррер"}, {"Gruber", "Грубер"}, {"Halas", "Халас"},
    {"Ivanova", "Иванова"}, {"Jensen", "Йенсен"}, {"Kovac", "Ковач"},   {"Lindqvist", "Линдквист"},
    {"Moreau", "Моро"},     {"Novak", "Новак"},   {"Orlova", "Орлова"}, {"Petrov", "Петров"},
    {"Quint", "Квинт"},     {"Rossi", "Росси"}};
static_assert(std::size(familyNames) == DeviceTexts::families);

const QTextCodec &codecOf(const QByteArray &codePage)
{
    const QTextCodec *codec = codePage.isEmpty() ? nullptr : QTextCodec::codecForName(codePage);
    return codec != nullptr ? *codec : *QTextCodec::codecForLocale();
}

} // namespace

bool DeviceTexts::isCodePage(const QByteArray &name)
{
    const QTextCodec *codec = QTextCodec::codecForName(name);
    if (codec == nullptr) {
        return false;
    }
    QString ascii;
    for (char character = 1; character > 0 && character < 127; ++character) {
        ascii += QLatin1Char(character);
    }
    return codec->fromUnicode(ascii) == ascii.toLatin1();
}

QByteArray DeviceTexts::encoded(const QString &text) const
{
    return codecOf(codePage).fromUnicode(text);
}

QString DeviceTexts::decoded(const QByteArray &bytes) const
{
    return codecOf(codePage).toUnicode(bytes);
}

QByteArray DeviceTexts::fitting(QString text, int limit) const
{
    const int end = text.indexOf(QChar(QChar::Null));
    text.truncate(end < 0 ? limit : qMin(end, limit)); // no character takes less than a byte
    QByteArray bytes = encoded(text);
    while (bytes.size() > limit) {
        text.chop(text.size() > 1 && text.at(text.size() - 1).isLowSurrogate() ? 2 : 1);
        bytes = encoded(text);
    }
    return bytes;
}

QString DeviceTexts::plate(QString latin) const
{
    if (cyrillic) {
        for (QChar &character : latin) {
            const int place = latinLetters.indexOf(character);
            character = place >= 0 ? cyrillicLetters.at(place) : character;
        }
    }
    return latin;
}

QString DeviceTexts::resident(quint32 family, quint32 flat) const
{
    const Family &name = familyNames[family % families];
    return cyrillic ? QStringLiteral("%1, кв. %2").arg(QString::fromUtf8(name.cyrillic)).arg(flat)
                    : QStringLiteral("%1, flat %2").arg(QLatin1String(name.latin)).arg(flat);
}

QString DeviceTexts::passage(int row) const
{
    return (cyrillic ? QStringLiteral("Проезд %1") : QStringLiteral("Passage %1")).arg(row);
}

QString DeviceTexts::key(quint32 number) const
{
    return (cyrillic ? QStringLiteral("Ключ %1") : QStringLiteral("%1"))
        .arg(number, 8, 10, QLatin1Char('0'));
}
