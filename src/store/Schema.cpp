#include "store/Schema.h"

#include "store/Database.h"

#include <array>
#include <span>

namespace Brindle {

using namespace Qt::StringLiterals;
using Why = StoreError::Why;

namespace {

// What came behind this version is of no use to those who only read.
constexpr int oldestReadable = 3;

// "BrnL", the mark of the program's own files among all of SQLite's.
constexpr int applicationId = 0x42726e4c;

struct Statement {
    enum class For { Both, SQLite, PostgreSQL };
    For Engine;
    const char16_t* Sql; // {id}: a numbered primary key; {big}: a whole number of 64 bits
};

constexpr auto both = Statement::For::Both;
constexpr auto lite = Statement::For::SQLite;
constexpr auto postgres = Statement::For::PostgreSQL;

// A harvest and its leads in order. A business has the number of the lead that first showed it, so a lead whose number
// is its business's is a new one. Texts that repeat others stand once: the map link of most leads is made of the
// address.
constexpr Statement leadsAndHarvests[] = {
    {both,
     u"CREATE TABLE harvest (id {id}, uid TEXT NOT NULL UNIQUE, session TEXT NOT NULL, origin INTEGER NOT NULL,"
     u" site TEXT NOT NULL, start TEXT NOT NULL, what TEXT NOT NULL, place TEXT NOT NULL, started_by TEXT NOT NULL,"
     u" begun {big} NOT NULL, ended {big}, ending INTEGER NOT NULL DEFAULT 0, pages INTEGER NOT NULL DEFAULT 0,"
     u" leads INTEGER NOT NULL DEFAULT 0, new_leads INTEGER NOT NULL DEFAULT 0, last_seq {big} NOT NULL DEFAULT 0,"
     u" settled_to {big} NOT NULL DEFAULT 0, link_tells_apart INTEGER NOT NULL)"},
    {both, u"CREATE INDEX harvest_begun ON harvest(begun)"},
    {both, u"CREATE TABLE map_shape (id {id}, before_address TEXT NOT NULL, behind_address TEXT NOT NULL,"
           u" UNIQUE(before_address, behind_address))"},
    {lite, u"CREATE TABLE lead (id INTEGER PRIMARY KEY, harvest INTEGER NOT NULL, seq INTEGER NOT NULL,"
           u" business INTEGER NOT NULL, found INTEGER NOT NULL, changed INTEGER NOT NULL,"
           u" category TEXT NOT NULL, name TEXT NOT NULL, full_address TEXT NOT NULL, street TEXT NOT NULL,"
           u" city TEXT NOT NULL, state TEXT NOT NULL, postal_code TEXT NOT NULL, country TEXT NOT NULL,"
           u" phone TEXT NOT NULL, fax TEXT NOT NULL, website TEXT NOT NULL, email TEXT NOT NULL,"
           u" map_shape INTEGER NOT NULL, map_link TEXT NOT NULL, details_link TEXT NOT NULL)"},
    {postgres, u"CREATE TABLE lead (id BIGINT PRIMARY KEY, harvest BIGINT NOT NULL, seq BIGINT NOT NULL,"
               u" business BIGINT NOT NULL, found INTEGER NOT NULL, changed INTEGER NOT NULL,"
               u" category TEXT NOT NULL, name TEXT NOT NULL, full_address TEXT NOT NULL, street TEXT NOT NULL,"
               u" city TEXT NOT NULL, state TEXT NOT NULL, postal_code TEXT NOT NULL, country TEXT NOT NULL,"
               u" phone TEXT NOT NULL, fax TEXT NOT NULL, website TEXT NOT NULL, email TEXT NOT NULL,"
               u" map_shape BIGINT NOT NULL, map_link TEXT NOT NULL, details_link TEXT NOT NULL,"
               u" words TSVECTOR NOT NULL)"},
    {postgres, u"CREATE SEQUENCE lead_number"},
    {both, u"CREATE INDEX lead_order ON lead(harvest, seq)"},
    {lite, u"CREATE INDEX lead_business ON lead(business)"},
    {postgres, u"CREATE INDEX lead_business ON lead(business, id)"},
    {lite, u"CREATE TABLE business (id INTEGER PRIMARY KEY, first_seen INTEGER NOT NULL, last_seen INTEGER NOT NULL)"},
    {postgres, u"CREATE TABLE business (id BIGINT PRIMARY KEY, first_seen BIGINT NOT NULL, last_seen BIGINT NOT NULL)"},
    {lite, u"CREATE TABLE business_key (digest INTEGER PRIMARY KEY, business INTEGER NOT NULL)"},
    {postgres, u"CREATE TABLE business_key (digest BIGINT PRIMARY KEY, business BIGINT NOT NULL)"},
    {postgres, u"CREATE INDEX business_key_business ON business_key(business)"},
    // The beginnings of words are what is looked for. The index keeps no text of its own.
    {lite,
     u"CREATE VIRTUAL TABLE lead_words USING fts5(words, content='', detail=none, columnsize=0, tokenize='ascii')"},
    {postgres, u"CREATE INDEX lead_words ON lead USING GIN (words) WITH (fastupdate=on)"},
    {both, u"CREATE TABLE mark (name TEXT PRIMARY KEY, value {big} NOT NULL)"},
    {lite, u"INSERT INTO mark(name, value) VALUES('words_to', 0)"},
};

// Searches that wait to be made, and the turns at the hosts that they go to.
constexpr Statement searches[] = {
    {both, u"CREATE TABLE search (id {id}, list TEXT NOT NULL, line INTEGER NOT NULL, site TEXT NOT NULL,"
           u" start TEXT NOT NULL, what TEXT NOT NULL, place TEXT NOT NULL, host TEXT NOT NULL,"
           u" state INTEGER NOT NULL DEFAULT 0, tries INTEGER NOT NULL DEFAULT 0, worker TEXT NOT NULL DEFAULT '',"
           u" lease {big} NOT NULL DEFAULT 0, go_on TEXT NOT NULL DEFAULT '', pages INTEGER NOT NULL DEFAULT 0,"
           u" harvest TEXT NOT NULL DEFAULT '', error TEXT NOT NULL DEFAULT '', added {big} NOT NULL, ended {big},"
           u" UNIQUE(list, line))"},
    {both, u"CREATE INDEX search_waiting ON search(id) WHERE state=0"},
    {both, u"CREATE INDEX search_running ON search(lease) WHERE state=1"},
    {both, u"CREATE INDEX search_list ON search(list, state, id)"},
    {both, u"CREATE TABLE host_turn (host TEXT PRIMARY KEY, next_at {big} NOT NULL)"},
};

// Up to which lead of its harvest a search's pages were read as a whole, and the trade that the first of them named.
constexpr Statement wholePages[] = {
    {both, u"ALTER TABLE search ADD COLUMN whole_to {big} NOT NULL DEFAULT 0"},
    {both, u"ALTER TABLE search ADD COLUMN category TEXT NOT NULL DEFAULT ''"},
};

// Keys gather in a table of their own until there are many. The index of the words is written in parts, which
// are brought together less often.
constexpr Statement fewerPages[] = {
    {lite, u"CREATE TABLE business_key_new (digest INTEGER PRIMARY KEY, business INTEGER NOT NULL)"},
    {lite, u"INSERT INTO lead_words(lead_words, rank) VALUES('automerge', 8)"},
};

constexpr std::span<const Statement> migrations[] = {leadsAndHarvests, searches, wholePages, fewerPages};

QString Adapted(const Statement& statement, bool isPostgres) {
    QString sql = QString::fromUtf16(statement.Sql);
    sql.replace(u"{id}"_s,
                isPostgres ? u"BIGINT GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY"_s : u"INTEGER PRIMARY KEY"_s);
    return sql.replace(u"{big}"_s, isPostgres ? u"BIGINT"_s : u"INTEGER"_s);
}

int VersionOf(Database& database) {
    if (database.IsPostgres()) {
        const bool known = database.Value(u"SELECT to_regclass('brindle.schema_version') IS NOT NULL"_s).toBool();
        return known ? database.Value(u"SELECT max(version) FROM brindle.schema_version"_s).toInt() : 0;
    }
    return database.Value(u"PRAGMA user_version"_s).toInt();
}

void CheckVersion(const Database& database, int version) {
    if (version > SchemaVersion())
        throw StoreError(Why::Newer,
                         u"%1: made by a newer version of the program (%2; this one knows %3)"_s.arg(
                             database.Target().Shown(), QString::number(version), QString::number(SchemaVersion())));
}

void CheckOwner(Database& database) {
    // In this order: a program that makes the file at this moment writes its mark and its tables at once.
    if (database.IsPostgres() || database.Value(u"SELECT count(*) FROM sqlite_master"_s).toInt() == 0)
        return;
    if (database.Value(u"PRAGMA application_id"_s).toInt() != applicationId)
        throw StoreError(Why::Damaged, u"%1: a database of another program"_s.arg(database.Target().Shown()));
}

void SetVersion(Database& database, int version) {
    if (database.IsPostgres()) {
        database.Run(u"INSERT INTO schema_version(version) VALUES(?)"_s, {version});
    } else {
        database.Execute(u"PRAGMA application_id=%1"_s.arg(applicationId));
        database.Execute(u"PRAGMA user_version=%1"_s.arg(version));
    }
}

} // namespace

int SchemaVersion() {
    return static_cast<int>(std::size(migrations));
}

void MigrateSchema(Database& database) {
    CheckOwner(database);
    int version = VersionOf(database);
    CheckVersion(database, version);
    if (version < SchemaVersion() && !(database.IsReadOnly() && version >= oldestReadable)) {
        WriteTransaction transaction(database);
        if (database.IsPostgres()) {
            // Others may be at the same work.
            database.Execute(u"SELECT pg_advisory_xact_lock(%1)"_s.arg(applicationId));
            if (!database.Value(u"SELECT count(*) FROM pg_namespace WHERE nspname='brindle'"_s).toBool())
                database.Execute(u"CREATE SCHEMA brindle"_s);
            database.Execute(u"SET search_path TO brindle"_s);
            database.Execute(u"CREATE TABLE IF NOT EXISTS schema_version (version INTEGER PRIMARY KEY)"_s);
        }
        version = VersionOf(database);
        CheckVersion(database, version);
        for (; version < SchemaVersion(); ++version) {
            for (const Statement& statement : migrations[static_cast<size_t>(version)])
                if (statement.Engine == both || (statement.Engine == postgres) == database.IsPostgres())
                    database.Execute(Adapted(statement, database.IsPostgres()));
            SetVersion(database, version + 1);
        }
        transaction.Commit();
    }
    if (database.IsPostgres())
        database.Execute(u"SET search_path TO brindle"_s);
}

} // namespace Brindle
