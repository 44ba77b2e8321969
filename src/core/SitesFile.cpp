#include "core/SitesFile.h"

#include "core/Errors.h"
#include "toolkit/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Value {
    QString Text;
    QString FileName;
};
using Group = QHash<QString, Value>;

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

namespace {

// Adds the entries of a text to the groups.
void ReadGroups(const SitesText& text, QHash<QString, Group>& groups, std::vector<SitesProblem>& problems) {
    QString current;
    int lineNumber = 0;
    const QString all = QString::fromUtf8(text.Text.startsWith("\xEF\xBB\xBF") ? text.Text.sliced(3) : text.Text);
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
            problems.push_back(
                {current, u"%1: line %2, %3: \u201C%4\u201D is not of the form key=value"_s.arg(text.FileName)
                              .arg(lineNumber)
                              .arg(where, line.left(60))});
            continue;
        }
        groups[current].insert(Trim(line.first(equals)), {Trim(line.sliced(equals + 1)), text.FileName});
    }
}

// Throws `Failure`.
SitesText ReadSites(const QString& fileName) {
    const QString shown = QDir::toNativeSeparators(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"%1: %2"_s.arg(shown, file.errorString()));
    // A deployment file has a few kilobytes; what is far beyond that is some other file.
    constexpr qint64 limit = 1 << 20;
    SitesText text{file.read(limit + 1), shown};
    if (file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(shown, file.errorString()));
    if (text.Text.size() > limit)
        throw Failure(u"%1: too large for a sites file"_s.arg(shown));
    return text;
}

} // namespace

SitesFile SitesFile::Parse(const QByteArray& text, const QString& fileName, std::span<const SiteAdapter> directories) {
    const SitesText only{text, fileName};
    return Parse(std::span(&only, 1), directories);
}

SitesFile SitesFile::Parse(std::span<const SitesText> texts, std::span<const SiteAdapter> directories) {
    SitesFile file;
    QHash<QString, Group> groups;
    for (const SitesText& text : texts)
        ReadGroups(text, groups, file.Problems);
    const QString fileName = texts.empty() ? QString() : texts.front().FileName;

    const auto address = [&](const QString& group, const QString& key) -> QString {
        const auto found = groups.constFind(group);
        const auto [value, from] = found == groups.cend() ? Value() : found->value(key);
        const auto problem = [&, where = from.isEmpty() ? fileName : from](const QString& what) {
            file.Problems.push_back({group, u"%1: group [%2], key %3: %4"_s.arg(where, group, key, what)});
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
        const auto text = [&group](const QString& key) { return group.value(key).Text; };
        entry.Label = text(u"label"_s);
        if (entry.Label.isEmpty() && groups.contains(code))
            file.Problems.push_back({code, u"%1: group [%2], key label: missing"_s.arg(fileName, code)});
        if (entry.Base.isEmpty() || entry.Label.isEmpty()) {
            file.DisabledSites.append(code);
            continue;
        }
        entry.DetailsBase = group.value(u"details_base"_s, {entry.Base, {}}).Text;
        entry.OwnHost = text(u"own_host"_s);
        entry.RedirectHost = text(u"redirect_host"_s);
        entry.ContactEmail = text(u"contact_email"_s);
        entry.AdvertUrl = text(u"advert_url"_s);
        entry.Search = text(u"search"_s);
        const QString links = text(u"links"_s);
        if (links == u"modern")
            entry.Links = Way::Modern;
        else if (!links.isEmpty() && links != u"classic")
            file.Problems.push_back(
                {code, u"%1: group [%2], key links: \u201C%3\u201D is neither classic nor modern"_s.arg(
                           group.value(u"links"_s).FileName, code, links.left(60))});
        file.Sites.push_back(std::move(entry));
        file.Adapters.push_back(site);
    }
    file.BrowserUserAgent = groups.value(u"browser"_s).value(u"user_agent"_s).Text;
    const Group publisher = groups.value(u"publisher"_s);
    file.PublisherUpdates = publisher.value(u"updates"_s).Text;
    file.PublisherNews = publisher.value(u"news"_s).Text;
    file.PublisherHelp = publisher.value(u"help"_s).Text;
    return file;
}

SitesFile SitesFile::Load(const QString& fileName, std::span<const SiteAdapter> directories) {
    const SitesText text = ReadSites(fileName);
    return Parse(std::span(&text, 1), directories);
}

SitesFile SitesFile::Load(const QString& fileName, const QString& ownFileName,
                          std::span<const SiteAdapter> directories) {
    std::vector<SitesText> texts{ReadSites(fileName)};
    QString problem;
    if (QFileInfo::exists(ownFileName)) {
        try {
            texts.push_back(ReadSites(ownFileName));
        } catch (const Failure& failure) {
            problem = failure.Message();
        }
    }
    SitesFile file = Parse(texts, directories);
    // Of no group in particular, yet no reason to hold the directories back: the installed file is whole.
    if (!problem.isEmpty())
        file.Problems.push_back({u"own"_s, problem});
    return file;
}

} // namespace Brindle
