// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/mixer.h"
#include "tests/soak/livetable.h"
#include "tests/soak/operatorscript.h"
#include "tests/soak/panelprocess.h"
#include "tests/soak/processprobe.h"
#include "tests/soak/soakoptions.h"

#include <QElapsedTimer>

#include <memory>
#include <vector>

class SoakDevice;

// A soak run: two devices, the panel, its operator, and somebody who kills it. What was stored is
// compared at every end of the panel; what a kill may cost is defined by TableComparison. One line
// is printed per minute and per life of the panel, and the sums at the end.
//
// One thread, without an event loop; the devices have theirs.
class Soak
{
public:
    // Everything is written below the folder, which must exist.
    Soak(const SoakOptions &options, const QString &folder);
    ~Soak();

    // False when it could not run, with the reason in error.
    bool run(QString *error);
    bool isGood() const;

private:
    bool startDevices(QString *error);
    bool startPanel(QString *error);
    void live();
    void drain();
    bool compareLife(bool killed, QString *error);
    void lookForRecovered(const LiveTable &before);
    void look();
    void minute();
    void summary() const;
    qint64 nextKill();

    SoakOptions options_;
    QString folder_;
    Mixer killTimes_;
    std::vector<std::unique_ptr<SoakDevice>> owned_;
    std::vector<SoakDevice *> devices_;
    std::unique_ptr<PanelProcess> panel_;
    std::unique_ptr<OperatorScript> operator_;
    QElapsedTimer clock_;
    qint64 lifeStarted_ = 0;
    qint64 killAt_ = -1;
    qint64 lookedAt_ = 0;
    int minutes_ = 0;
    int lives_ = 0;
    int killsDone_ = 0;
    int endedByItself_ = 0; // compared as after a kill; the run is not good
    int recovered_ = 0;
    int notRecovered_ = 0;
    int endMsec_ = -1;
    struct Wait {
        PanelProcess::Ping ping;
        QString doing; // when the longest one came

        void add(const Wait &other);
        QString text() const;
    };
    Wait longestWait_;
    Wait longestWaitOfMinute_;
    int boxes_ = 0;
    bool tampered_ = false;
    ProcessProbe ofMinute_;
    ProcessProbe ofLife_;
    ComparisonCounts counts_;
    LiveTable::Photos photos_;
    // Of the last life.
    std::vector<QVector<SentPassage>> sent_;
    std::vector<qint64> end_;
    int photosStored_ = 0;
};
