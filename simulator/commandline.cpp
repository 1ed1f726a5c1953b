// SPDX-License-Identifier: MIT
#include "simulator/commandline.h"

#include "simulator/console.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QHostAddress>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace
{

// Remembered by a device that may run for weeks.
constexpr int sentLimit = 10000;

struct Option {
    const char *name;
    const char *value; // null for a switch
    const char *help;
};

constexpr Option options[] = {
    {"address", "ADDRESS", "Address to listen on (127.0.0.1)."},
    {"online-port", "PORT", "Port of live records and commands, 0 for any (3333)."},
    {"file-port", "PORT", "Port of the file service, 0 for any (5058)."},
    {"id", "TEXT", "The device's identifier (VASK-0001)."},
    {"rate", "NUMBER", "Records per second (0)."},
    {"count", "N", "Stop the rate after N records; by default never."},
    {"burst", "N", "Send N records at once to the first that connects."},
    {"unreadable", "SHARE", "Share of numbers with unreadable characters, 0 to 1 (0)."},
    {"unknown", "SHARE", "Share of numbers that are not in the access list (0.25)."},
    {"manual", "SHARE", "Share of openings by the operator (0)."},
    {"card", "SHARE", "Share of openings by card (0)."},
    {"late-photos", "SHARE", "Share of records whose photo comes later (0)."},
    {"late-ms", "MSEC", "By how much (5000)."},
    {"archive", "N", "Passages in the archive (0)."},
    {"archive-step", "SECONDS", "Time between them on average (120)."},
    {"archive-unordered", nullptr, "The archive is not in the order of time."},
    {"residents", "N", "Entries of the access list, up to 1000 (40)."},
    {"seed", "N", "Another number gives other plates, passages and pictures (1)."},
    {"code-page", "NAME", "Code page of its texts, such as CP1251 or KOI8-R (the locale's)."},
    {"cyrillic", nullptr, "Plates, comments and keys have cyrillic letters."},
    {"root", "FOLDER", "Serve the files below FOLDER too, and write uploads there."},
    {"journal", "FILE", "Append everything that happens to FILE."},
    {"sent", "FILE", "Append every record that was sent to FILE."},
    {"fault", "WORDS", "Do something wrong, as the command of the same name; repeatable."},
    {"exit-with-stdin", nullptr, "End when standard input ends."},
};

QString description()
{
    return QStringLiteral(
               "A plate recognition device for trying and testing the panel. Prints \"ready "
               "ADDRESS ONLINEPORT FILEPORT\" when it listens, and takes commands on standard "
               "input, answering each by a line:\n%1\n\nFaults, each with [on PATH] [times N] "
               "[get|put] behind it:\n%2")
        .arg(Console::help(), Faults::help().join(QStringLiteral(" | ")));
}

} // namespace

bool CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    for (const Option &option : options) {
        QCommandLineOption added(QLatin1String(option.name), QLatin1String(option.help));
        if (option.value != nullptr) {
            added.setValueName(QLatin1String(option.value));
        }
        parser.addOption(added);
    }
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    if (!parser.parse(arguments)) {
        return fail(parser.errorText());
    }
    if (parser.isSet(help) || parser.isSet(QStringLiteral("help-all"))) {
        notice_ = parser.helpText();
        return true;
    }
    if (parser.isSet(version)) {
        notice_ = QCoreApplication::applicationName() + QLatin1Char(' ') +
                  QCoreApplication::applicationVersion() + QLatin1Char('\n');
        return true;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return fail(QStringLiteral("Unexpected argument \"%1\".")
                        .arg(parser.positionalArguments().first()));
    }
    return takeNumbers(parser) && takeShares(parser) && takeTexts(parser);
}

template <typename Number>
bool CommandLine::take(const QCommandLineParser &parser, const char *option, double least,
                       double most, Number *value)
{
    const QString name = QLatin1String(option);
    if (!parser.isSet(name)) {
        return true;
    }
    bool good = false;
    const double number = parser.value(name).toDouble(&good);
    const bool whole = !std::is_integral<Number>::value || number == std::floor(number);
    if (!good || !whole || !(number >= least && number <= most)) {
        return fail(QStringLiteral("\"%1\" is not a usable value for --%2: %3 from %4 to %5 is.")
                        .arg(parser.value(name), name,
                             std::is_integral<Number>::value ? QStringLiteral("a whole number")
                                                             : QStringLiteral("a number"))
                        .arg(least, 0, 'g', 12)
                        .arg(most, 0, 'g', 12));
    }
    *value = static_cast<Number>(number);
    return true;
}

