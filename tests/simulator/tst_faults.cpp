// SPDX-License-Identifier: MIT
#include "simulator/faults.h"
#include "tests/support/testmain.h"

#include <QTemporaryFile>

Q_DECLARE_METATYPE(Fault)

class FaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void happenInTheOrderAdded();
    void areNarrowedByPathAndMethod();
    void ofAConnectionAreTakenOnAcceptOnly();
    void lastForEverWithoutANumber();
    void areCleared();
    void areParsed_data();
    void areParsed();
    void replaceByAFile();
    void refuseWrongWords_data();
    void refuseWrongWords();
    void listEveryKind();
};

namespace
{

const QString path = QStringLiteral("/a");
constexpr auto get = Fault::Method::Get;
constexpr auto put = Fault::Method::Put;

} // namespace

void FaultsTest::happenInTheOrderAdded()
{
    Faults faults;
    faults.add(Fault::answer("Error=1").times(2));
    faults.add(Fault::closeAtEnd().times(1));
    Fault fault;
    QVERIFY(faults.take(get, path, &fault));
    QCOMPARE(fault.kind, Fault::Kind::Answer);
    QCOMPARE(fault.text, QByteArray("Error=1"));
    QVERIFY(faults.take(get, path, &fault));
    QCOMPARE(fault.kind, Fault::Kind::Answer);
    QVERIFY(faults.take(get, path, &fault));
    QCOMPARE(fault.kind, Fault::Kind::CloseAtEnd);
    QVERIFY(!faults.take(get, path, &fault));
    QCOMPARE(faults.count(), 0);
}

void FaultsTest::areNarrowedByPathAndMethod()
{
    Faults faults;
    faults.add(Fault::silent().on(path).onlyFor(put));
    Fault fault;
    QVERIFY(!faults.take(get, path, &fault));
    QVERIFY(!faults.take(put, QStringLiteral("/b"), &fault));
    QVERIFY(faults.take(put, path, &fault));
}

void FaultsTest::ofAConnectionAreTakenOnAcceptOnly()
{
    Faults faults;
    faults.add(Fault::resetOnAccept().times(1));
    Fault fault;
    QVERIFY(!faults.take(get, path, &fault));
    QVERIFY(faults.takeOnAccept(&fault));
    QCOMPARE(fault.kind, Fault::Kind::ResetOnAccept);
    QVERIFY(!faults.takeOnAccept(&fault));
    faults.add(Fault::silent());
    QVERIFY(!faults.takeOnAccept(&fault));
}

void FaultsTest::lastForEverWithoutANumber()
{
    Faults faults;
    faults.add(Fault::silent());
    Fault fault;
    for (int time = 0; time < 100; ++time) {
        QVERIFY(faults.take(get, path, &fault));
    }
    faults.add(Fault::closeAtEnd().times(0));
    QCOMPARE(faults.count(), 1);
}

void FaultsTest::areCleared()
{
    Faults faults;
    faults.add(Fault::silent().on(path));
    faults.add(Fault::silent());
    faults.clear(path);
    QCOMPARE(faults.count(), 1);
    faults.clear();
    QCOMPARE(faults.count(), 0);
}

void FaultsTest::areParsed_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<Fault>("expected");
    const auto row = [](const char *words, const Fault &expected) {
        QTest::newRow(words) << QString::fromLatin1(words) << expected;
    };
    row("close-on-accept times 3", Fault::closeOnAccept().times(3));
    row("reset-on-accept", Fault::resetOnAccept());
    row("silent on /a get", Fault::silent().on(path).onlyFor(get));
    row("close-after-request", Fault::closeAfterRequest());
    row("reset-after-request put", Fault::resetAfterRequest().onlyFor(put));
    row("answer \"Error=no such file\" on /a", Fault::answer("Error=no such file").on(path));
    row("empty-line", Fault::answer(""));
    row("garbage", Fault::garbage());
    row("flood", Fault::flood());
    row("flood 70000", Fault::flood(70000));
    row("flood times 2", Fault::flood().times(2));
    row("size -5", Fault::declaredSize("-5"));
    row("size abc", Fault::declaredSize("abc"));
    row("size-offset -100", Fault::sizeOffset(-100));
    row("close-after 1500 on /a times 2", Fault::closeAfter(1500).on(path).times(2));
    row("reset-after -1", Fault::resetAfter(-1));
    row("close-at-end", Fault::closeAtEnd());
    row("delay 2500", Fault::delay(2500));
    row("pause 1500 600", Fault::pause(1500, 600));
    row("trickle", Fault::trickle());
    row("trickle 16 5", Fault::trickle(16, 5));
    row("trickle 16 on /a", Fault::trickle(16).on(path));
    row("stop-reading", Fault::stopReading());
    row("stop-reading 100", Fault::stopReading(100));
}

void FaultsTest::areParsed()
{
    QFETCH(QString, words);
    QFETCH(Fault, expected);
    Fault fault;
    QString error;
    QVERIFY2(Faults::parse(words, &fault, &error), qPrintable(error));
    QCOMPARE(fault.kind, expected.kind);
    QCOMPARE(fault.method, expected.method);
    QCOMPARE(fault.path, expected.path);
    QCOMPARE(fault.count, expected.count);
    QCOMPARE(fault.bytes, expected.bytes);
    QCOMPARE(fault.msec, expected.msec);
    QCOMPARE(fault.text, expected.text);
}

void FaultsTest::replaceByAFile()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("new content");
    file.close();
    Fault fault;
    QString error;
    QVERIFY(Faults::parse(QStringLiteral("replace 3 ") + file.fileName(), &fault, &error));
    QCOMPARE(fault.kind, Fault::Kind::Replace);
    QCOMPARE(fault.bytes, 3);
    QCOMPARE(fault.text, QByteArray("new content"));
}

void FaultsTest::refuseWrongWords_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *words, const char *named) {
        QTest::newRow(words) << QString::fromLatin1(words) << QString::fromLatin1(named);
    };
    row("", "No kind");
    row("explode", "explode");
    row("close-after", "close-after");
    row("close-after many", "many");
    row("delay -1", "-1");
    row("flood 0", "0");
    row("silent on", "on");
    row("silent times 0", "0");
    row("silent times often", "often");
    row("silent loudly", "loudly");
    row("close-on-accept on /a", "no path");
    row("replace 3 /no/such/file", "/no/such/file");
}

void FaultsTest::refuseWrongWords()
{
    QFETCH(QString, words);
    QFETCH(QString, named);
    Fault fault;
    QString error;
    QVERIFY(!Faults::parse(words, &fault, &error));
    QVERIFY2(error.contains(named), qPrintable(error));
}

void FaultsTest::listEveryKind()
{
    const QStringList kinds = Faults::help();
    for (const Fault &fault :
         {Fault::closeOnAccept(), Fault::resetOnAccept(), Fault::silent(),
          Fault::closeAfterRequest(), Fault::resetAfterRequest(), Fault::answer("x"),
          Fault::flood(), Fault::declaredSize("1"), Fault::sizeOffset(1), Fault::closeAfter(1),
          Fault::resetAfter(1), Fault::closeAtEnd(), Fault::delay(1), Fault::pause(1, 1),
          Fault::trickle(), Fault::replace(1, "x"), Fault::stopReading()}) {
        const QString name = fault.name();
        QVERIFY2(std::any_of(kinds.begin(), kinds.end(),
                             [&name](const QString &kind) {
                                 return kind.section(QLatin1Char(' '), 0, 0) == name;
                             }),
                 qPrintable(name));
    }
}

STALLO_TEST_MAIN(FaultsTest)
#include "tst_faults.moc"
