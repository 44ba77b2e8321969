#pragma once

#include "core/SiteCatalogue.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <span>

namespace Brindle {

/// The text of a deployment file.
struct SitesText {
    QByteArray Text;
    QString FileName; ///< for the messages
};

/// What is wrong with a deployment file.
struct SitesProblem {
    QString Group; ///< the group concerned; empty: the file as a whole
    QString Text;  ///< one line: file, group, key and what is wrong
};

/// The deployment file: addresses, labels and host names of the directories, and what the publisher offers.
///
/// INI, UTF-8: groups in brackets, key=value, a line or a rest of a line that begins with ";" after a blank is a
/// comment. A directory whose entry is incomplete is left out; each reason stands in `Problems`.
struct SitesFile {
    std::vector<SiteEntry> Sites;      ///< complete entries, in the order of the directories
    std::vector<SiteAdapter> Adapters; ///< of `Sites`, in the same order
    QString MapBase;
    QString BrowserUserAgent; ///< empty: the built-in one
    QString PublisherUpdates; ///< empty: none
    QString PublisherNews;
    QString PublisherHelp;
    std::vector<SitesProblem> Problems;
    QStringList DisabledSites; ///< codes of directories whose entry is missing or malformed

    /// The directories that have a complete entry, in their own order.
    SiteCatalogue Catalogue() const;
    /// The texts of the problems that touch a harvest of one site: its own group's, the map's and the file's.
    QStringList ProblemsOf(QStringView siteCode) const;

    /// Reads the text of a deployment file, which should have an entry for each of the directories; `fileName` is for
    /// the messages.
    static SitesFile Parse(const QByteArray& text, const QString& fileName, std::span<const SiteAdapter> directories);
    /// The same of several texts together: where more than one has a key of a group, the last one counts.
    static SitesFile Parse(std::span<const SitesText> texts, std::span<const SiteAdapter> directories);
    /// Reads a deployment file. Throws `Failure` when it cannot be read.
    static SitesFile Load(const QString& fileName, std::span<const SiteAdapter> directories);
    /// The same with the user's own file on top, which need not be there; when it cannot be read, that is a problem of
    /// the result and stops nothing.
    static SitesFile Load(const QString& fileName, const QString& ownFileName,
                          std::span<const SiteAdapter> directories);
};

} // namespace Brindle
