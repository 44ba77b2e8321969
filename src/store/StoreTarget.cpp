#include "store/StoreTarget.h"

#include "core/Errors.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsAddress(const QString& text) {
    return text.startsWith(u"postgresql://"_s, Qt::CaseInsensitive) ||
           text.startsWith(u"postgres://"_s, Qt::CaseInsensitive);
}

QString WithoutPassword(QString text) {
    static const QRegularExpression password(u"(//[^/@]*?):[^@]*@|([?&]password=)[^&]*"_s);
    return text.replace(password, u"\\1\\2@"_s).replace(u"password=@"_s, u"password=\u2026"_s);
}

} // namespace

StoreTarget StoreTarget::Parse(const QString& text) {
    StoreTarget target;
    if (!IsAddress(text)) {
        if (text.isEmpty())
            throw Failure(u"the store has no name"_s);
        target.FileName = QDir::cleanPath(QFileInfo(text).absoluteFilePath());
        return target;
    }
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        throw Failure(u"%1: no address of a database"_s.arg(WithoutPassword(text)));
    target.Kind = Engine::PostgreSQL;
    target.Host = url.host(QUrl::FullyDecoded);
    target.Port = url.port();
    target.User = url.userName(QUrl::FullyDecoded);
    target.Password = url.password(QUrl::FullyDecoded);
    target.Name = url.path(QUrl::FullyDecoded).mid(1);
    // What libpq takes as an option goes to it unquoted, so only what needs no quotes is let through.
    static const QRegularExpression plain(u"^[A-Za-z0-9_./:@%+-]*$"_s);
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto& [key, value] : items) {
        if (key == u"host")
            target.Host = value;
        else if (key == u"port")
            target.Port = value.toInt();
        else if (key == u"user")
            target.User = value;
        else if (key == u"password")
            target.Password = value;
        else if (key == u"dbname")
            target.Name = value;
        else if (plain.match(key).hasMatch() && plain.match(value).hasMatch())
            target.Options += key + u'=' + value + u';';
        else
            throw Failure(u"%1: the option \u201C%2\u201D cannot be passed on"_s.arg(WithoutPassword(text), key));
    }
    return target;
}

QString StoreTarget::Shown() const {
    if (!IsPostgres())
        return QDir::toNativeSeparators(FileName);
    QString shown = u"postgresql://"_s;
    if (!User.isEmpty())
        shown += User + u'@';
    const bool folder = Host.startsWith(u'/');
    if (!folder)
        shown += Host;
    if (Port > 0)
        shown += u':' + QString::number(Port);
    shown += u'/' + Name;
    if (folder)
        shown += u"?host="_s + Host;
    return shown;
}

QString StoreTarget::PendingBase(const QString& folder) const {
    return IsPostgres() ? SparePendingBase(folder) : QString(FileName + u".pending"_s);
}

QString StoreTarget::SparePendingBase(const QString& folder) const {
    const QString name = IsPostgres() ? Shown() : QFileInfo(FileName).absoluteFilePath();
    const QByteArray digest = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QDir(folder).filePath(u"store-"_s + QString::fromLatin1(digest.first(12)) + u".pending"_s);
}

QString DefaultStoreFile(const QString& settingsFolder) {
    return QDir(settingsFolder).filePath(u"leads.db"_s);
}

} // namespace Brindle
