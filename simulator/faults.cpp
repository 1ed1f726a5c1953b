// SPDX-License-Identifier: MIT
#include "simulator/faults.h"

#include <QFile>
#include <QMutexLocker>
#include <QProcess>

#include <algorithm>

namespace
{

Fault faultOf(Fault::Kind kind, qint64 bytes = 0, int msec = 0,
              const QByteArray &text = QByteArray())
{
    Fault fault;
    fault.kind = kind;
    fault.bytes = bytes;
    fault.msec = msec;
    fault.text = text;
    return fault;
}

// The values of a kind as words: b bytes (negative allowed), n a positive number, m milliseconds,
// t a text, f the name of a local file whose content is the text. Those in capitals may be left
// out.
struct Words {
    const char *word;
    Fault::Kind kind;
    const char *values;
    const char *help;
};

constexpr Words allWords[] = {
    {"close-on-accept", Fault::Kind::CloseOnAccept, "", ""},
    {"reset-on-accept", Fault::Kind::ResetOnAccept, "", ""},
    {"silent", Fault::Kind::Silent, "", ""},
    {"close-after-request", Fault::Kind::CloseAfterRequest, "", ""},
    {"reset-after-request", Fault::Kind::ResetAfterRequest, "", ""},
    {"answer", Fault::Kind::Answer, "t", "LINE"},
    {"empty-line", Fault::Kind::Answer, "", ""},
    {"garbage", Fault::Kind::Answer, "", ""},
    {"flood", Fault::Kind::Flood, "N", "[BYTES]"},
    {"size", Fault::Kind::Size, "t", "TEXT"},
    {"size-offset", Fault::Kind::SizeOffset, "b", "BYTES"},
    {"close-after", Fault::Kind::CloseAfter, "b", "BYTES"},
    {"reset-after", Fault::Kind::ResetAfter, "b", "BYTES"},
    {"close-at-end", Fault::Kind::CloseAtEnd, "", ""},
    {"delay", Fault::Kind::Delay, "m", "MSEC"},
    {"pause", Fault::Kind::Pause, "bm", "BYTES MSEC"},
    {"trickle", Fault::Kind::Trickle, "NM", "[BYTES [MSEC]]"},
    {"replace", Fault::Kind::Replace, "bf", "BYTES FILE"},
    {"stop-reading", Fault::Kind::StopReading, "B", "[BYTES]"},
};

bool isNarrowing(const QString &word)
{
    return word == QLatin1String("on") || word == QLatin1String("times") ||
           word == QLatin1String("get") || word == QLatin1String("put");
}

// The fault that a word names, with the values it has when none are given.
Fault initial(const Words &words)
{
    switch (words.kind) {
    case Fault::Kind::Answer:
        return qstrcmp(words.word, "garbage") == 0 ? Fault::garbage() : Fault::answer(QByteArray());
    case Fault::Kind::Flood:
        return Fault::flood();
    case Fault::Kind::Trickle:
        return Fault::trickle();
    default:
        return faultOf(words.kind);
    }
}

bool readFile(const QString &name, Fault *fault, QString *error)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = name + QStringLiteral(": ") + file.errorString();
        return false;
    }
    fault->text = file.readAll();
    return true;
}

bool takeValue(char form, const QString &word, Fault *fault, QString *error)
{
    bool good = true;
    switch (QChar::fromLatin1(form).toLower().toLatin1()) {
    case 't':
        fault->text = word.toLocal8Bit();
        break;
    case 'f':
        return readFile(word, fault, error);
    case 'm':
        fault->msec = word.toInt(&good);
        good = good && fault->msec >= 0;
        break;
    case 'n':
        fault->bytes = word.toLongLong(&good);
        good = good && fault->bytes > 0;
        break;
    default:
        fault->bytes = word.toLongLong(&good);
        break;
    }
    if (!good) {
        *error = QStringLiteral("Not a usable number: \"%1\"").arg(word);
    }
    return good;
}

// Takes the values of the kind off the front of the words.
bool takeValues(const Words &kind, QStringList *words, Fault *fault, QString *error)
{
    for (const char *form = kind.values; *form != '\0'; ++form) {
        const bool optional = *form < 'a';
        if (words->isEmpty() || (optional && isNarrowing(words->first()))) {
            if (optional) {
                return true;
            }
            *error = QStringLiteral("\"%1\" needs %2")
                         .arg(QLatin1String(kind.word), QLatin1String(kind.help));
            return false;
        }
        if (!takeValue(*form, words->takeFirst(), fault, error)) {
            return false;
        }
    }
    return true;
}

bool takeNarrowing(QStringList *words, Fault *fault, QString *error)
{
    while (!words->isEmpty()) {
        const QString word = words->takeFirst();
        if (word == QLatin1String("get")) {
            fault->method = Fault::Method::Get;
        } else if (word == QLatin1String("put")) {
            fault->method = Fault::Method::Put;
        } else if (!isNarrowing(word)) {
            *error = QStringLiteral("Unknown word \"%1\"").arg(word);
            return false;
        } else if (words->isEmpty()) {
            *error = QStringLiteral("\"%1\" needs a value").arg(word);
            return false;
        } else if (word == QLatin1String("on")) {
            fault->path = words->takeFirst();
        } else {
            bool good = false;
            fault->count = words->first().toInt(&good);
            if (!good || fault->count < 1) {
                *error = QStringLiteral("Not a usable number: \"%1\"").arg(words->first());
                return false;
            }
            words->removeFirst();
        }
    }
    if (fault->isOnAccept() && (!fault->path.isEmpty() || fault->method != Fault::Method::Any)) {
        *error = QStringLiteral("A new connection has no path and no method yet");
        return false;
    }
    return true;
}

} // namespace

