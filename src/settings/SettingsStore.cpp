#include "settings/SettingsStore.h"

#include "core/Errors.h"
#include "settings/SettingsText.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A settings file has a few kilobytes, with a long proxy list some more; what is far beyond that is some other file.
constexpr qint64 sizeLimit = 16 << 20;

// A program that was killed while it saved leaves its unfinished copy behind, password and all. A fresh one may be
// another instance's that is being written.
void RemoveLeftOvers(const QFileInfo& file) {
    constexpr qint64 secondsUntilStale = 60;
    const QDateTime now = QDateTime::currentDateTime();
    const QFileInfoList copies = file.dir().entryInfoList({QString(file.fileName() + u".??????")}, QDir::Files);
    for (const QFileInfo& copy : copies)
        if (copy.lastModified().secsTo(now) > secondsUntilStale)
            QFile::remove(copy.filePath());
}

} // namespace

SettingsStore::SettingsStore(QString fileName, QString documentsFolder)
    : fileName_(std::move(fileName)), documentsFolder_(std::move(documentsFolder)) {}

Settings SettingsStore::LoadSettings() const {
    const QString shown = QDir::toNativeSeparators(fileName_);
    if (!QFileInfo::exists(fileName_))
        return DefaultSettings(documentsFolder_);
    QFile file(fileName_);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"%1: %2"_s.arg(shown, file.errorString()));
    const QByteArray bytes = file.read(sizeLimit + 1);
    if (file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(shown, file.errorString()));
    if (bytes.size() > sizeLimit)
        throw Failure(u"%1: too large for a settings file"_s.arg(shown));
    return ParseSettings(QString::fromLocal8Bit(bytes), documentsFolder_);
}

void SettingsStore::SaveSettings(const Settings& settings) const {
    const QString shown = QDir::toNativeSeparators(fileName_);
    QDir().mkpath(QFileInfo(fileName_).absolutePath());
    RemoveLeftOvers(QFileInfo(fileName_));
    // Written beside the old file, flushed to the disk, then renamed over it.
    QSaveFile file(fileName_);
    file.setDirectWriteFallback(false);
    const QByteArray bytes = SettingsText(settings);
    // Unbuffered, because a failure to write the rest of a buffer goes unnoticed when the file is committed.
    bool saved = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (saved) {
        // It holds a password. Some file systems know no owners, and the settings are saved there all the same.
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        saved = file.write(bytes) == bytes.size() && file.commit();
    }
    if (!saved)
        throw SaveError(u"%1: %2"_s.arg(shown, file.errorString()));
}

} // namespace Brindle
