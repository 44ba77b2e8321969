#include "settings/OptionsFile.h"

#include "core/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <array>
#include <sstream>
#include <toml++/toml.h>
#include <variant>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 sizeLimit = 1 << 20;

using Member = std::variant<bool MoreOptions::*, QString MoreOptions::*, int MoreOptions::*>;

struct Row {
    const char* Table;
    const char* Key;
    Member Where;
    int Least = 0; // of a number
    int Most = 0;

    QString Name() const { return QString::fromLatin1(Table) + u'.' + QString::fromLatin1(Key); }
};

const std::array<Row, 7> rows{{
    {"store", "keep", &MoreOptions::StoreKeep},
    {"store", "target", &MoreOptions::StoreTarget},
    {"export", "workbook_at_end", &MoreOptions::WorkbookAtEnd},
    {"export", "sheet_csv_at_end", &MoreOptions::SheetCsvAtEnd},
    {"mail", "name_server", &MoreOptions::MailNameServer},
    {"work", "lease_seconds", &MoreOptions::WorkLeaseSeconds, 2, 86'400},
    {"work", "page_milliseconds", &MoreOptions::WorkPageMilliseconds, 0, 3'600'000},
}};

QString Shown(const QString& fileName) {
    return QDir::toNativeSeparators(fileName);
}

// The file's text; nothing when there is none. Throws `Failure`.
QByteArray ReadAll(const QString& fileName) {
    if (!QFileInfo::exists(fileName))
        return {};
    QFile file(fileName);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.read(sizeLimit + 1);
    if (file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(Shown(fileName), file.errorString()));
    if (bytes.size() > sizeLimit)
        throw Failure(u"%1: too large for a file of options"_s.arg(Shown(fileName)));
    return bytes;
}

// Throws `Failure` for what is no TOML.
toml::table ParseToml(const QByteArray& bytes, const QString& fileName) {
    try {
        return toml::parse(std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())));
    } catch (const toml::parse_error& error) {
        const std::string_view reason = error.description();
        throw Failure(u"%1: line %2: %3"_s.arg(Shown(fileName))
                          .arg(error.source().begin.line)
                          .arg(QString::fromUtf8(reason.data(), static_cast<qsizetype>(reason.size()))));
    }
}

// False when the value is of another kind.
bool Take(MoreOptions& options, const Row& row, const toml::node& node) {
    if (const auto* flag = std::get_if<bool MoreOptions::*>(&row.Where)) {
        if (!node.is_boolean())
            return false;
        options.** flag = node.as_boolean()->get();
        return true;
    }
    if (const auto* number = std::get_if<int MoreOptions::*>(&row.Where)) {
        const auto value = node.value_exact<int64_t>();
        if (!value || *value < row.Least || *value > row.Most)
            return false;
        options.** number = static_cast<int>(*value);
        return true;
    }
    if (!node.is_string())
        return false;
    options.*std::get<QString MoreOptions::*>(row.Where) = QString::fromStdString(node.as_string()->get());
    return true;
}

void Put(toml::table& table, const MoreOptions& options, const Row& row) {
    toml::node* const old = table.get(row.Table);
    if (!old || !old->is_table())
        table.insert_or_assign(row.Table, toml::table());
    toml::table& group = *table.get(row.Table)->as_table();
    if (const auto* flag = std::get_if<bool MoreOptions::*>(&row.Where))
        group.insert_or_assign(row.Key, options.**flag);
    else if (const auto* number = std::get_if<int MoreOptions::*>(&row.Where))
        group.insert_or_assign(row.Key, options.**number);
    else
        group.insert_or_assign(row.Key, (options.*std::get<QString MoreOptions::*>(row.Where)).toStdString());
}

} // namespace

OptionsFile::OptionsFile(QString fileName) : fileName_(std::move(fileName)) {}

MoreOptions OptionsFile::Load(QStringList& problems) const {
    MoreOptions options;
    toml::table table;
    try {
        table = ParseToml(ReadAll(fileName_), fileName_);
    } catch (const Failure& failure) {
        problems += failure.Message();
        return options;
    }
    for (const Row& row : rows) {
        const toml::node* const group = table.get(row.Table);
        if (!group)
            continue;
        const toml::node* const node = group->is_table() ? group->as_table()->get(row.Key) : group;
        if (node && !Take(options, row, *node))
            problems += u"%1: line %2: %3 is not of its kind; the default holds"_s.arg(Shown(fileName_))
                            .arg(node->source().begin.line)
                            .arg(row.Name());
    }
    return options;
}

void OptionsFile::Save(const MoreOptions& options) const {
    toml::table table;
    try {
        table = ParseToml(ReadAll(fileName_), fileName_);
    } catch (const Failure&) {
        const QString aside = fileName_ + u".damaged";
        QFile::remove(aside);
        QFile::copy(fileName_, aside);
    }
    for (const Row& row : rows)
        Put(table, options, row);
    std::ostringstream text;
    text << table << '\n';
    const QByteArray bytes = QByteArray::fromStdString(text.str());
    QDir().mkpath(QFileInfo(fileName_).absolutePath());
    QSaveFile file(fileName_);
    file.setDirectWriteFallback(false);
    bool saved = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (saved) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        saved = file.write(bytes) == bytes.size() && file.commit();
    }
    if (!saved)
        throw SaveError(u"%1: %2"_s.arg(Shown(fileName_), file.errorString()));
}

QStringList MoreOptionKeys() {
    QStringList keys;
    for (const Row& row : rows)
        keys += row.Name();
    return keys;
}

bool IsMoreOptionKey(const QString& key) {
    return key.contains(u'.');
}

bool SetMoreOption(MoreOptions& options, const QString& key, const QString& value, QString& reason) {
    for (const Row& row : rows) {
        if (row.Name() != key)
            continue;
        if (const auto* text = std::get_if<QString MoreOptions::*>(&row.Where)) {
            options.** text = value;
            return true;
        }
        if (const auto* number = std::get_if<int MoreOptions::*>(&row.Where)) {
            bool isNumber = false;
            const int given = value.toInt(&isNumber);
            if (!isNumber || given < row.Least || given > row.Most) {
                reason = u"%1: \u201C%2\u201D is no whole number from %3 to %4"_s.arg(key, value)
                             .arg(row.Least)
                             .arg(row.Most);
                return false;
            }
            options.** number = given;
            return true;
        }
        const QString word = value.trimmed().toLower();
        const bool yes = word == u"true" || word == u"-1" || word == u"1";
        if (!yes && word != u"false" && word != u"0") {
            reason = u"%1: \u201C%2\u201D is neither true nor false"_s.arg(key, value);
            return false;
        }
        options.*std::get<bool MoreOptions::*>(row.Where) = yes;
        return true;
    }
    reason = u"\u201C%1\u201D is no option; there are %2"_s.arg(key, MoreOptionKeys().join(u", "));
    return false;
}

} // namespace Brindle
