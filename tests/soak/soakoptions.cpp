// SPDX-License-Identifier: MIT
#include "tests/soak/soakoptions.h"

#include <QCommandLineParser>

namespace
{

template <typename Number>
bool take(const QCommandLineParser &parser, const char *option, Number least, Number most,
          Number *value)
{
    const QString name = QLatin1String(option);
    if (!parser.isSet(name)) {
        return true;
    }
    bool good = false;
    const double number = parser.value(name).toDouble(&good);
    *value = static_cast<Number>(number);
    return good && number >= static_cast<double>(least) && number <= static_cast<double>(most);
}

} // namespace

bool SoakOptions::parse(const QStringList &arguments, QString *text)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Runs the panel against two simulated devices for MINUTES, kills it now and then, and "
        "compares what it stored with what the devices say they sent. Ends with 0 when nothing was "
        "lost, doubled or changed, 1 when something was, 2 when it could not run."));
    const struct {
        const char *name;
        const char *value;
        const char *help;
    } options[] = {
        {"seed", "N", "Another number gives other passages, kills and edits (1)."},
        {"rate", "NUMBER", "Records per second and device (20)."},
        {"kill-every", "SECONDS", "Between kills on average, 0 for none (120)."},
        {"grace", "MSEC", "What was sent so long before a kill must be stored (5000)."},
        {"archive", "N", "Passages in each device's archive (300)."},
        {"video", "MSEC", "Between camera frames (200)."},
        {"late-photos", "SHARE", "Share of photos that come 5 s later (0.05)."},
        {"folder", "FOLDER", "Where everything is written and stays (a temporary folder)."},
        {"tamper", "HOW",
         "Spoil the first table: drop, double, change or photo. The run must fail."},
    };
    for (const auto &option : options) {
        parser.addOption(QCommandLineOption(QLatin1String(option.name), QLatin1String(option.help),
                                            QLatin1String(option.value)));
    }
    const QCommandLineOption help = parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("MINUTES"), QStringLiteral("How long (20)."));
    if (!parser.parse(arguments)) {
        *text = parser.errorText();
        return false;
    }
    if (parser.isSet(help)) {
        *text = parser.helpText();
        return false;
    }
    const QStringList rest = parser.positionalArguments();
    bool good = rest.size() <= 1;
    if (rest.size() == 1) {
        minutes = rest.first().toInt(&good);
        good = good && minutes > 0;
    }
    good = good && take<quint32>(parser, "seed", 0, 1000000, &seed) &&
           take<double>(parser, "rate", 0.1, 1000, &rate) &&
           take<int>(parser, "kill-every", 0, 100000, &killEvery) &&
           take<int>(parser, "grace", 0, 600000, &grace) &&
           take<int>(parser, "archive", 0, 100000, &archive) &&
           take<int>(parser, "video", 20, 100000, &videoMsec) &&
           take<double>(parser, "late-photos", 0, 1, &latePhotos);
    folder = parser.value(QStringLiteral("folder"));
    tamper = parser.value(QStringLiteral("tamper"));
    const QStringList ways{QString(), QStringLiteral("drop"), QStringLiteral("double"),
                           QStringLiteral("change"), QStringLiteral("photo")};
    if (!good || !ways.contains(tamper)) {
        *text = QStringLiteral("Not a usable value; try --help.");
        return false;
    }
    return true;
}
