#pragma once

#include "SiteCodes.h"
#include "VirtualLoop.h"
#include "core/Harvest.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <vector>

namespace Brindle::Test {

/// Keeps what the status bar was told.
class StatusRecorder : public StatusView {
public:
    void SetPanel(int panel, const QString& text) override {
        if (Keeps)
            Panels.emplace_back(panel, text);
    }
    void SetProgressMaximum(qint64 maximum) override { Maximum = maximum; }
    void SetProgressPosition(qint64 position) override {
        Position = position;
        Positions.push_back(position);
    }
    /// Every text that a panel has shown, in order.
    QStringList TextsOf(int panel) const;
    QString Last(int panel) const;

    bool Keeps = true; ///< a measurement keeps nothing, as a status bar does
    std::vector<std::pair<int, QString>> Panels;
    std::vector<qint64> Positions;
    qint64 Maximum = -1;
    qint64 Position = -1;
};

/// Answers what the test wants and keeps what was said.
class ScriptedDialogs : public Dialogs {
public:
    bool Confirm(const QString& text) override {
        Said.append(text);
        return Answer;
    }
    void Inform(const QString& text) override { Said.append(text); }
    void Warn(const QString& text) override { Said.append(text); }
    ChosenFile AskSaveFile(const QString& title, const QString& folder, const QStringList& types) override {
        Said.append(title);
        Folders.append(folder);
        FileTypes = types;
        return {FileName, FileType};
    }
    QString AskFolder(const QString& title, const QString& folder) override {
        Said.append(title);
        Folders.append(folder);
        return FolderName;
    }

    QStringList Said;
    QStringList Folders;
    bool Answer = true;
    QString FileName;
    int FileType = 0;      ///< the type that is chosen in the save dialog
    QStringList FileTypes; ///< those that it offered last
    QString FolderName;
};

/// Pages by address; what is not there fails. An address in `Redirects` sets the last redirect.
class StubPages : public PageSource {
public:
    explicit StubPages(HarvestState& state) : state_(state) {}
    bool DownloadURL(const QString& url, QString& page, bool utf8) override;
    bool DirectDownloadURL(const QString& url, QString& page, bool utf8) override;
    void Disconnect() override { ++Disconnects; }

    QHash<QString, QString> Pages;
    QHash<QString, QString> Redirects;
    QString EveryPage; ///< delivered for addresses that are not in `Pages`, unless null
    QStringList Fetched;
    bool Keeps = true; ///< what was fetched
    std::function<void()> OnFetch;
    int Disconnects = 0;

private:
    HarvestState& state_;
};

class StubEmails : public EmailSource {
public:
    void GetEmailsFromWebsite(const QString& url, QString& emails) override {
        Asked.append(url);
        emails = Found.value(url);
    }
    QHash<QString, QString> Found;
    QStringList Asked;
};

class StubSaver : public LeadSaver {
public:
    void SaveLead(const QString& folder, const QString& name, const Lead& lead) override;
    std::vector<Lead> Leads;
    QStringList Targets; ///< folder and name
    QString Error;       ///< when set, saving fails with it
};

/// A harvest on stand-ins, for one site, with English count texts.
class HarvestBench {
public:
    explicit HarvestBench(QStringView siteCode, int layoutVariant = 1, quint32 startTick = 0);
    /// The same with directories of the test's own, which are entered as those of `TestCatalogue` are.
    HarvestBench(std::span<const SiteAdapter> directories, QStringView siteCode, int layoutVariant = 1,
                 quint32 startTick = 0);

    VirtualLoop Loop;
    HarvestState State;
    Settings Options;
    MessageTexts Texts;
    LeadList Leads;
    SiteCatalogue Catalogue;
    StatusRecorder Status;
    ScriptedDialogs Notices;
    StubPages Pages{State};
    StubEmails Emails;
    StubSaver Saver;
    Harvest Job;

    std::vector<Lead> AllLeads() const;
};

/// The catalogue of the tests: every site's base is http://CODE.test in lower case, the map's http://maps.test. Own
/// host "own.test", redirect host "clicks.test", details base http://details.test, contact "info@directory.test",
/// advertisement page "http://adverts.test/free".
SiteCatalogue TestCatalogue(std::span<const SiteAdapter> directories = SiteAdapters());

} // namespace Brindle::Test
