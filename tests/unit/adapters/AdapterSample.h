#pragma once

#include "HarvestBench.h"
#include "core/Lead.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <ostream>
#include <vector>

namespace Brindle::Test {

/// A small result page of one directory and layout with what must come of it. What holds for every adapter is tested
/// on these. Listings are complete and different from each other; one of them should have a website and no e-mail.
struct AdapterSample {
    QString Title;
    QStringView Site;
    int Layout = 1;
    QString Head; ///< the page up to the first listing
    QStringList Listings;
    QString Tail;
    QString ListingMarker;           ///< the text at which the adapter recognises a listing
    QHash<QString, QString> Details; ///< details pages by address
    std::vector<Lead> Leads;
    bool CountsExtracted = false;
    bool SkipsListedAtOnce = true; ///< a listing that is listed already is passed over without a status update

    QString Page() const { return Head + Listings.join(QString()) + Tail; }
    /// Where listing `i` ends on the page.
    qsizetype EndOf(qsizetype i) const { return Head.size() + Listings.first(i + 1).join(QString()).size(); }
};

inline void PrintTo(const AdapterSample& sample, std::ostream* out) {
    *out << sample.Title.toStdString();
}

AdapterSample SampleOfYellowPagesCanada1();
AdapterSample SampleOfYellowPagesCanada2();
AdapterSample SampleOfCanada411();
AdapterSample SampleOfUsYellowPages1();
AdapterSample SampleOfUsYellowPages2();
AdapterSample SampleOfPagineBianche1();
AdapterSample SampleOfPagineBianche2();
AdapterSample SampleOfPagineMail();
AdapterSample SampleOfInfobelItaly1();
AdapterSample SampleOfInfobelItaly2();
AdapterSample SampleOfVirgilio();
AdapterSample SampleOfTrovanumeri();

/// Reads a page as the driver does: by the adapter of the current site, an error ending the page.
void ReadAsDriver(HarvestBench& bench, const QString& page);

} // namespace Brindle::Test
