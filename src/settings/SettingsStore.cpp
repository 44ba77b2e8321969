#include "settings/SettingsStore.h"

#include "core/Errors.h"
#include "settings/SettingsText.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>

#include <filesystem>
#include <system_error>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A settings file has a few kilobytes, with a long proxy list some more; what is far beyond that is some other file.
constexpr qint64 sizeLimit = 16 << 20;

// What a copy that is being written is called behind the name of the file; no copy that a person makes is called so.
constexpr QStringView unfinished = u".unfinished-";

// A program that was killed while it saved leaves its unfinished copy behind, password and all. A fresh one may be
// another instance's that is being written.
void RemoveLeftOvers(const QFileInfo& file) {
    constexpr qint64 secondsUntilStale = 60;
    const QDateTime now = QDateTime::currentDateTime();
    const QFileInfoList copies = file.dir().entryInfoList({QString(file.fileName() + unfinished + u'*')}, QDir::Files);
    for (const QFileInfo& copy : copies)
        if (copy.lastModified().secsTo(now) > secondsUntilStale)
            QFile::remove(copy.filePath());
}

// The file itself, where the name is that of a link to it.
QFileInfo Resolved(const QString& fileName) {
    const QFileInfo file(fileName);
    return file.isSymLink() ? QFileInfo(file.symLinkTarget()) : file;
}

} // namespace

SettingsStore::SettingsStore(QString fileName, QString documentsFolder)
    : fileName_(std::move(fileName)), documentsFolder_(std::move(documentsFolder)) {}

Settings SettingsStore::LoadSettings() const {
    QString damage;
    return LoadSettings(damage);
}

Settings SettingsStore::LoadSettings(QString& damage) const {
    damage.clear();
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
    const QString text = QString::fromLocal8Bit(bytes);
    if (const QString reason = SettingsDamage(text); !reason.isEmpty())
        damage = u"%1: %2"_s.arg(shown, reason);
    return ParseSettings(text, documentsFolder_);
}

void SettingsStore::SaveSettings(const Settings& settings) const {
    const QString shown = QDir::toNativeSeparators(fileName_);
    const QFileInfo target = Resolved(fileName_);
    QDir().mkpath(target.absolutePath());
    RemoveLeftOvers(target);
    // Written beside the old file, flushed to the disk, then renamed over it. The copy has a name that tells whose it
    // is, which the class that writes it cannot give it.
    const QString number = QString::number(QRandomGenerator::system()->generate(), 36);
    QSaveFile file(target.filePath() + unfinished + number);
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
    std::error_code failure;
    std::filesystem::rename(QFileInfo(file.fileName()).filesystemFilePath(), target.filesystemFilePath(), failure);
    if (failure) {
        QFile::remove(file.fileName());
        throw SaveError(u"%1: %2"_s.arg(shown, QString::fromLocal8Bit(failure.message())));
    }
}

} // namespace Brindle
