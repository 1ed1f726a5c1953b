// SPDX-License-Identifier: MIT
#include "tests/app/addressdialogcase.h"
#include "tests/support/filelimit.h"
#include "tests/support/modalanswers.h"

#include <QFile>

// Whether what is done to the list is in the settings' file, and what is said when it is not.
class TestAddressDialogStore : public AddressDialogCase
{
    Q_OBJECT

private Q_SLOTS:
    void storesAtOnce_data();
    void storesAtOnce();
    void storesDespiteAbandonedLocks();
    void tellsWhatIsNotStored_data();
    void tellsWhatIsNotStored();

private:
    void act(const QString &action)
    {
        if (action == QLatin1String("add")) {
            type(three);
            click("buttonNew");
        } else if (action == QLatin1String("remove")) {
            click("buttonRemove");
        } else if (action == QLatin1String("apply")) {
            type(three);
            QTest::keyClick(editor(), Qt::Key_Return);
        } else {
            click("buttonOk");
        }
    }
    static QByteArray inFile()
    {
        QFile file(Settings::instance()->fileName());
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const int begin = text.indexOf("\nAddresses=") + 11;
        return text.mid(begin, text.indexOf('\n', begin) - begin);
    }
    void rows()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QStringList>("list");
        QTest::newRow("add") << QStringLiteral("add") << QStringList{one, two, three};
        QTest::newRow("remove") << QStringLiteral("remove") << QStringList{two};
        QTest::newRow("apply") << QStringLiteral("apply") << QStringList{three, two};
        QTest::newRow("accept") << QStringLiteral("accept") << QStringList{one, two};
    }
};

void TestAddressDialogStore::storesAtOnce_data()
{
    rows();
}

void TestAddressDialogStore::storesAtOnce()
{
    QFETCH(QString, action);
    QFETCH(QStringList, list);
    open({one, two});
    act(action);
    QCOMPARE(inFile(), list.join(QStringLiteral(", ")).toLatin1());
}

// The toolkit would wait half a minute for them, and the window with it.
void TestAddressDialogStore::storesDespiteAbandonedLocks()
{
    open({one, two});
    const QString locks[] = {Settings::instance()->fileName() + QStringLiteral(".lock"),
                             Settings::instance()->fileName() + QStringLiteral(".lock.rmlock")};
    for (const QString &lock : locks) {
        QFile file(lock);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    act(QStringLiteral("add"));
    for (const QString &lock : locks) {
        QVERIFY2(!QFile::exists(lock), qPrintable(lock));
    }
    QCOMPARE(inFile(), (QStringList{one, two, three}).join(QStringLiteral(", ")).toLatin1());
}

void TestAddressDialogStore::tellsWhatIsNotStored_data()
{
    rows();
}

void TestAddressDialogStore::tellsWhatIsNotStored()
{
    QFETCH(QString, action);
    QFETCH(QStringList, list);
    open({one, two});
    QString heading;
    QString text;
    ModalAnswers answers;
    answers.expect(ModalAnswers::reading(&heading, &text));
    {
        const FileLimit fullDisk(0);
        act(action);
    }
    QCOMPARE(answers.left(), 0);
    QCOMPARE(heading, QStringLiteral("Error"));
    QCOMPARE(text, QStringLiteral("The address list could not be stored"));
    QCOMPARE(inFile(), (one + QStringLiteral(", ") + two).toLatin1());
    // It counts all the same, and what had to be done is done.
    QCOMPARE(stored(), list);
    QCOMPARE(shown(), list);
    const bool accepted = action == QLatin1String("accept");
    QCOMPARE(dialog_->isVisible(), !accepted);
    QCOMPARE(dialog_->result(), accepted ? one : QString());
    // With room again nothing is said, and it is in the file.
    dialog_->saveSettings();
    QCOMPARE(answers.unexpected(), QStringList());
    QCOMPARE(inFile(), list.join(QStringLiteral(", ")).toLatin1());
}

STALLO_TEST_MAIN(TestAddressDialogStore)
#include "tst_addressdialogstore.moc"
