#include "cli/Commands.h"
#include "cli/FurtherColumns.h"
#include "cli/LeadOutput.h"
#include "cli/StoreLink.h"
#include "platform/CreatePlatform.h"
#include "store/Searches.h"
#include "store/StoreQueries.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 leadsAtOnce = 1000;
constexpr qint64 harvestsShown = 20;
constexpr qint64 errorsShown = 20;

// A day, from its beginning here, or a moment. Throws `UsageError`.
qint64 SecondsOf(const QString& date) {
    QDateTime moment;
    if (date.size() == 10)
        moment = QDate::fromString(date, Qt::ISODate).startOfDay();
    else
        moment = QDateTime::fromString(date, Qt::ISODate);
    if (!moment.isValid())
        throw UsageError(u"--since: \u201C%1\u201D is no date like 2026-03-31 or 2026-03-31T18:00"_s.arg(date));
    return moment.toSecsSinceEpoch();
}

QString Ending(HarvestEnding ending) {
    switch (ending) {
    case HarvestEnding::Done:
        return u"done"_s;
    case HarvestEnding::Stopped:
        return u"stopped"_s;
    case HarvestEnding::Failed:
        return u"failed"_s;
    case HarvestEnding::Open:
        break;
    }
    return u"open"_s;
}

QString Moment(qint64 milliseconds) {
    return QDateTime::fromMSecsSinceEpoch(milliseconds).toOffsetFromUtc(0).toString(Qt::ISODate);
}

QByteArray JsonLineOf(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject JsonOf(const StoredHarvest& harvest) {
    QJsonObject object{{u"kind"_s, u"harvest"_s},
                       {u"id"_s, harvest.Info.Uid},
                       {u"site"_s, harvest.Info.Site},
                       {u"start"_s, harvest.Info.Start},
                       {u"what"_s, harvest.Info.What},
                       {u"where"_s, harvest.Info.Place},
                       {u"by"_s, harvest.Info.By},
                       {u"begun"_s, Moment(harvest.Info.Begun)},
                       {u"state"_s, Ending(harvest.Ending)},
                       {u"pages"_s, harvest.Pages},
                       {u"leads"_s, harvest.Leads},
                       {u"new"_s, harvest.NewLeads}};
    object[u"ended"_s] = harvest.Ended ? QJsonValue(Moment(*harvest.Ended)) : QJsonValue();
    return object;
}

QString LineOf(const StoredHarvest& harvest) {
    const QString& start = harvest.Info.Start;
    const QString search = harvest.Info.What.isEmpty() && harvest.Info.Place.isEmpty()
                               ? start
                               : QString(harvest.Info.What + u", " + harvest.Info.Place);
    return u"%1  %2  %3  %4 leads, %5 new  %6\n"_s
        .arg(Moment(harvest.Info.Begun), harvest.Info.Site, Ending(harvest.Ending))
        .arg(harvest.Leads)
        .arg(harvest.NewLeads)
        .arg(search);
}

} // namespace

int RunLeads(const CommandLine& line, Console& console) {
    Session session(line, console, {});
    LeadFilter filter;
    filter.Text = line.Find;
    filter.Site = line.Site;
    filter.OnlyNew = line.OnlyNew;
    if (!line.Since.isEmpty())
        filter.Since = SecondsOf(line.Since);
    const StoreTarget target = StoreInForce(line, session.More, *session.System);
    CheckThereIs(target);
    Database database(target, Database::Access::ReadAtLeast);
    TakeInOrphans(database, session.System->SettingsFolder());
    StoreQueries queries(database);
    session.Options.cExportAutomatic = false; // that is for leads as they are found
    LeadOutput output(session.Leads, line.OutFileName, line.Format, session.Options,
                      FurtherColumns(line, session.More));
    output.Begin();
    qint64 after = 0;
    qint64 count = 0;
    while (output.Error().isEmpty() && !session.CtrlC.Happened()) {
        const std::vector<StoredLead> leads = queries.LeadsAfter(filter, after, leadsAtOnce);
        if (leads.empty())
            break;
        for (const StoredLead& lead : leads)
            session.Leads.Append(lead.Lead);
        session.Leads.Clear();
        session.Loop.ProcessMessages();
        after = leads.back().Id;
        count += static_cast<qint64>(leads.size());
    }
    if (const QString losses = output.Finish(); !losses.isEmpty())
        console.Note(losses);
    if (!output.Error().isEmpty())
        throw Failure(output.Error());
    console.Note(u"%1 leads"_s.arg(count));
    return session.StatusOrInterrupted(ExitStatus::Done);
}

