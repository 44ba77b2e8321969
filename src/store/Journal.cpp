#include "store/Journal.h"

#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QtEndian>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// In front of each event: its length, and a check sum, because a disk that fills up or a machine that stops can leave
// half an event at the end.
constexpr qint64 headerLength = 6;
constexpr quint32 longestEvent = 64 << 20;

QByteArray Encoded(const StoreEvent& event) {
    QByteArray bytes(headerLength, '\0');
    QDataStream stream(&bytes, QIODevice::WriteOnly | QIODevice::Append);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << static_cast<quint8>(event.index());
    if (const auto* harvest = std::get_if<HarvestInfo>(&event)) {
        stream << harvest->Uid << harvest->Session << static_cast<qint32>(harvest->Origin) << harvest->Site
               << harvest->Start << harvest->What << harvest->Place << harvest->By << harvest->Begun
               << harvest->LinkTellsApart;
    } else if (const auto* found = std::get_if<FoundLead>(&event)) {
        stream << found->HarvestUid << found->Seq << found->Found;
        for (int column = 0; column < FieldCount; ++column)
            stream << found->Lead.At(column);
        stream << found->Session;
    } else if (const auto* end = std::get_if<HarvestEnd>(&event)) {
        stream << end->HarvestUid << end->Ended << static_cast<qint32>(end->Ending) << end->Pages << end->Session;
    }
    const QByteArrayView payload = QByteArrayView(bytes).sliced(headerLength);
    qToLittleEndian(static_cast<quint32>(payload.size()), bytes.data());
    qToLittleEndian(qChecksum(payload), bytes.data() + 4);
    return bytes;
}

bool Decode(const QByteArray& payload, StoreEvent& event) {
    QDataStream stream(payload);
    stream.setVersion(QDataStream::Qt_6_0);
    quint8 kind = 0;
    stream >> kind;
    if (kind == 0) {
        HarvestInfo harvest;
        qint32 origin = 0;
        stream >> harvest.Uid >> harvest.Session >> origin >> harvest.Site >> harvest.Start >> harvest.What >>
            harvest.Place >> harvest.By >> harvest.Begun >> harvest.LinkTellsApart;
        harvest.Origin = static_cast<HarvestOrigin>(origin);
        event = std::move(harvest);
    } else if (kind == 1) {
        FoundLead found;
        stream >> found.HarvestUid >> found.Seq >> found.Found;
        for (int column = 0; column < FieldCount; ++column)
            stream >> found.Lead.At(column);
        stream >> found.Session;
        event = std::move(found);
    } else if (kind == 2) {
        HarvestEnd end;
        qint32 ending = 0;
        stream >> end.HarvestUid >> end.Ended >> ending >> end.Pages >> end.Session;
        end.Ending = static_cast<HarvestEnding>(ending);
        event = std::move(end);
    } else {
        return false;
    }
    return stream.status() == QDataStream::Ok;
}

QString LockName(const QString& fileName) {
    return fileName + u".lock"_s;
}

// A session's lock is stale when its process is gone, however old or young it is.
bool TryLock(QLockFile& lock) {
    lock.setStaleLockTime(0);
    return lock.tryLock(0);
}

QFileInfoList FilesOf(const QString& base) {
    const QFileInfo info(base);
    return info.dir().entryInfoList({QString(info.fileName() + u"-*"_s)}, QDir::Files, QDir::Time | QDir::Reversed);
}

} // namespace

Journal::Journal(const QString& base, const QString& session) : fileName_(base + u'-' + session), file_(fileName_) {
    QDir().mkpath(QFileInfo(base).absolutePath());
    lock_ = std::make_unique<QLockFile>(LockName(fileName_));
    TryLock(*lock_);
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Unbuffered | QIODevice::Truncate)) {
        error_ = u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName_), file_.errorString());
        return;
    }
    // It holds what the settings' folder holds: the user's own data.
    file_.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

Journal::~Journal() {
    if (file_.isOpen()) {
        file_.close();
        if (end_ == 0)
            QFile::remove(fileName_);
    }
    lock_->unlock();
}

qint64 Journal::Append(const StoreEvent& event) {
    if (!error_.isEmpty())
        return -1;
    const QByteArray bytes = Encoded(event);
    if (file_.write(bytes) != bytes.size()) {
        error_ = u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName_), file_.errorString());
        file_.resize(end_);
        file_.seek(end_);
        return -1;
    }
    end_ += bytes.size();
    return end_;
}

void Journal::Clear() {
    if (!file_.isOpen())
        return;
    file_.resize(0);
    file_.seek(0);
    end_ = 0;
    error_.clear(); // what filled the disk may be gone
}

std::vector<StoreEvent> Journal::Read(const QString& fileName, qint64& place, size_t most) {
    std::vector<StoreEvent> events;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(place))
        return events;
    while (events.size() < most) {
        const QByteArray header = file.read(headerLength);
        if (header.size() < headerLength)
            break;
        const auto length = qFromLittleEndian<quint32>(header.constData());
        if (length > longestEvent)
            break;
        const QByteArray payload = file.read(length);
        StoreEvent event;
        if (payload.size() < static_cast<qsizetype>(length) ||
            qChecksum(payload) != qFromLittleEndian<quint16>(header.constData() + 4) || !Decode(payload, event))
            break;
        events.push_back(std::move(event));
        place += headerLength + length;
    }
    return events;
}

QStringList Journal::Orphans(const QString& base) {
    QStringList orphans;
    const QFileInfoList files = FilesOf(base);
    for (const QFileInfo& file : files)
        if (!file.fileName().endsWith(u".lock"_s) && OrphanedJournal(file.filePath()).Held())
            orphans += file.filePath();
    return orphans;
}

QStringList Journal::LiveSessions(const QString& base) {
    QStringList sessions;
    const QString prefix = QFileInfo(base).fileName() + u'-';
    const QFileInfoList files = FilesOf(base);
    for (const QFileInfo& file : files)
        if (!file.fileName().endsWith(u".lock"_s) && !OrphanedJournal(file.filePath()).Held())
            sessions += file.fileName().sliced(prefix.size());
    return sessions;
}

OrphanedJournal::OrphanedJournal(const QString& fileName)
    : fileName_(fileName), lock_(LockName(fileName)), held_(TryLock(lock_)) {}

void OrphanedJournal::Remove() {
    QFile::remove(fileName_);
}

} // namespace Brindle
