// SPDX-License-Identifier: MIT
// The three records with all of their accessors, in the encodings of the devices that are known.
// The input is the record; what is missing is zero.
#include "fuzz/fuzztarget.h"
#include "records/access.h"
#include "records/accesscsv.h"
#include "records/online.h"
#include "records/passagecsv.h"
#include "records/scan.h"
#include "records/vasksettings.h"

#include <QTextCodec>

#include <algorithm>

namespace
{

template <typename T>
T recordOf(const QByteArray &input)
{
    T record;
    std::fill_n(record.data(), T::size, '\0');
    std::copy_n(input.constData(), std::min(input.size(), T::size), record.data());
    return record;
}

template <typename T>
QByteArray bytesOf(const T &record)
{
    return QByteArray(record.data(), T::size);
}

// Sets what was read, which changes nothing any more at the third time: at the first one, bytes
// that are no characters may become longer ones, and what is cut then may leave a blank at the end,
// which the second one takes away.
template <typename T, typename Rewrite>
void rewriteAgain(T record, Rewrite rewrite)
{
    rewrite(record);
    rewrite(record);
    const QByteArray once = bytesOf(record);
    rewrite(record);
    FuzzTarget::require(bytesOf(record) == once, "a record that is written again stays as it is");
}

template <typename T>
void rewriteTexts(T &record)
{
    record.setNumber(record.number());
    record.setComment(record.comment());
    record.setAccessKey(record.accessKey());
}

template <typename T>
void rewritePassage(T &record)
{
    rewriteTexts(record);
    record.setDateTime(record.dateTime());
    record.setIncoming(record.isIncoming());
    record.setInAccessList(record.isInAccessList());
    record.setAccessGranted(record.isAccessGranted());
}

void tryOnLine(const QByteArray &input)
{
    OnLine record = recordOf<OnLine>(input);
    rewriteAgain(record, [](OnLine &changed) {
        rewritePassage(changed);
        changed.setType(changed.type());
        changed.setFileName(changed.fileName());
    });
    record.translateFromLocal();
    const Scan scan(record);
    FuzzTarget::require(scan.isValid() == record.isValid(),
                        "a passage is valid when its live record is");
    FuzzTarget::require(scan.comment() == record.comment() &&
                            scan.accessKey() == record.accessKey(),
                        "a passage has the texts of its live record");
    VaskSettings::picFileName(record);
}

void tryScan(const QByteArray &input)
{
    Scan record = recordOf<Scan>(input);
    rewriteAgain(record, rewritePassage<Scan>);
    PassageCsv::scan(PassageCsv::fields(record));
    VaskSettings::picFileName(record);
    VaskSettings::readableNumber(record.number());
    VaskSettings::inLatinLetters(record.comment());
    record.translateFromLocal();
}

void tryAccess(const QByteArray &input)
{
    Access record = recordOf<Access>(input);
    rewriteAgain(record, [](Access &changed) {
        rewriteTexts(changed);
        changed.setId(changed.id());
        changed.setDateTimeFrom(changed.dateTimeFrom());
        changed.setDateTimeTill(changed.dateTimeTill());
    });
    AccessCsv::access(AccessCsv::fields(record));
    FuzzTarget::require(record.isValid() == (record.id() != -1), "only the id -1 is none");
    record.translateFromLocal();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static QTextCodec *const codecs[] = {QTextCodec::codecForName("UTF-8"),
                                         QTextCodec::codecForName("windows-1251"),
                                         QTextCodec::codecForName("KOI8-R")};
    const QByteArray input = FuzzTarget::bytes(data, size);
    for (QTextCodec *codec : codecs) {
        QTextCodec::setCodecForLocale(codec);
        tryOnLine(input);
        tryScan(input);
        tryAccess(input);
    }
    return 0;
}
