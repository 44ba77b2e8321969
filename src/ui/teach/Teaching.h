#pragma once

#include "core/EmbeddedBrowser.h"
#include "i18n/WindowTexts.h"
#include "recipes/RecipeFolders.h"
#include "recipes/TeachSession.h"
#include "ui/teach/PageOverlay.h"
#include "ui/teach/PointedPage.h"
#include "ui/teach/TeachPanel.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <optional>

namespace Brindle {

/// Teaching a directory by pointing at its page: connects the page that a browser shows, the lights above it, the side
/// panel and what is learned. Leaving it, by saving or not, leaves the page as it was.
class Teaching : public QObject {
    Q_OBJECT

public:
    /// `view`: what the browser shows. `userFolder`: gives the folder where taught recipes are kept.
    Teaching(EmbeddedBrowser& browser, QWidget* view, TeachPanel& panel, std::function<QString()> userFolder,
             QObject* parent = nullptr);

    void ApplyTexts(const WindowTexts& texts, const QStringList& captions);

    /// Begins on the page that is shown. `mend`: the recipe that does not fit any more, and its code; `recordSelector`:
    /// the list to begin with where the program is not sure of one. False, with the reason in `Problem`, when there is
    /// no page.
    bool Begin(const std::optional<RecipeEntry>& mend = {}, const QString& recordSelector = {});
    bool Active() const { return session_.has_value(); }
    /// Ends without saving; nothing happens when it is not active.
    void Leave();
    const QString& Problem() const { return problem_; }
    const TeachSession* Session() const { return session_ ? &*session_ : nullptr; }

    /// Frames the records of a page while nobody teaches; empty: none.
    void FrameRecords(std::shared_ptr<PointedPage> page, std::vector<std::pair<NodeIndex, NodeIndex>> records);

    /// Asks the user which field an element is, the likely ones first: -1 none, 14 the next page, 15 the details page.
    /// A menu at the mouse unless a test answers.
    std::function<int(const std::vector<Field>& likely)> AskField;
    /// Fetches a page as a harvest does, while messages are handled; false when it cannot be had. Without it the pages
    /// of the businesses cannot be taught.
    std::function<bool(const QString& address, QString& html)> FetchPage;
    /// Ends such a transfer.
    std::function<void()> CancelFetch;

Q_SIGNALS:
    void Begun();
    /// A directory was saved; its code.
    void Saved(const QString& code);
    void Left();
    /// The page whose records are framed has changed.
    void PageChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // What the browser shows, or is about to show.
    enum class Place : quint8 { List, ToOwnPage, OwnPage, ToList };

    void PointAt(const QPointF& place);
    void Hover(const QPointF& place);
    void Choose(NodeIndex element, int what);
    void Changed();
    QString NameByItself() const;
    void Save();
    void Follow();
    void TakePage();
    void ShowOwnPage();
    void BackToList();
    void ReturnToList();
    void Navigated(const QString& address);
    void Arrive();
    void AskAbout();
    int AskByMenu(const std::vector<Field>& likely) const;

    EmbeddedBrowser& browser_;
    TeachPanel& panel_;
    std::function<QString()> userFolder_;
    QPointer<PageOverlay> overlay_;
    std::shared_ptr<PointedPage> page_;
    std::optional<TeachSession> session_;
    std::optional<RecipeEntry> mended_;
    QString address_;
    QString ownAddress_; // of the business's page that is shown
    std::vector<OwnPage> ownPages_;
    Place place_ = Place::List;
    int lesson_ = 0; // another number for each
    QString problem_;
    WindowTexts texts_;
    QStringList captions_ = EnglishCaptions();
    QTimer tmrFollow_;
    std::vector<std::pair<NodeIndex, NodeIndex>> records_;
    std::vector<std::pair<NodeIndex, QString>> marks_;
    std::vector<NodeIndex> likes_;
    NodeIndex hovered_ = noNode;
    bool pointingAtNext_ = false;
    bool asked_ = false;   // where the elements are
    bool rebuilt_ = false; // the page is another document than the one that was read
};

} // namespace Brindle
