#include "settings/SettingsText.h"

#include "toolkit/Ascii.h"
#include "toolkit/Text.h"
#include "toolkit/WorkingText.h"

#include <algorithm>
#include <array>
#include <optional>
#include <variant>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

using Member = std::variant<bool Settings::*, QString Settings::*, QStringList Settings::*>;

struct Option {
    QStringView Key;
    Member Where;
    bool DefaultWhenBlank = false; // a blank value stands for the default
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
    {u"eExportFolder", &Settings::eExportFolder, true},
    {u"eDelimiter", &Settings::eDelimiter, true},
    {u"Language", &Settings::Language, true},
}};

// Read on a fresh copy of the text each, in this order; the cut of the last one is where the other options go on.
constexpr std::array<QStringView, 12> readFresh{
    u"rNoProxy",  u"rUseProxy",    u"rAuthentification", u"eHost",         u"ePort",   u"eUserName",
    u"ePassword", u"rRandomProxy", u"eRandomProxies",    u"eExportFields", u"eRandom", u"cExtractEmails"};

// Read one after the other from there on, so these count only where they stand in this order.
constexpr std::array<QStringView, 5> readOn{u"cExportManually", u"cExportAutomatic", u"eExportFolder", u"eDelimiter",
                                            u"Language"};

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

// "-1" and any other whole number but 0 is true, however long; so is "True" in any case.
std::optional<bool> ParseBoolean(QStringView text) {
    QStringView value = TrimmedView(text);
    if (value.compare(u"true", Qt::CaseInsensitive) == 0)
        return true;
    if (value.compare(u"false", Qt::CaseInsensitive) == 0)
        return false;
    if (value.startsWith(u'-') || value.startsWith(u'+'))
        value = value.sliced(1);
    if (value.isEmpty() || !std::all_of(value.begin(), value.end(), Ascii::IsDigit<QChar>))
        return std::nullopt;
    return std::any_of(value.begin(), value.end(), [](QChar c) { return c != u'0'; });
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

// Takes a value as a settings file holds it. False, and nothing changes, when it is no boolean and has to be one.
bool Store(Settings& settings, const Option& option, const QString& value, const Settings& defaults) {
    if (const auto* flag = std::get_if<bool Settings::*>(&option.Where)) {
        const std::optional<bool> parsed = ParseBoolean(value);
        if (parsed)
            settings.** flag = *parsed;
        return parsed.has_value();
    }
    if (const auto* text = std::get_if<QString Settings::*>(&option.Where))
        settings.** text = option.DefaultWhenBlank && TrimmedView(value).isEmpty() ? defaults.**text : value;
    else
        settings.*std::get<QStringList Settings::*>(option.Where) = Lines(value);
    return true;
}

QString ValueText(const Settings& settings, const Option& option) {
    if (const auto* flag = std::get_if<bool Settings::*>(&option.Where))
        return settings.**flag ? u"-1"_s : u"0"_s;
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
    const Settings defaults = DefaultSettings(documentsFolder);
    Settings settings = defaults;
    WorkingText rest(text);
    const auto extract = [&](QStringView key) {
        const QString value = rest.ExtractBetween(OpeningTag(key), ClosingTag(key)).toString();
        Store(settings, *OptionOf(key), value, defaults);
    };
    for (const QStringView key : readFresh) {
        rest.MoveTo(0);
        // The bare key decides, wherever in the file it stands: "eRandom" is there when only "eRandomProxies" is.
        if (text.contains(key))
            extract(key);
    }
    for (const QStringView key : readOn)
        extract(key);
    return settings;
}

QString SettingsDamage(const QString& text) {
    if (text.trimmed().isEmpty())
        return {};
    bool any = false;
    for (const Option& option : fileOrder) {
        const qsizetype begin = text.indexOf(OpeningTag(option.Key));
        if (begin >= 0 && text.indexOf(ClosingTag(option.Key), begin) < 0)
            return u"%1 does not end"_s.arg(option.Key);
        any = any || begin >= 0;
    }
    if (!any)
        return u"there is no setting in it"_s;
    return text.contains(QChar(u'\0')) ? u"there are zeros in it"_s : QString();
}

bool SetOption(Settings& settings, const QString& key, const QString& value, const QString& documentsFolder,
               QString& reason) {
    const Option* const option = OptionOf(key);
    if (!option) {
        reason = u"\u201C%1\u201D is no setting"_s.arg(key);
        return false;
    }
    if (!Store(settings, *option, value, DefaultSettings(documentsFolder))) {
        reason = u"%1: \u201C%2\u201D is neither true nor false"_s.arg(key, value);
        return false;
    }
    return true;
}

} // namespace Brindle
