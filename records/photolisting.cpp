// SPDX-License-Identifier: MIT
#include "records/photolisting.h"

#include "records/record.h"

#include <QFile>

#include <algorithm>
#include <cstring>

namespace
{

constexpr int namesAtOnce = 256;
constexpr char ending[] = ".jpeg";
// Of a time in a picture name, "yyyy-MM-dd_hh-mm-ss".
constexpr char form[] = "0000-00-00_00-00-00";
constexpr std::size_t formSize = sizeof form - 1;

bool isDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

int numberAt(const char *digits, int count)
{
    int number = 0;
    for (int place = 0; place < count; ++place) {
        number = number * 10 + (digits[place] - '0');
    }
    return number;
}

} // namespace

void PhotoListing::begin(const QStringList &folders)
{
    folders_ = folders;
    open_.reset();
    seconds_.clear();
    marks_.reset();
    reading_ = true;
}

bool PhotoListing::readMore()
{
    if (!reading_) {
        return false;
    }
    if (!open_ && !openNext()) {
        finish();
        return false;
    }
    for (int names = 0; names < namesAtOnce; ++names) {
        const dirent *entry = readdir(open_.get());
        if (entry == nullptr) {
            open_.reset();
            break;
        }
        quint32 second = 0;
        if (secondOf(entry->d_name, &second)) {
            seconds_.push_back(second);
        }
    }
    return true;
}

bool PhotoListing::openNext()
{
    while (!open_ && !folders_.isEmpty()) {
        open_.reset(opendir(QFile::encodeName(folders_.takeFirst()).constData()));
    }
    return open_ != nullptr;
}

void PhotoListing::finish()
{
    reading_ = false;
    std::sort(seconds_.begin(), seconds_.end());
    for (const quint32 second : seconds_) {
        marks_.set(mark(second));
    }
}

bool PhotoListing::has(quint32 second) const
{
    return marks_.test(mark(second)) &&
           std::binary_search(seconds_.begin(), seconds_.end(), second);
}

bool PhotoListing::hasBetween(quint32 first, quint32 last) const
{
    const auto found = std::lower_bound(seconds_.begin(), seconds_.end(), first);
    return found != seconds_.end() && *found <= last;
}

void PhotoListing::remove(quint32 second)
{
    const auto found = std::lower_bound(seconds_.begin(), seconds_.end(), second);
    if (found != seconds_.end() && *found == second) {
        seconds_.erase(found);
    }
}

bool PhotoListing::secondOf(const char *name, quint32 *second)
{
    const std::size_t length = std::strlen(name);
    constexpr std::size_t endingSize = sizeof ending - 1;
    if (length < endingSize || std::strcmp(name + length - endingSize, ending) != 0) {
        return false;
    }
    if (*name == '_') { // of a passage without a time
        *second = noTime;
        return true;
    }
    if (length <= formSize || name[formSize] != '_') {
        return false;
    }
    for (std::size_t place = 0; place < formSize; ++place) {
        if (form[place] == '0' ? !isDigit(name[place]) : name[place] != form[place]) {
            return false;
        }
    }
    const QDate date(numberAt(name, 4), numberAt(name + 5, 2), numberAt(name + 8, 2));
    if (!date.isValid()) {
        return false;
    }
    constexpr qint64 secondsADay = 86400;
    const int ofDay =
        numberAt(name + 11, 2) * 3600 + numberAt(name + 14, 2) * 60 + numberAt(name + 17, 2);
    const qint64 whole = QDate(1970, 1, 1).daysTo(date) * secondsADay + ofDay;
    *second = static_cast<quint32>(whole);
    return whole >= 0 && whole < noTime;
}
