#pragma once

#include "core/Dialogs.h"
#include "core/LeadList.h"
#include "core/MessageLoop.h"
#include "core/MessageTexts.h"
#include "core/PageOrigin.h"
#include "core/PageRecords.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "core/SiteCatalogue.h"
#include "core/StatusView.h"
#include "core/Way.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <functional>

namespace Brindle {

/// The state of the current harvest, shared by everything that takes part in it.
struct HarvestState {
    bool Parsing = false;       ///< a harvest is in progress; false while a tick runs
    bool ShouldStop = false;    ///< the user asked to stop
    QString CurrID;             ///< site code
    int CurrSite = 0;           ///< layout variant of the last page that was recognised
    Way CurrWay = Way::Classic; ///< how the current directory is reached
    PageOrigin CurrPage;        ///< the page that leads to what is fetched; the modern way asks where it stands
    PageOrigin LastFetched;     ///< the page that was fetched last
    QString CurrRedirect;       ///< where the last HTTP redirect led; kept while fetches are not redirected
    QString DateTimeVal;        ///< when the harvest was started, fit for a file name
    QString MainCategory;       ///< the category remembered from the harvest's first page
    qint32 ExtractedNum = 0;
    qint32 ExportedNum = 0;
    QString SelectedEntry;  ///< the site selector's text
    QString FailureMessage; ///< why the harvest had to end, for front ends without dialogs; empty: it did not
};

/// A moment as the names of a harvest's files have it: short date and long time of the locale, without time zone, with
/// "-" for ":" and "/".
QString HarvestTimeStamp(const QDateTime& moment, const QLocale& locale);

/// One harvest and the services that an adapter may call.
class Harvest {
public:
    struct Parts {
        HarvestState& State;
        LeadList& Leads;
        const Settings& Options;
        const MessageTexts& Texts;
        const SiteCatalogue& Catalogue;
        MessageLoop& Loop;
        StatusView& Status;
        Dialogs& Notices;
        PageSource& Pages;
        EmailSource& Emails;
        LeadSaver& Saver;
    };
    explicit Harvest(const Parts& parts);

    HarvestState& State;
    LeadList& Leads;
    const Settings& Options;
    const MessageTexts& Texts;
    const SiteCatalogue& Catalogue;
    MessageLoop& Loop;
    StatusView& Status;
    Dialogs& Notices;
    PageSource& Pages;
    EmailSource& Emails;
    LeadSaver& Saver;

    /// The records of the page in hand, listed before or not: what tells a page that is read a second time.
    PageRecords Records;

    /// Where leads are kept beyond the run; null: nowhere.
    LeadKeeping* Store = nullptr;

    /// In how many of the records of this harvest each field is filled; of directories that read whole documents.
    RecordCounts Counts;
    /// Keys of the leads that this harvest has saved, of directories whose duplicates are told by the business.
    DuplicateKeys SavedKeys;

    /// Called for every lead that was listed or saved; may be empty.
    std::function<void(const Lead&)> LeadKept;

    bool ShouldStop() const { return State.ShouldStop || Loop.Quitting(); }
    /// Handles pending messages.
    void PumpMessages() { Loop.ProcessMessages(); }

    /// The configured entry of the current site; an empty one when the code is unknown.
    const SiteEntry& Site() const;
    /// The directory of the current site; null when the code is unknown.
    std::shared_ptr<const SiteAdapter> Adapter() const { return Catalogue.Adapter(State.CurrID); }
    /// The base address in the site selector's text.
    QString SelectedBase() const { return GetCountryURL(State.SelectedEntry); }
    /// Where a redirecting link leads: fetches it and returns the last redirect's target, which is an older one when
    /// this fetch was not redirected.
    QString GetRedirect(const QString& url);

    /// Ends the harvest because a lead could not be saved: the adapters stop and the user is told.
    void Fail(const QString& message);

    /// Zeroes the counters, clears the stop request and the category, and takes the time stamp.
    void Begin();
};

} // namespace Brindle
