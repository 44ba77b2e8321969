#pragma once

#include "core/SiteAdapter.h"
#include "discovery/AnyPage.h"
#include "ui/teach/AnyPageBar.h"
#include "ui/teach/Teaching.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace Brindle {

/// What is chosen in the site selector, as far as reading unknown pages goes.
struct ChosenSite {
    bool AnyWebsite = false;
    std::optional<RecipeEntry> Taught;        ///< a directory that was taught
    std::shared_ptr<const SiteAdapter> Known; ///< one of the others
    QString Broken;                           ///< why a directory that was taught cannot be read any more
    QString Label;
};

/// Looks at the pages that a person opens and says in the bar above them what the program sees: of any website how many
/// businesses, of a taught directory what does not fit any more, of the others when their list markers are missing.
class AnyPageWatch : public QObject {
    Q_OBJECT

public:
    /// `busy`: while it is true nothing is looked at.
    AnyPageWatch(EmbeddedBrowser& browser, AnyPageBar& bar, Teaching& teaching, std::function<ChosenSite()> chosen,
                 std::function<bool()> busy, QObject* parent = nullptr);

    void ApplyTexts(const WindowTexts& texts, const QStringList& captions);
    /// Looks soon; when another site is chosen, a page has come.
    void LookSoon();
    /// A harvest has ended that found so much; until another page comes, the bar says what is amiss with that.
    void HarvestEnded(const RecipeCounts& found);
    /// Looks now; handles messages while the page is read.
    void Look();

Q_SIGNALS:
    /// Get Data was pressed in the bar; `asAnyWebsite`: for a directory that cannot read the page itself.
    void HarvestWanted(bool asAnyWebsite);

private:
    void SayOfAny(const AnyPageReading& reading);
    void SayOfTaught(const RecipeEntry& recipe);
    void SayWhatIsBroken(const QString& reason);
    void SayOfKnown(const ChosenSite& site);
    void ShowCandidate();
    void ScrollToCandidate();
    void Frame(const std::vector<PageRecord>& records);
    QString DriftText(const RecipeCounts& taught, const RecipeCounts& seen) const;
    QString FieldsOf(const std::vector<PageRecord>& records) const;

    EmbeddedBrowser& browser_;
    AnyPageBar& bar_;
    Teaching& teaching_;
    std::function<ChosenSite()> chosen_;
    std::function<bool()> busy_;
    WindowTexts texts_;
    QStringList captions_ = EnglishCaptions();
    QTimer tmrLook_;
    QElapsedTimer sinceLook_;
    std::shared_ptr<PointedPage> page_;
    std::vector<ListCandidate> candidates_; // where the program is not sure
    size_t candidate_ = 0;
    std::optional<RecipeCounts> harvested_;
    bool asAnyWebsite_ = false;
    bool looking_ = false;
};

} // namespace Brindle
