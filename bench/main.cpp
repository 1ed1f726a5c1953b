// SPDX-License-Identifier: MIT
#include "records/localtext.h"
#include "records/vasksettings.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

// As the program begins, so that what is measured runs under the same text codec and rules.
int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    LocalText::useCodecOfLocale();
    VaskSettings::init();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
