#include "SettingsText.h"

#include "Text.h"
#include "WorkingText.h"

#include <array>
#include <optional>
#include <variant>

namespace Brindle {

namespace {

using Member = std::variant<bool Settings::*, QString Settings::*, QStringList Settings::*>;

struct Option {
    QStringView Key;
    Member Where;
};

// In the order in which the file has them.
const std::array<Option, 17> fileOrder{{
    {u"rUseProxy", &Settings::rUseProxy},
    {u"rNoProxy", &Settings::rNoProxy},
    {u"rAuthentification", &Settings::rAuthentification},
    {u"eHost", &Settings::eHost},
    {u"ePort", &Settings::ePort},
    {u"eUserName", &Settings::eUserName},
    {u"ePassword", &Settings::ePassword},
    {u"eExportFields", &Settings::eExportFields},
    {u"eRandom", &Settings::eRandom},
    {u"rRandomProxy", &Settings::rRandomProxy},
    {u"eRandomProxies", &Settings::eRandomProxies},
    {u"cExtractEmails", &Settings::cExtractEmails},
    {u"cExportManually", &Settings::cExportManually},
    {u"cExportAutomatic", &Settings::cExportAutomatic},
    {u"eExportFolder", &Settings::eExportFolder},
    {u"eDelimiter", &Settings::eDelimiter},
    {u"Language", &Settings::Language},
}};

// Read on a fresh copy of the text each, in this order; the cut of the last one is where the other options go on.
constexpr std::array<QStringView, 12> readFresh{
    u"rNoProxy",  u"rUseProxy",    u"rAuthentification", u"eHost",         u"ePort",   u"eUserName",
    u"ePassword", u"rRandomProxy", u"eRandomProxies",    u"eExportFields", u"eRandom", u"cExtractEmails"};

const Option* OptionOf(QStringView key) {
    for (const Option& option : fileOrder)
        if (option.Key == key)
            return &option;
    return nullptr;
}

QString OpeningTag(QStringView key) {
    return u"<%%" + key + u"%%>";
}

QString ClosingTag(QStringView key) {
    return u"<%%/" + key + u"%%>";
}

// "-1" and any other whole number but 0 is true; so is "True" in any case.
std::optional<bool> ParseBoolean(const QString& text) {
    const QString value = Trim(text);
    if (value.compare(u"true", Qt::CaseInsensitive) == 0)
        return true;
    if (value.compare(u"false", Qt::CaseInsensitive) == 0)
        return false;
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return number != 0;
}

QStringList Lines(const QString& text) {
    QStringList lines;
    QString all = text;
    ReplaceAll(all, u"\r\n", u"\n");
    ReplaceAll(all, u"\r", u"\n");
    const QList<QStringView> parts = QStringView(all).split(u'\n');
    for (const QStringView line : parts)
        lines.append(line.toString());
    // A line end closes its line; it does not begin another one.
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

bool Store(Settings& settings, const Option& option, const QString& value) {
    if (const auto* flag = std::get_if<bool Settings::*>(&option.Where)) {
        const std::optional<bool> parsed = ParseBoolean(value);
        if (parsed)
            settings.** flag = *parsed;
        return parsed.has_value();
    }
    if (const auto* text = std::get_if<QString Settings::*>(&option.Where))
        settings.** text = value;
    else
        settings.*std::get<QStringList Settings::*>(option.Where) = Lines(value);
    return true;
}

QString ValueText(const Settings& settings, const Option& option) {
    if (const auto* flag = std::get_if<bool Settings::*>(&option.Where))
        return settings.**flag ? QStringLiteral("-1") : QStringLiteral("0");
    if (const auto* text = std::get_if<QString Settings::*>(&option.Where))
        return settings.**text;
    QString lines;
    for (const QString& line : settings.*std::get<QStringList Settings::*>(option.Where))
        lines += line + u"\r\n";
    return lines;
}

} // namespace

QByteArray SettingsText(const Settings& settings) {
    QString text;
    for (const Option& option : fileOrder)
        text += OpeningTag(option.Key) + ValueText(settings, option) + ClosingTag(option.Key) + u"\r\n";
    return text.toLocal8Bit();
}

Settings DefaultSettings(const QString& documentsFolder) {
    Settings settings;
    settings.eExportFolder = documentsFolder;
    return settings;
}

Settings ParseSettings(const QString& text, const QString& documentsFolder) {
    Settings settings = DefaultSettings(documentsFolder);
    WorkingText rest(text);
    const auto extract = [&rest](QStringView key) {
        return rest.ExtractBetween(OpeningTag(key), ClosingTag(key)).toString();
    };
    for (const QStringView key : readFresh) {
        rest.MoveTo(0);
        // The bare key decides, wherever in the file it stands: "eRandom" is there when only "eRandomProxies" is.
        if (text.contains(key))
            Store(settings, *OptionOf(key), extract(key));
    }
    settings.cExportManually = ParseBoolean(extract(u"cExportManually")).value_or(true);
    settings.cExportAutomatic = ParseBoolean(extract(u"cExportAutomatic")).value_or(false);
    const auto keptUnlessBlank = [&](QStringView key, const QString& otherwise) {
        const QString value = extract(key);
        return TrimmedView(value).isEmpty() ? otherwise : value;
    };
    settings.eExportFolder = keptUnlessBlank(u"eExportFolder", documentsFolder);
    settings.eDelimiter = keptUnlessBlank(u"eDelimiter", QStringLiteral(","));
    settings.Language = keptUnlessBlank(u"Language", QStringLiteral("en"));
    return settings;
}

bool SetOption(Settings& settings, const QString& key, const QString& value, QString& reason) {
    const Option* const option = OptionOf(key);
    if (!option) {
        reason = QStringLiteral("\u201C%1\u201D is no setting").arg(key);
        return false;
    }
    if (!Store(settings, *option, value)) {
        reason = QStringLiteral("%1: \u201C%2\u201D is neither true nor false").arg(key, value);
        return false;
    }
    return true;
}

} // namespace Brindle
