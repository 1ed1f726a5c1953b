// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/mixer.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <vector>

class PanelProcess;
class SoakDevice;

// What the operator does in a soak run: an archive download a minute, entries of the access list
// changed, made and deleted every few seconds, the list fetched and sent, rows of the live table
// looked at. The same seed gives the same actions in the same order. Each is checked when the panel
// says that it has ended: against the device's files, and the list against what it was before and
// what was typed, byte for byte.
class OperatorScript
{
public:
    struct Results {
        int archives = 0;
        int edits = 0;
        int fetches = 0;
        int sends = 0;
        int looks = 0;
        int cutShort = 0; // by a kill
        int wrong = 0;
        QStringList problems;

        QString text() const;
    };

    OperatorScript(PanelProcess *panel, const std::vector<SoakDevice *> &devices, quint32 seed);

    // The second device is chosen first, then everything takes its turn.
    void panelStarted();
    // Begins the next action when none is under way and one is due.
    void tick();
    // The list must be as it was before the action that was under way, or as after it.
    void panelKilled();

    const Results &results() const { return results_; }
    // The action that is under way, as a word.
    QString doing() const;

private:
    enum class Action { None, Connect, Archive, Fetch, Send, Edit, Add, Delete, Look };

    void begin();
    void beginEdit();
    void check();
    void checkArchive();
    void checkList();
    void checkSent();
    bool isListAsExpected(const QByteArray &list) const;
    void wrong(const QString &what);
    SoakDevice &device() const { return *devices_[device_]; }
    QByteArray list() const;

    PanelProcess *panel_;
    std::vector<SoakDevice *> devices_;
    Mixer mixer_;
    Action action_ = Action::None;
    bool starts_ = false;
    bool fetched_ = false; // once in the run
    std::size_t device_ = 0;
    QByteArray list_;     // as known to be stored
    QByteArray expected_; // after the action; of an added entry without its id and times
    QElapsedTimer sinceArchive_;
    QElapsedTimer sinceSend_;
    QElapsedTimer sinceAny_;
    Results results_;
};
