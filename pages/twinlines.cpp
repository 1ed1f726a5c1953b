// SPDX-License-Identifier: MIT
#include "pages/twinlines.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr std::size_t mostAlone = 32768;

} // namespace

bool TwinLines::isRepeated(int line, const OnLine &record, const QString &host, bool areTwins)
{
    if (line < 0) {
        return false;
    }
    Line &own = lines_[line == 0 ? 0 : 1];
    Line &other = lines_[line == 0 ? 1 : 0];
    if (own.host != host) {
        own = {host, {}};
    }
    if (other.host == host) {
        const auto twin =
            std::find_if(other.alone.begin(), other.alone.end(), [&record](const OnLine &each) {
                return std::memcmp(each.data(), record.data(), OnLine::size) == 0;
            });
        if (twin != other.alone.end()) {
            other.alone.erase(other.alone.begin(), twin + 1);
            return true;
        }
    }
    if (areTwins) {
        own.alone.push_back(record);
    }
    if (own.alone.size() > mostAlone) {
        own.alone.pop_front();
    }
    return false;
}
