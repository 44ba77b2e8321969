#include "core/SitesFile.h"

#include "core/Errors.h"
#include "toolkit/Text.h"

#include <QDir>
#include <QFile>
#include <QHash>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

using Group = QHash<QString, QString>;

const QString mapGroup = u"map"_s;

QStringView WithoutComment(QStringView line) {
    for (qsizetype i = 0; i < line.size(); ++i)
        if (line[i] == u';' && (i == 0 || line[i - 1].unicode() <= 0x20))
            return line.first(i);
    return line;
}

bool IsWebAddress(const QString& text) {
    return StartsWithFolded(text, u"http://") || StartsWithFolded(text, u"https://");
}

} // namespace

QStringList SitesFile::ProblemsOf(QStringView siteCode) const {
    QStringList texts;
    for (const SitesProblem& problem : Problems)
        if (problem.Group.isEmpty() || problem.Group == mapGroup || problem.Group == siteCode)
            texts.append(problem.Text);
    return texts;
}

SiteCatalogue SitesFile::Catalogue() const {
    SiteCatalogue catalogue(MapBase);
    for (size_t i = 0; i < Sites.size(); ++i)
        catalogue.Add(Sites[i], Adapters[i]);
    return catalogue;
}

SitesFile SitesFile::Parse(const QByteArray& text, const QString& fileName, std::span<const SiteAdapter> directories) {
    SitesFile file;
    QHash<QString, Group> groups;
    QString current;
    int lineNumber = 0;
    const QString all = QString::fromUtf8(text.startsWith("\xEF\xBB\xBF") ? text.sliced(3) : text);
    for (const QStringView raw : QStringView(all).split(u'\n')) {
        ++lineNumber;
        const QStringView line = TrimmedView(WithoutComment(raw));
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            current = Trim(line.sliced(1, line.size() - 2));
            groups[current];
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals <= 0 || current.isEmpty()) {
            const QString where = current.isEmpty() ? u"before the first group"_s : u"group [%1]"_s.arg(current);
            file.Problems.push_back(
                {current, u"%1: line %2, %3: \u201C%4\u201D is not of the form key=value"_s.arg(fileName)
                              .arg(lineNumber)
                              .arg(where, line.left(60))});
            continue;
        }
        groups[current].insert(Trim(line.first(equals)), Trim(line.sliced(equals + 1)));
    }

    const auto address = [&](const QString& group, const QString& key) -> QString {
        const auto found = groups.constFind(group);
        QString value = found == groups.cend() ? QString() : found->value(key);
        const auto problem = [&](const QString& what) {
            file.Problems.push_back({group, u"%1: group [%2], key %3: %4"_s.arg(fileName, group, key, what)});
            return QString();
        };
        if (value.isEmpty())
            return problem(found == groups.cend() ? u"missing, as is the group"_s : u"missing"_s);
        if (!IsWebAddress(value))
            return problem(u"\u201C%1\u201D is no http or https address"_s.arg(value.left(60)));
        return value;
    };

    file.MapBase = address(mapGroup, u"base"_s);
    for (const SiteAdapter& site : directories) {
        const QString& code = site.Code;
        SiteEntry entry;
        entry.Code = code;
        entry.Base = address(code, u"base"_s);
        const Group group = groups.value(code);
        entry.Label = group.value(u"label"_s);
        if (entry.Label.isEmpty() && groups.contains(code))
            file.Problems.push_back({code, u"%1: group [%2], key label: missing"_s.arg(fileName, code)});
        if (entry.Base.isEmpty() || entry.Label.isEmpty()) {
            file.DisabledSites.append(code);
            continue;
        }
        entry.DetailsBase = group.value(u"details_base"_s, entry.Base);
        entry.OwnHost = group.value(u"own_host"_s);
        entry.RedirectHost = group.value(u"redirect_host"_s);
        entry.ContactEmail = group.value(u"contact_email"_s);
        entry.AdvertUrl = group.value(u"advert_url"_s);
        entry.Search = group.value(u"search"_s);
        const QString links = group.value(u"links"_s);
        if (links == u"modern")
            entry.Links = Way::Modern;
        else if (!links.isEmpty() && links != u"classic")
            file.Problems.push_back(
                {code, u"%1: group [%2], key links: \u201C%3\u201D is neither classic nor modern"_s.arg(
                           fileName, code, links.left(60))});
        file.Sites.push_back(std::move(entry));
        file.Adapters.push_back(site);
    }
    file.BrowserUserAgent = groups.value(u"browser"_s).value(u"user_agent"_s);
    const Group publisher = groups.value(u"publisher"_s);
    file.PublisherUpdates = publisher.value(u"updates"_s);
    file.PublisherNews = publisher.value(u"news"_s);
    file.PublisherHelp = publisher.value(u"help"_s);
    return file;
}

SitesFile SitesFile::Load(const QString& fileName, std::span<const SiteAdapter> directories) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    // A deployment file has a few kilobytes; what is far beyond that is some other file.
    constexpr qint64 limit = 1 << 20;
    const QByteArray text = file.read(limit + 1);
    if (file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    if (text.size() > limit)
        throw Failure(u"%1: too large for a sites file"_s.arg(QDir::toNativeSeparators(fileName)));
    return Parse(text, QDir::toNativeSeparators(fileName), directories);
}

} // namespace Brindle
