// SPDX-License-Identifier: MIT
#pragma once

#include "tests/accessibility/panel.h"
#include "tests/support/testmain.h"

#include <memory>

// Every test with the whole panel in each of its languages. The panel of a language is made once,
// and anew after a test that has failed with it.
class PanelCase : public QObject
{
    Q_OBJECT

protected:
    // A row for each window of the panel.
    static void windows()
    {
        QTest::addColumn<QString>("window");
        for (const QString &window : Panel::windows()) {
            QTest::newRow(qPrintable(window)) << window;
        }
    }

    QString language_;
    std::unique_ptr<Panel> panel_;

protected Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("en") << QStringLiteral("en");
        QTest::newRow("ru") << QStringLiteral("ru");
    }
    void init()
    {
        QFETCH_GLOBAL(const QString, language);
        if (!panel_ || language != language_) {
            panel_.reset();
            language_ = language;
            panel_ = std::make_unique<Panel>(language);
        }
    }
    void cleanup()
    {
        if (QTest::currentTestFailed()) {
            panel_.reset();
        }
    }
};
