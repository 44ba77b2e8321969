#include "SettingsStore.h"

#include "Errors.h"
#include "SettingsText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Brindle {

namespace {

// A settings file has a few kilobytes, with a long proxy list some more; what is far beyond that is some other file.
constexpr qint64 sizeLimit = 16 << 20;

} // namespace

SettingsStore::SettingsStore(QString fileName, QString documentsFolder)
    : fileName_(std::move(fileName)), documentsFolder_(std::move(documentsFolder)) {}

Settings SettingsStore::LoadSettings() const {
    const QString shown = QDir::toNativeSeparators(fileName_);
    if (!QFileInfo::exists(fileName_))
        return DefaultSettings(documentsFolder_);
    QFile file(fileName_);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("%1: %2").arg(shown, file.errorString()));
    const QByteArray bytes = file.read(sizeLimit + 1);
    if (file.error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("%1: %2").arg(shown, file.errorString()));
    if (bytes.size() > sizeLimit)
        throw Failure(QStringLiteral("%1: too large for a settings file").arg(shown));
    return ParseSettings(QString::fromLocal8Bit(bytes), documentsFolder_);
}

void SettingsStore::SaveSettings(const Settings& settings) const {
    const QString shown = QDir::toNativeSeparators(fileName_);
    QDir().mkpath(QFileInfo(fileName_).absolutePath());
    // Written beside the old file, flushed to the disk, then renamed over it.
    QSaveFile file(fileName_);
    file.setDirectWriteFallback(false);
    const QByteArray bytes = SettingsText(settings);
    const bool saved = file.open(QIODevice::WriteOnly) &&
                       file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                       file.write(bytes) == bytes.size() && file.commit();
    if (!saved)
        throw SaveError(QStringLiteral("%1: %2").arg(shown, file.errorString()));
}

} // namespace Brindle
