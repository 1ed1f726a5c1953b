// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QTest>

#include <memory>

class QTemporaryDir;
class Settings;

// The surroundings of every test program: an application object, the codec of the locale, and a
// home of its own in a temporary folder, so that no test sees or changes the user's settings. The
// language is the locale's: desktops set LANGUAGE, which would go before it.
class TestSurroundings
{
public:
    TestSurroundings(int &argc, char **argv);
    ~TestSurroundings();

    // The settings singleton, as the program makes it, after init(), with the temporary home.
    static Settings *freshSettings();
    // The temporary home's path.
    static QString home();

private:
    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<QApplication> application_;
};

#define STALLO_TEST_MAIN(TestClass)                                                                \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        TestSurroundings surroundings(argc, argv);                                                 \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
