// SPDX-License-Identifier: MIT
#pragma once

#include "pages/photodecoder.h"

#include <QSemaphore>

#include <memory>

// Keeps the process's photo decoder busy, as a costly picture does, until it is opened.
class PhotoGate
{
public:
    explicit PhotoGate(std::shared_ptr<PhotoDecoder> decoder = PhotoDecoder::shared())
        : decoder_(std::move(decoder))
    {
        PhotoDecoder::Request request;
        request.untilRead = keeper();
        decoder_->request(this, std::move(request), [](const DecodedPhoto &) {});
        entered_.acquire();
    }
    ~PhotoGate()
    {
        open();
        decoder_->drop(this);
    }

    void open()
    {
        if (!opened_) {
            opened_ = true;
            leave_.release();
        }
    }

private:
    // Its end, which is in the decoder's thread, waits.
    std::shared_ptr<const void> keeper()
    {
        return std::shared_ptr<const void>(this, [this](const void *) {
            entered_.release();
            leave_.acquire();
        });
    }

    std::shared_ptr<PhotoDecoder> decoder_;
    QSemaphore entered_;
    QSemaphore leave_;
    bool opened_ = false;
};