bool CommandLine::takeNumbers(const QCommandLineParser &parser)
{
    config_.onLinePort = 3333;
    config_.filePort = 5058;
    config_.sentLimit = sentLimit;
    FeedConfig &feed = config_.feed;
    return take(parser, "online-port", 0, 65535, &config_.onLinePort) &&
           take(parser, "file-port", 0, 65535, &config_.filePort) &&
           take(parser, "rate", 0, 10000, &feed.rate) &&
           take(parser, "count", 0, 1e9, &feed.count) &&
           take(parser, "burst", 0, 1e5, &config_.burstOnConnect) &&
           take(parser, "late-ms", 0, 1e9, &feed.lateMsec) &&
           take(parser, "archive", 0, 1e7, &config_.archive) &&
           take(parser, "archive-step", 1, 1e6, &config_.archiveStep) &&
           take(parser, "residents", 0, 1000, &config_.residents) &&
           take(parser, "seed", 0, std::numeric_limits<quint32>::max(), &feed.seed);
}

bool CommandLine::takeShares(const QCommandLineParser &parser)
{
    FeedConfig &feed = config_.feed;
    if (!take(parser, "unreadable", 0, 1, &feed.unreadable) ||
        !take(parser, "unknown", 0, 1, &feed.unknown) ||
        !take(parser, "manual", 0, 1, &feed.manual) || !take(parser, "card", 0, 1, &feed.card) ||
        !take(parser, "late-photos", 0, 1, &feed.latePhotos)) {
        return false;
    }
    const QString unknown = QStringLiteral("unknown");
    if (!parser.isSet(unknown)) {
        feed.unknown = std::min(feed.unknown, 1 - feed.unreadable);
    }
    if (feed.unreadable + feed.unknown > 1) {
        return fail(QStringLiteral("--unreadable and --unknown are more than 1 together."));
    }
    if (feed.manual + feed.card > 1) {
        return fail(QStringLiteral("--manual and --card are more than 1 together."));
    }
    return true;
}

bool CommandLine::takeTexts(const QCommandLineParser &parser)
{
    const auto text = [&parser](const char *option, QString *value) {
        if (parser.isSet(QLatin1String(option))) {
            *value = parser.value(QLatin1String(option));
        }
    };
    text("address", &config_.address);
    text("id", &config_.deviceId);
    text("root", &root_);
    text("journal", &journal_);
    text("sent", &config_.sentFile);
    config_.feed.texts.codePage = parser.value(QStringLiteral("code-page")).toLatin1();
    config_.feed.texts.cyrillic = parser.isSet(QStringLiteral("cyrillic"));
    config_.archiveUnordered = parser.isSet(QStringLiteral("archive-unordered"));
    exitsWithStdin_ = parser.isSet(QStringLiteral("exit-with-stdin"));
    if (QHostAddress(config_.address).isNull()) {
        return fail(QStringLiteral("\"%1\" is not an address.").arg(config_.address));
    }
    if (parser.isSet(QStringLiteral("code-page")) &&
        !DeviceTexts::isCodePage(config_.feed.texts.codePage)) {
        return fail(QStringLiteral("\"%1\" is not a usable code page.")
                        .arg(parser.value(QStringLiteral("code-page"))));
    }
    if (parser.isSet(QStringLiteral("root")) && !QFileInfo(root_).isDir()) {
        return fail(QStringLiteral("\"%1\" is not a folder.").arg(root_));
    }
    for (const QString &words : parser.values(QStringLiteral("fault"))) {
        Fault fault;
        QString error;
        if (!Faults::parse(words, &fault, &error)) {
            return fail(QStringLiteral("--fault: %1.").arg(error));
        }
        faults_.append(fault);
    }
    return true;
}

bool CommandLine::fail(const QString &text)
{
    error_ = text;
    return false;
}
