// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

// The right to write the local camera frame file, which all video clients of the process share. One
// token exists at a time. It is taken when a frame has been downloaded, travels inside the
// VideoEvent, and is given back by the destruction of its last copy, that is, after the file has
// been read for the page or when the event dies undelivered. Waiting clients are served in the
// order in which they came.
class VideoFrameToken
{
public:
    // No token.
    VideoFrameToken() = default;

    // Blocks until the token is free; null when cancelled() turns true first (asked every 50 ms).
    // Worker threads only.
    static VideoFrameToken take(const std::function<bool()> &cancelled);

    bool isNull() const { return !held_; }
    void giveBack() { held_.reset(); }

private:
    std::shared_ptr<void> held_;
};
