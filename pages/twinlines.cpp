// SPDX-License-Identifier: MIT
#include "pages/twinlines.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr std::size_t mostAlone = 32768;

} // namespace

bool TwinLines::isRepeated(int line, const OnLine &record, bool ofOneDevice)
{
    if (!ofOneDevice) {
        alone_ = {};
    }
    if (!ofOneDevice || line < 0) {
        return false;
    }
    std::deque<OnLine> &other = alone_[line == 0 ? 1 : 0];
    const auto twin = std::find_if(other.begin(), other.end(), [&record](const OnLine &each) {
        return std::memcmp(each.data(), record.data(), OnLine::size) == 0;
    });
    if (twin != other.end()) {
        other.erase(other.begin(), twin + 1);
        return true;
    }
    std::deque<OnLine> &own = alone_[line == 0 ? 0 : 1];
    own.push_back(record);
    if (own.size() > mostAlone) {
        own.pop_front();
    }
    return false;
}
