#pragma once

#include "core/Lead.h"

#include <QString>

namespace Brindle {

/// Fetches pages over HTTP on behalf of adapters; implemented by the page fetcher.
class PageSource {
public:
    virtual ~PageSource() = default;
    /// Fetches a page with the proxy mode, delay and retries of the settings. True and the page's text on success;
    /// false on failure or stop, `page` is then left as it was (emptied when `url` is no HTTP address). With `utf8`
    /// the body's 8-bit form is decoded once more as UTF-8.
    virtual bool DownloadURL(const QString& url, QString& page, bool utf8) = 0;
    /// The same with a single attempt, without delay or choice of a proxy.
    virtual bool DirectDownloadURL(const QString& url, QString& page, bool utf8) = 0;
    /// Aborts a transfer that is under way.
    virtual void Disconnect() = 0;
};

/// Finds the e-mail addresses of a business; implemented by the website e-mail harvester.
class EmailSource {
public:
    virtual ~EmailSource() = default;
    /// Writes the addresses, joined by ";", when the search ran to its end; otherwise `emails` is left alone.
    virtual void GetEmailsFromWebsite(const QString& url, QString& emails) = 0;
};

/// Saves leads as they are found; implemented by the export.
class LeadSaver {
public:
    virtual ~LeadSaver() = default;
    /// Appends a lead to the automatic file of the harvest, which is named after `name` and the harvest's start. Throws
    /// `SaveError`.
    virtual void SaveLead(const QString& folder, const QString& name, const Lead& lead) = 0;
};

/// Keeps leads beyond the run of the program; implemented by the store.
class LeadKeeping {
public:
    virtual ~LeadKeeping() = default;
    /// Takes a finished lead of the current harvest, before it is counted. Never throws and never waits: what goes
    /// wrong with the store must not stand in the way of a harvest.
    virtual void Keep(const Lead& lead) = 0;
};

} // namespace Brindle
