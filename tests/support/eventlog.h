// SPDX-License-Identifier: MIT
#pragma once

#include "net/events.h"

#include <QObject>
#include <QVector>

// A page that only writes down what the workers tell it.
class EventLog : public QObject
{
public:
    struct Passage {
        OnLine record;
        QString fileName;
        QString hostName;
        QString vaskId;
        bool repost;
    };
    struct Pipe {
        int state;
        QString message;
        int channel;
    };
    struct Frame {
        QString hostName;
        QString photo;
        int channel;
        QByteArray content; // of the file at the time of delivery
    };

    QVector<Passage> passages;
    QVector<Pipe> pipes;
    QVector<Frame> frames;

    int reposts() const;
    int connects() const;

protected:
    void customEvent(QEvent *event) override;
};
