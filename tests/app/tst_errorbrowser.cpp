// SPDX-License-Identifier: MIT
#include "app/errorbrowser.h"

#include "style/brelstyle.h"
#include "style/metrics.h"
#include "tests/support/modalanswers.h"
#include "tests/support/testmain.h"

#include <QPushButton>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

#include <functional>

namespace
{

// What stands in the dialog while it is open; the dialog is then closed by its button.
struct Seen {
    QString title;
    QString text;
    QStringList lines;
    bool bold = false;
    bool modal = false;
    QWidget *parent = nullptr;
    int result = -1;
};

Seen look(const std::function<void()> &open)
{
    Seen seen;
    QTimer::singleShot(0, [&seen] {
        auto *dialog = qobject_cast<ErrorBrowser *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        QObject::connect(dialog, &QDialog::finished, [&seen](int code) { seen.result = code; });
        const auto *browser = dialog->findChild<QTextBrowser *>();
        seen.title = dialog->windowTitle();
        seen.text = browser->toPlainText();
        seen.modal = dialog->isModal();
        seen.parent = dialog->parentWidget();
        for (QTextBlock block = browser->document()->begin(); block.isValid();
             block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                seen.bold = seen.bold || it.fragment().charFormat().font().bold();
            }
        }
        seen.lines = seen.text.split(QLatin1Char('\n'));
        QTest::mouseClick(dialog->findChild<QPushButton *>(), Qt::LeftButton);
    });
    open();
    return seen;
}

} // namespace

class TestErrorBrowser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void texts_data();
    void texts();
    void threeLines();
    void returnsOnlyWhenClosed();
    void keysClose_data();
    void keysClose();
    void faceAndNames();
    void linksAreNotFollowed();
    void tellsWhatAJobReturned_data();
    void tellsWhatAJobReturned();
    void saysNothingOfASuccess_data();
    void saysNothingOfASuccess();
};

void TestErrorBrowser::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestErrorBrowser::texts_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("bold");
    const auto row = [](const char *name, const char *given, const char *shown, bool bold) {
        QTest::newRow(name) << QString::fromUtf8(given) << QString::fromUtf8(shown) << bold;
    };
    row("plain", "Connection refused", "Connection refused", false);
    row("plain lines", "one\ntwo", "one\ntwo", false);
    row("less than", "1 < 2 and a<b", "1 < 2 and a<b", false);
    row("not a tag", "<192.168.0.1> is silent", "<192.168.0.1> is silent", false);
    row("ampersand", "A & B", "A & B", false);
    row("blanks kept", "a    b", "a    b", false);
    row("tags", "<b>Error</b> here", "Error here", true);
    row("tags and lines", "<b>one</b>\ntwo\nthree", "one\ntwo\nthree", true);
    row("tags later", "one\n<b>two</b>\nthree", "one\ntwo\nthree", true);
    row("carriage returns", "<b>one</b>\r\ntwo", "one\ntwo", true);
    row("entities with tags", "<b>1 &lt; 2</b>", "1 < 2", true);
    row("empty", "", "", false);
}

void TestErrorBrowser::texts()
{
    QFETCH(const QString, given);
    QFETCH(const QString, shown);
    QFETCH(const bool, bold);
    const Seen seen = look([&] { ErrorBrowser::error(QStringLiteral("Error"), given, nullptr); });
    QCOMPARE(seen.title, QStringLiteral("Error"));
    QCOMPARE(seen.text, shown);
    QCOMPARE(seen.bold, bold);
}

