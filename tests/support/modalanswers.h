// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <deque>
#include <functional>

class QFileDialog;

// The operator before modal windows, while the code under test waits inside them: each answer is
// given once, to the next modal window that appears. A window that nobody expected is noted and
// closed, so that no test hangs.
//
// GUI thread. A test ends with QCOMPARE(answers.left(), 0) and a look at unexpected().
class ModalAnswers : public QObject
{
public:
    using Answer = std::function<void(QWidget *)>;

    ModalAnswers();

    void expect(const Answer &answer);
    int left() const { return static_cast<int>(answers_.size()); }
    // The titles of windows that came without an answer.
    QStringList unexpected() const { return unexpected_; }
    // Windows that were answered so far.
    int given() const { return given_; }

    // Presses the named button of a window with the mouse.
    static Answer pressing(const char *button);
    // Chooses name and filter in a file dialog and presses its save button.
    static Answer savingAs(const QString &name, const QString &filterStart = QString());
    // Closes a file dialog by its cancel button.
    static Answer cancelling();
    // Closes an error dialog or a message box after having stored its title and text.
    static Answer reading(QString *title, QString *text);

private:
    void scheduleLook();
    void look();

    std::deque<Answer> answers_;
    QPointer<QWidget> answered_;
    QStringList unexpected_;
    int given_ = 0;
};