Fault Fault::closeOnAccept()
{
    return faultOf(Kind::CloseOnAccept);
}
Fault Fault::resetOnAccept()
{
    return faultOf(Kind::ResetOnAccept);
}
Fault Fault::silent()
{
    return faultOf(Kind::Silent);
}
Fault Fault::closeAfterRequest()
{
    return faultOf(Kind::CloseAfterRequest);
}
Fault Fault::resetAfterRequest()
{
    return faultOf(Kind::ResetAfterRequest);
}
Fault Fault::answer(const QByteArray &line)
{
    return faultOf(Kind::Answer, 0, 0, line);
}

Fault Fault::garbage()
{
    // Every byte but the line ends, twice over.
    QByteArray bytes;
    for (int i = 0; i < 512; ++i) {
        const char byte = static_cast<char>(i * 37 % 256);
        if (byte != '\r' && byte != '\n') {
            bytes += byte;
        }
    }
    return answer(bytes);
}

Fault Fault::flood(qint64 bytes)
{
    return faultOf(Kind::Flood, bytes);
}
Fault Fault::declaredSize(const QByteArray &text)
{
    return faultOf(Kind::Size, 0, 0, text);
}
Fault Fault::sizeOffset(qint64 offset)
{
    return faultOf(Kind::SizeOffset, offset);
}
Fault Fault::closeAfter(qint64 bytes)
{
    return faultOf(Kind::CloseAfter, bytes);
}
Fault Fault::resetAfter(qint64 bytes)
{
    return faultOf(Kind::ResetAfter, bytes);
}
Fault Fault::closeAtEnd()
{
    return faultOf(Kind::CloseAtEnd);
}
Fault Fault::delay(int msec)
{
    return faultOf(Kind::Delay, 0, msec);
}
Fault Fault::pause(qint64 afterBytes, int msec)
{
    return faultOf(Kind::Pause, afterBytes, msec);
}
Fault Fault::trickle(int bytes, int msec)
{
    return faultOf(Kind::Trickle, bytes, msec);
}
Fault Fault::replace(qint64 afterBytes, const QByteArray &content)
{
    return faultOf(Kind::Replace, afterBytes, 0, content);
}
Fault Fault::stopReading(qint64 afterBytes)
{
    return faultOf(Kind::StopReading, afterBytes);
}

Fault Fault::on(const QString &remotePath) const
{
    Fault fault = *this;
    fault.path = remotePath;
    return fault;
}

Fault Fault::times(int requests) const
{
    Fault fault = *this;
    fault.count = requests;
    return fault;
}

Fault Fault::onlyFor(Method requestMethod) const
{
    Fault fault = *this;
    fault.method = requestMethod;
    return fault;
}

bool Fault::isOnAccept() const
{
    return kind == Kind::CloseOnAccept || kind == Kind::ResetOnAccept;
}

QString Fault::name() const
{
    const auto *words = std::find_if(std::begin(allWords), std::end(allWords),
                                     [this](const Words &entry) { return entry.kind == kind; });
    return QLatin1String(words->word);
}

void Faults::add(const Fault &fault)
{
    const QMutexLocker lock(&mutex_);
    if (fault.count != 0) {
        faults_.push_back(fault);
    }
}

void Faults::clear()
{
    const QMutexLocker lock(&mutex_);
    faults_.clear();
}

void Faults::clear(const QString &path)
{
    const QMutexLocker lock(&mutex_);
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(),
                                 [&path](const Fault &fault) { return fault.path == path; }),
                  faults_.end());
}

int Faults::count() const
{
    const QMutexLocker lock(&mutex_);
    return static_cast<int>(faults_.size());
}

bool Faults::takeOnAccept(Fault *fault)
{
    return takeFirst([](const Fault &candidate) { return candidate.isOnAccept(); }, fault);
}

bool Faults::take(Fault::Method method, const QString &path, Fault *fault)
{
    return takeFirst(
        [method, &path](const Fault &candidate) {
            return !candidate.isOnAccept() &&
                   (candidate.path.isEmpty() || candidate.path == path) &&
                   (candidate.method == Fault::Method::Any || candidate.method == method);
        },
        fault);
}

bool Faults::takeFirst(const std::function<bool(const Fault &)> &fits, Fault *fault)
{
    const QMutexLocker lock(&mutex_);
    const auto found = std::find_if(faults_.begin(), faults_.end(), fits);
    if (found == faults_.end()) {
        return false;
    }
    *fault = *found;
    if (found->count > 0 && --found->count == 0) {
        faults_.erase(found);
    }
    return true;
}

bool Faults::parse(const QString &words, Fault *fault, QString *error)
{
    QStringList rest = QProcess::splitCommand(words);
    if (rest.isEmpty()) {
        *error = QStringLiteral("No kind of fault given");
        return false;
    }
    const QString kind = rest.takeFirst();
    for (const Words &entry : allWords) {
        if (kind == QLatin1String(entry.word)) {
            *fault = initial(entry);
            return takeValues(entry, &rest, fault, error) && takeNarrowing(&rest, fault, error);
        }
    }
    *error = QStringLiteral("Unknown fault \"%1\"").arg(kind);
    return false;
}

QStringList Faults::help()
{
    QStringList result;
    for (const Words &entry : allWords) {
        result += QStringLiteral("%1 %2")
                      .arg(QLatin1String(entry.word), QLatin1String(entry.help))
                      .trimmed();
    }
    return result;
}