void TestErrorBrowser::threeLines()
{
    const QStringList lines{QStringLiteral("first"), QStringLiteral("second <x"),
                            QStringLiteral("third")};
    QCOMPARE(look([&] { ErrorBrowser::error(QStringLiteral("Error"), lines, nullptr); }).lines,
             lines);
    const QStringList tags{QStringLiteral("first"), QStringLiteral("<i>second</i>"),
                           QStringLiteral("third")};
    QCOMPARE(
        look([&] { ErrorBrowser::error(QStringLiteral("Error"), tags, nullptr); }).lines,
        QStringList({QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third")}));
}

void TestErrorBrowser::returnsOnlyWhenClosed()
{
    QWidget page;
    const Seen seen =
        look([&] { ErrorBrowser::error(QStringLiteral("Error"), QStringLiteral("text"), &page); });
    QVERIFY(seen.modal);
    QCOMPARE(seen.parent, &page);
    QCOMPARE(seen.result, static_cast<int>(QDialog::Accepted));
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    // It lived only during the call.
    QVERIFY(page.findChildren<ErrorBrowser *>().isEmpty());
}

void TestErrorBrowser::keysClose_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("escape") << Qt::Key_Escape;
    QTest::newRow("space") << Qt::Key_Space;
}

void TestErrorBrowser::keysClose()
{
    QFETCH(const Qt::Key, key);
    ErrorBrowser dialog(QStringLiteral("Error"), QStringLiteral("text"), nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(dialog.focusWidget(), key);
    QVERIFY(!dialog.isVisible());
}

void TestErrorBrowser::faceAndNames()
{
    ErrorBrowser dialog(QStringLiteral("Error"), QStringLiteral("text"), nullptr);
    dialog.show();
    QCOMPARE(dialog.size(), QSize(512, 384));
    const auto *browser = dialog.findChild<QTextBrowser *>();
    QVERIFY(browser->isReadOnly());
    QVERIFY(!browser->accessibleName().isEmpty());
    const auto *ok = dialog.findChild<QPushButton *>();
    QCOMPARE(ok->text(), QStringLiteral("OK"));
    QVERIFY(ok->width() >= Metrics::touchSize && ok->height() >= Metrics::touchSize);
    QVERIFY(browser->geometry().bottom() < ok->geometry().top());
    QVERIFY(qAbs(ok->geometry().center().x() - dialog.rect().center().x()) <= 1);
}

void TestErrorBrowser::linksAreNotFollowed()
{
    ErrorBrowser dialog(QStringLiteral("Error"),
                        QStringLiteral("<a href=\"#gone\">link</a><p>text</p>"), nullptr);
    auto *browser = dialog.findChild<QTextBrowser *>();
    QVERIFY(!browser->openLinks());
    QVERIFY(!browser->openExternalLinks());
}

void TestErrorBrowser::tellsWhatAJobReturned_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *result, const char *shown) {
        QTest::newRow(QByteArray(result).simplified().constData())
            << QString::fromLatin1(result) << QString::fromLatin1(shown);
    };
    row("Connection timeout", "Connection timeout");
    row("Error=Can't open file", "Can't open file");
    row("Error=Error=twice", "Error=twice");
    row("error=small", "error=small");
    row(" Error=behind a blank", " Error=behind a blank");
    row("Error", "Error");
    row("Error = spaced", "Error = spaced");
    row("first\nError=second", "first\nError=second");
    row("Error=1 < 2", "1 < 2");
    row("Error=<b>bold</b>", "bold");
}

void TestErrorBrowser::tellsWhatAJobReturned()
{
    QFETCH(const QString, result);
    QFETCH(const QString, shown);
    QWidget page;
    const Seen seen = look([&] { ErrorBrowser::jobError(result, &page); });
    QCOMPARE(seen.title, QStringLiteral("Error"));
    QCOMPARE(seen.text, shown);
    QCOMPARE(seen.parent, &page);
    QVERIFY(seen.modal);
}

void TestErrorBrowser::saysNothingOfASuccess_data()
{
    QTest::addColumn<QString>("result");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("the prefix alone") << QStringLiteral("Error=");
}

void TestErrorBrowser::saysNothingOfASuccess()
{
    QFETCH(const QString, result);
    ModalAnswers answers; // closes what appears
    ErrorBrowser::jobError(result, nullptr);
    QCOMPARE(answers.unexpected(), QStringList());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

STALLO_TEST_MAIN(TestErrorBrowser)
#include "tst_errorbrowser.moc"