int RunStatus(const CommandLine& line, Console& console) {
    const std::unique_ptr<Platform> platform = CreatePlatform();
    const StoreTarget target = StoreInForce(line, LoadOptionsInForce(line, *platform, console), *platform);
    CheckThereIs(target);
    Database database(target, Database::Access::ReadAtLeast);
    TakeInOrphans(database, platform->SettingsFolder());
    StoreQueries queries(database);
    Searches searches(database);
    const auto counts = searches.Counts();
    const qint64 harvests = queries.HarvestCount();
    const qint64 leads = queries.LeadCount();
    const qint64 businesses = queries.BusinessCount();
    const qint64 size = queries.Size();
    const std::vector<StoredHarvest> last = queries.Harvests(0, harvestsShown);
    QByteArray text;
    if (line.Json) {
        text = JsonLineOf({{u"kind"_s, u"store"_s},
                           {u"store"_s, target.Shown()},
                           {u"harvests"_s, harvests},
                           {u"leads"_s, leads},
                           {u"businesses"_s, businesses},
                           {u"bytes"_s, size}});
        QJsonObject states{{u"kind"_s, u"searches"_s}};
        for (int state = 0; state < SearchStateCount; ++state)
            states[NameOf(static_cast<SearchState>(state))] = counts.at(static_cast<size_t>(state));
        text += JsonLineOf(states);
        for (const WorkerRow& worker : searches.Workers())
            text += JsonLineOf({{u"kind"_s, u"worker"_s},
                                {u"worker"_s, worker.Name},
                                {u"search"_s, worker.Search},
                                {u"site"_s, worker.Site},
                                {u"pages"_s, worker.Pages},
                                {u"alive"_s, worker.LeaseLeft >= 0}});
        for (const StoredSearch& search : searches.All({}, SearchState::Failed, errorsShown))
            text += JsonLineOf({{u"kind"_s, u"error"_s}, {u"search"_s, search.Id}, {u"error"_s, search.Error}});
        for (const StoredHarvest& harvest : last)
            text += JsonLineOf(JsonOf(harvest));
    } else {
        QString lines = u"%1\n%2 harvests, %3 leads, %4 businesses, %5 MB\n"_s.arg(target.Shown())
                            .arg(harvests)
                            .arg(leads)
                            .arg(businesses)
                            .arg(static_cast<double>(size) / 1e6, 0, 'f', 1);
        QStringList states;
        for (int state = 0; state < SearchStateCount; ++state)
            states +=
                u"%1 %2"_s.arg(counts.at(static_cast<size_t>(state))).arg(NameOf(static_cast<SearchState>(state)));
        if (counts != std::array<qint64, SearchStateCount>{})
            lines += u"searches: "_s + states.join(u", "_s) + u'\n';
        for (const WorkerRow& worker : searches.Workers())
            lines += u"worker %1: search %2, %3, %4 pages%5\n"_s.arg(
                worker.Name, QString::number(worker.Search), worker.Site, QString::number(worker.Pages),
                worker.LeaseLeft < 0 ? u"; not heard of any more"_s : QString());
        for (const StoredSearch& search : searches.All({}, SearchState::Failed, errorsShown))
            lines += u"search %1 failed: %2\n"_s.arg(QString::number(search.Id), search.Error);
        for (const StoredHarvest& harvest : last)
            lines += LineOf(harvest);
        text = lines.toUtf8();
    }
    WriteToStandardOutput(text);
    return ExitStatus::Done;
}

} // namespace Brindle
