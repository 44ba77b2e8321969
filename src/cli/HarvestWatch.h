#pragma once

#include "core/HarvestDriver.h"

#include <QElapsedTimer>

namespace Brindle {

/// Watches over a harvest in a person's place: counts its pages, and ends it where a person would see that nothing more
/// can come.
class HarvestWatch : public HarvestObserver {
public:
    /// `patienceSeconds`: for a results page to come up. `pages`: read before. All of it must outlive this.
    HarvestWatch(const Harvest& harvest, const EmbeddedBrowser& browser, double patienceSeconds, qint32 pages = 0);

    bool Ended() const { return ended_; }
    qint32 Pages() const { return pages_; }
    /// Why it was given up; empty when it came to its end.
    const QString& Error() const { return error_; }

    void PageRead() override;
    void RoundEnded(bool nextPageLoaded) override;
    void HarvestEnded() override { ended_ = true; }

protected:
    /// The address of the page that is shown, as it is shown to people.
    QString Address() const;
    /// The page that is shown may still become a results page.
    bool MayStillCome() const;
    /// Why it is none: what failed, or what it lacks; one line with its address.
    QString WhyNoResults(const QString& page) const;
    /// The patience begins anew.
    void BePatient() { sincePage_.start(); }
    /// No further page is read.
    void End();
    void GiveUp(const QString& reason);

private:
    const Harvest& harvest_;
    const EmbeddedBrowser& browser_;
    double patienceSeconds_;
    QElapsedTimer sincePage_;
    qint32 pages_;
    bool ended_ = false;
    QString error_;
};

} // namespace Brindle
