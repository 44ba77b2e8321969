#include "DemoFixture.h"

#include "PrintTo.h"
#include "demo/Directories.h"

#include <QFile>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

std::vector<DemoSite> DemoSites() {
    std::vector<DemoSite> sites;
    for (const auto& directory : Demo::AllDirectories())
        for (int layout = 1; layout <= directory->LayoutCount(); ++layout)
            sites.push_back({directory->Code().toString(), layout});
    return sites;
}

std::string CaseName(const DemoSite& site) {
    return site.Code.toStdString() + '_' + std::to_string(site.Layout);
}

void PrintTo(const DemoSite& site, std::ostream* out) {
    *out << CaseName(site);
}

Demo::DemoServer& DemoFixture::Server() {
    static Demo::DemoServer server;
    static const bool started = (server.Start(), true);
    static_cast<void>(started);
    return server;
}

QString DemoFixture::SitesFileName() {
    static const QTemporaryDir folder;
    static const QString name = [] {
        QString path = folder.filePath(u"sites.ini"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("cannot write " + path.toStdString());
        file.write(Server().SitesIni().toUtf8());
        return path;
    }();
    return name;
}

QString DemoFixture::Write(const QString& name, const QByteArray& content) const {
    QFile file(Path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + name.toStdString());
    return Path(name);
}

QStringList DemoFixture::Harvest(const DemoSite& site, const QStringList& more) {
    QStringList arguments{u"harvest"_s,
                          u"--sites"_s,
                          SitesFileName(),
                          u"--site"_s,
                          site.Code,
                          u"--start"_s,
                          Server().FirstResultPage(site.Code, site.Layout),
                          u"--pace"_s,
                          u"0"_s,
                          u"--format"_s,
                          u"jsonl"_s};
    return arguments + more;
}

std::vector<Lead> DemoFixture::Planted(const DemoSite& site, bool emailSearch) {
    return Server().PlantedLeads(site.Code, site.Layout, emailSearch);
}

void ExpectSameLeads(const std::vector<Lead>& found, const std::vector<Lead>& planted) {
    EXPECT_EQ(found.size(), planted.size());
    int shown = 0;
    for (std::size_t i = 0; i < std::min(found.size(), planted.size()) && shown < 5; ++i)
        for (int column = 0; column < FieldCount; ++column)
            if (found[i].At(column) != planted[i].At(column)) {
                ++shown;
                ADD_FAILURE() << "lead " << i << ", " << planted[i].Name.toStdString() << ", "
                              << EnglishCaptions().at(column).toStdString() << ": found \""
                              << found[i].At(column).toStdString() << "\", planted \""
                              << planted[i].At(column).toStdString() << '"';
            }
}

} // namespace Brindle::Test
