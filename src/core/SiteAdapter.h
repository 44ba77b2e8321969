#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Lead.h"
#include "core/Way.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <vector>

namespace Brindle {

class Harvest;

/// What a site that turns its own pages may use.
struct PageTurn {
    Harvest& Job;
    EmbeddedBrowser& Browser;
};

/// What became of turning a page.
struct TurnedPage {
    bool Clicked = false;     ///< a link was followed
    bool GoesOn = false;      ///< the harvest looks for another page; otherwise this was the last one
    bool OpenToStart = false; ///< Start is accepted while the next page is loading
};

/// One layout of a directory's result pages.
struct SiteLayout {
    QString InitList = {};     ///< stands where the results list begins; empty: the layout is not told by its markers
    QString EndList = {};      ///< stands behind the list, in the footer
    QString NextPageText = {}; ///< identifies the next-page link
    QString NextPageDisabled = {}; ///< present: there is no next page; empty: the site has no such text
    /// Its links belong to the directory's home page, whichever entry is selected.
    bool LinksToOwnHome = false;
    /// Reads a result page into leads. Throws `PageError` when it cannot go on with the page.
    std::function<void(Harvest& harvest, const QString& page)> Read = {};
};

/// What a reader of whole documents finds on one page.
struct DocumentRecords {
    std::vector<Lead> Leads; ///< in the page's order
    QString NextPage;        ///< absolute address; empty: none
    QString LoadMore;        ///< selector of a button that brings more records into this page; empty: none
    QStringList Problems;    ///< one line each: what was given up on the page
};

/// In how many of the records that a harvest has read each field is filled.
struct RecordCounts {
    int Records = 0;
    std::array<int, FieldCount> Filled{};
};

/// One directory: all that the program knows of it. Those that come with the program stand in a file each; others are
/// made while the program runs.
///
/// A directory reads either by markers, a text with list markers for every layout, or whole documents.
struct SiteAdapter {
    QString Code = {};                          ///< site code
    MarkupForm Form = MarkupForm::Standard;     ///< in which the markers are written
    Brindle::Way Links = Brindle::Way::Classic; ///< how it and the websites it leads to are reached
    std::vector<SiteLayout> Layouts = {};       ///< in the order in which they are tried; the first is number 1
    qint32 PauseAfterPage = 0;                  ///< ms behind the reading of each page
    qint32 PauseForNextPage = 0;                ///< ms more for a next page to load
    /// Repairs the absolute address of a next page; may be empty.
    std::function<QString(QString address)> MendLink = {};
    /// Loads the next result page; empty for sites whose next-page link is found by the markers.
    std::function<TurnedPage(PageTurn& turn, const QString& page)> TurnPage = {};

    /// Reads a whole document, which was loaded from `address`; empty for directories with layouts. Throws `Failure`
    /// when the page is beyond what is read.
    std::function<DocumentRecords(const QString& html, const QString& address)> ReadDocument = {};
    /// Adds to a lead what the page at its details link says; empty: details pages are not read.
    std::function<void(const QString& html, const QString& address, Lead& lead)> ReadDetails = {};
    /// What is amiss against what the directory is known to fill, one line each; may be empty.
    std::function<QStringList(const RecordCounts& seen)> DriftOf = {};
    /// Whether an address belongs to the site on which a harvest was started; empty: every address does.
    std::function<bool(const QString& start, const QString& address)> IsSameSite = {};
    QString SearchAddress = {}; ///< of a search, with {what} and {where} in it; empty: none is known

    /// Runs a page through the reader of a layout; the only one where there is one. Nothing for a number that the
    /// directory does not have.
    void Read(Harvest& harvest, int layoutVariant, const QString& page) const;
};

} // namespace Brindle
