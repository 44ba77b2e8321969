#pragma once

#include "CommandLine.h"
#include "SiteCodes.h"
#include "demo/DemoServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle::Test {

/// One directory in one layout.
struct DemoSite {
    QString Code;
    int Layout = 1;
};

/// Every directory in every layout.
std::vector<DemoSite> DemoSites();

/// "KVPN002001_2", the name of a parametrised case.
std::string CaseName(const DemoSite& site);
void PrintTo(const DemoSite& site, std::ostream* out);

/// The demo directories, served by the test program for as long as it runs, and a folder of its own for each test.
class DemoFixture : public testing::Test {
protected:
    static Demo::DemoServer& Server();
    /// The deployment file of the demo directories.
    static QString SitesFileName();

    /// Path of a file in the test's folder.
    QString Path(const QString& name) const { return folder_.filePath(name); }
    /// Writes a file in the test's folder; returns its path.
    QString Write(const QString& name, const QByteArray& content) const;

    /// harvest of a demo directory at full speed, leads as jsonl on standard output, followed by `more`.
    static QStringList Harvest(const DemoSite& site, const QStringList& more = {});
    /// The planted leads of a directory.
    static std::vector<Lead> Planted(const DemoSite& site, bool emailSearch = false);

private:
    QTemporaryDir folder_;
};

/// Both lists hold the same leads in the same order, field by field; says what differs, a few leads at most.
void ExpectSameLeads(const std::vector<Lead>& found, const std::vector<Lead>& planted);

} // namespace Brindle::Test
