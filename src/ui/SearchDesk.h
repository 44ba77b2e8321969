#pragma once

#include "store/SearchTable.h"
#include "store/Searches.h"
#include "ui/StoreDesk.h"

#include <QProcess>
#include <QTimer>

#include <memory>
#include <vector>

namespace Brindle {

/// How a table of searches is to be made.
struct SearchWish {
    int Jobs = 1; ///< searches at once
    bool AskRobots = true;
};

/// A search of the list that the window shows.
struct SearchProgress {
    StoredSearch Search;
    qint64 Leads = 0;
};

/// Makes a table of searches beside the window: processes of the command line take them from the store, one after the
/// other each, so that neither the window nor a harvest in its browser waits for them. They end with the window; what
/// was under way goes on when it is opened again.
class SearchDesk : public QObject {
    Q_OBJECT

public:
    struct Parts {
        StoreDesk& Desk;
        Workbench& Bench;
        QString StateFileName;    ///< window.ini
        QString SettingsFileName; ///< what the processes read; must be there when they start
        QString SitesFileName;    ///< the same; empty: the program's
        double Pace = 1.0;
        std::function<void()> Prepare; ///< called before processes start
    };
    explicit SearchDesk(const Parts& parts);
    ~SearchDesk() override;

    /// What a table, typed or pasted, has of searches, and what is wrong with it.
    SearchTable Read(const QString& text) const;
    /// Makes the searches of a table; those that the store knows as done already are not made again before all are.
    void Run(const SearchTable& table, const SearchWish& wish);
    /// The failed searches of the list are made once more.
    void Retry();
    void Stop();
    /// The list of the last run is shown again; when the program ended in its middle, it goes on.
    void GoOn();
    /// The program ends; the next one goes on.
    void Leave();

    bool Running() const { return !members_.empty(); }
    const std::vector<SearchProgress>& Rows() const { return rows_; }
    SearchWish Wish() const;
    qint64 Count(SearchState state) const;
    qint64 Leads() const;

Q_SIGNALS:
    /// The rows, or whether searches are being made.
    void Changed();
    /// A run goes on that an earlier window began.
    void WentOn();
    /// No search is left to be made.
    void Ended();
    void Failed(const QString& reason);

private:
    QString List() const;
    void SetGoing(bool going) const;
    void Begin(const SearchWish& wish);
    void MemberEnded(QProcess* member);
    void AskRows();

    Parts parts_;
    std::vector<std::unique_ptr<QProcess>> members_;
    std::vector<SearchProgress> rows_;
    QTimer look_;
    QTimer patience_;
    QString trouble_; // of the member that ended last
    bool stopping_ = false;
    bool ended_ = false; // the rows are still to be asked for the last time
};

} // namespace Brindle
