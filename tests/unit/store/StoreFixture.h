#pragma once

#include "InventedLeads.h"
#include "PostgresServer.h"
#include "store/StoreEdits.h"
#include "store/StoreQueries.h"
#include "store/StoreWriter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle::Test {

/// A store of either engine, empty at the beginning.
class StoreTest : public testing::TestWithParam<StoreTarget::Engine> {
protected:
    void SetUp() override {
        if (GetParam() == StoreTarget::Engine::PostgreSQL) {
            if (!PostgresServer::Installed() || !QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL")))
                GTEST_SKIP() << "PostgreSQL is not installed here";
            Server = std::make_unique<PostgresServer>();
            ASSERT_EQ(Server->Error(), QString());
        }
        Open();
    }

    StoreTarget Target() const {
        return StoreTarget::Parse(Server ? Server->Address() : Folder.filePath(QStringLiteral("leads.db")));
    }
    void Open() {
        Store.reset();
        Store = std::make_unique<Database>(Target());
    }

    static StoreEvent Begun(const QString& uid, const QString& site, qint64 seconds = 1000) {
        HarvestInfo harvest;
        harvest.Uid = uid;
        harvest.Session = QStringLiteral("session-") + uid;
        harvest.Site = site;
        harvest.Start = QStringLiteral("http://dir.test/?page=1");
        harvest.By = QStringLiteral("me@here");
        harvest.Begun = seconds * 1000;
        return harvest;
    }
    static StoreEvent Found(const QString& uid, qint64 seq, const Lead& lead, qint64 seconds = 1000) {
        return FoundLead{uid, seq, seconds * 1000, lead};
    }
    void Take(const std::vector<StoreEvent>& events) { StoreWriter(*Store).Take(events); }
    std::vector<Lead> LeadsOf(const QString& uid) {
        std::vector<Lead> leads;
        StoreQueries queries(*Store);
        const auto harvest = queries.HarvestOf(uid);
        if (harvest)
            for (const StoredLead& lead : queries.LeadsOf(harvest->Id, 0, 1'000'000))
                leads.push_back(lead.Lead);
        return leads;
    }
    /// Names of the leads that fit, in the order.
    QStringList Find(const LeadFilter& filter, const LeadOrder& order = {LeadOrder::Found, false}) {
        QStringList names;
        StoreQueries queries(*Store);
        for (const StoredLead& lead : queries.Leads(filter, order, 0, 1000))
            names += lead.Lead.Name;
        EXPECT_EQ(queries.LeadCount(filter), names.size());
        return names;
    }

    QTemporaryDir Folder;
    std::unique_ptr<PostgresServer> Server;
    std::unique_ptr<Database> Store;
};

} // namespace Brindle::Test
