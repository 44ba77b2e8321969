#include "ui/teach/Teaching.h"

#include "core/Errors.h"
#include "discovery/SavedPage.h"
#include "recipes/RecipeFile.h"
#include "toolkit/PageAddress.h"
#include "ui/teach/TfrmAboutDirectory.h"
#include "ui/teach/TfrmDirectories.h"

#include <QCursor>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QUrl>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int followInterval = 80; // ms between two looks at where things are
constexpr int loadInterval = 100;  // ms between two looks whether a page has come
constexpr qsizetype mostOwnPages = 3;
constexpr int nextPage = FieldCount;
constexpr int detailsPage = FieldCount + 1;

} // namespace

Teaching::Teaching(EmbeddedBrowser& browser, QWidget* view, TeachPanel& panel, std::function<QString()> userFolder,
                   QObject* parent)
    : QObject(parent), browser_(browser), panel_(panel), userFolder_(std::move(userFolder)) {
    AskField = [this](const std::vector<Field>& likely) { return AskByMenu(likely); };
    if (browser.Pointing()) {
        overlay_ = new PageOverlay(view);
        overlay_->setObjectName(u"PageOverlay");
        overlay_->hide();
        connect(overlay_, &PageOverlay::Hovered, this, &Teaching::Hover);
        connect(overlay_, &PageOverlay::Clicked, this, &Teaching::PointAt);
        connect(overlay_, &PageOverlay::MarkClosed, this, [this](const QString& caption) {
            if (const qsizetype column = captions_.indexOf(caption); session_ && column >= 0) {
                session_->Forget(static_cast<Field>(column));
                Changed();
            }
        });
        connect(overlay_, &PageOverlay::MouseGone, this, [this] {
            hovered_ = noNode;
            likes_.clear();
        });
    }
    panel_.SetPointing(overlay_ != nullptr);
    if (!overlay_) {
        view->installEventFilter(this);
        for (QWidget* const part : view->findChildren<QWidget*>())
            part->installEventFilter(this);
    }
    tmrFollow_.setInterval(followInterval);
    connect(&tmrFollow_, &QTimer::timeout, this, &Teaching::Follow);
    connect(&panel_, &TeachPanel::TextChosen, this,
            [this](NodeIndex element, Field column) { Choose(element, static_cast<int>(column)); });
    connect(&panel_, &TeachPanel::NextChosen, this, [this](NodeIndex element) { Choose(element, nextPage); });
    connect(&panel_, &TeachPanel::DetailsChosen, this, [this](NodeIndex element) { Choose(element, detailsPage); });
    connect(&panel_, &TeachPanel::TextHighlighted, this, [this](NodeIndex element) {
        if (!session_ || element == noNode)
            return;
        likes_ = session_->LikesOf(element);
        if (PagePointing* const pointing = browser_.Pointing(); pointing && page_)
            if (const int number = page_->NumberOf(element); number >= 0 && panel_.isVisible())
                pointing->ScrollTo(number);
    });
    connect(&panel_, &TeachPanel::FieldForgotten, this, [this](Field column) {
        if (session_) {
            session_->Forget(column);
            Changed();
        }
    });
    connect(&panel_, &TeachPanel::PointAtNext, this, [this](bool point) {
        pointingAtNext_ = point && overlay_;
        if (pointingAtNext_)
            panel_.Say(texts_.Text(WindowText::TeachPointNextHint));
    });
    connect(&panel_, &TeachPanel::NextForgotten, this, [this] {
        if (session_) {
            session_->ForgetNext();
            Changed();
        }
    });
    connect(&panel_, &TeachPanel::DetailsWanted, this, [this](bool wanted) {
        if (session_)
            session_->ReadDetails(wanted);
    });
    connect(&panel_, &TeachPanel::SaveClicked, this, &Teaching::Save);
    connect(&panel_, &TeachPanel::LeaveClicked, this, &Teaching::Leave);
    connect(&panel_, &TeachPanel::OwnPageWanted, this, [this](bool wanted) { wanted ? ShowOwnPage() : BackToList(); });
    connect(&panel_, &TeachPanel::AboutClicked, this, &Teaching::AskAbout);
    connect(&browser_, &EmbeddedBrowser::NavigateComplete, this, &Teaching::Navigated);
}

// A page that is shown as text alone: its links do nothing meanwhile.
bool Teaching::eventFilter(QObject* watched, QEvent* event) {
    const auto* const key = event->type() == QEvent::KeyPress ? static_cast<const QKeyEvent*>(event) : nullptr;
    const bool opens = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
                       event->type() == QEvent::MouseButtonDblClick ||
                       (key && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter));
    return (session_ && opens) || QObject::eventFilter(watched, event);
}

void Teaching::ApplyTexts(const WindowTexts& texts, const QStringList& captions) {
    texts_ = texts;
    captions_ = captions;
    panel_.ApplyTexts(texts, captions);
    if (session_)
        Changed();
}

bool Teaching::Begin(const std::optional<RecipeEntry>& mend, const QString& recordSelector) {
    problem_.clear();
    address_ = browser_.LocationAddress();
    const QPointer<Teaching> self(this);
    try {
        auto page = std::make_shared<PointedPage>(browser_); // handles messages while it waits
        if (!self)
            return false;
        if (!page->Tree())
            throw Failure(texts_.Text(WindowText::TeachNoPage));
        page_ = std::move(page);
        mended_ = mend;
        session_.emplace(page_->Tree(), address_, mend ? std::optional(mend->What) : std::nullopt);
        if (!recordSelector.isEmpty() && session_->Reading().Records.empty())
            session_->TakeList(recordSelector);
    } catch (const Failure& failure) {
        if (self)
            problem_ = failure.Message();
        return false;
    }
    panel_.SetName(mend ? mend->What.Name : NameByItself());
    pointingAtNext_ = false;
    place_ = Place::List;
    ++lesson_;
    if (overlay_) {
        overlay_->SetPointing(true);
        overlay_->show();
        overlay_->raise();
    }
    tmrFollow_.start();
    Changed();
    Q_EMIT Begun();
    return true;
}

void Teaching::Leave() {
    if (!session_)
        return;
    panel_.Detach();
    session_.reset();
    mended_.reset();
    ++lesson_;
    FrameRecords(nullptr, {});
    ReturnToList();
    Q_EMIT Left();
}

void Teaching::FrameRecords(std::shared_ptr<PointedPage> page, std::vector<std::pair<NodeIndex, NodeIndex>> records) {
    if (session_)
        return;
    page_ = std::move(page);
    records_ = std::move(records);
    marks_.clear();
    likes_.clear();
    hovered_ = noNode;
    if (!overlay_)
        return;
    overlay_->SetPointing(false);
    overlay_->Clear();
    overlay_->setVisible(page_ != nullptr && !records_.empty());
    if (overlay_->isVisibleTo(overlay_->parentWidget())) {
        overlay_->raise();
        tmrFollow_.start();
        Follow();
    } else {
        tmrFollow_.stop();
    }
}

void Teaching::Changed() {
    records_.clear();
    marks_.clear();
    if (!session_->OnOwnPage())
        for (const PageRecord& record : session_->Reading().Records)
            if (record.Begin != noNode)
                records_.emplace_back(record.Begin, record.End);
    for (const RecipeField& row : session_->OnOwnPage() ? session_->What().DetailsFields : session_->What().Fields)
        for (const NodeIndex element : session_->ElementsOf(row.Column))
            marks_.emplace_back(element, captions_.value(static_cast<int>(row.Column)));
    panel_.Show(*session_);
    Follow();
}

// Asks the page where everything is now. One question at a time: a page that is slow to answer is not asked again.
void Teaching::Follow() {
    PagePointing* const pointing = browser_.Pointing();
    if (!pointing || !overlay_ || !page_ || asked_)
        return;
    if (rebuilt_ && session_)
        TakePage();
    if (!page_)
        return;
    std::vector<std::vector<int>> groups;
    for (const auto& [begin, end] : records_)
        groups.push_back(page_->NumbersWithin(begin, end));
    std::vector<QString> captions;
    for (const auto& [element, caption] : marks_) {
        groups.push_back({page_->NumberOf(element)});
        captions.push_back(caption);
    }
    for (const NodeIndex element : likes_)
        groups.push_back({page_->NumberOf(element)});
    asked_ = true;
    pointing->AskPlaces(groups, [this, page = page_, records = records_.size(),
                                 captions = std::move(captions)](const ShownPlaces& shown) {
        asked_ = false;
        if (page != page_ || !overlay_)
            return;
        rebuilt_ = shown.Changed;
        if (rebuilt_ && !session_)
            Q_EMIT PageChanged();
        const auto& places = shown.Places;
        if (places.size() < records + captions.size())
            return;
        const auto at = [&places](size_t index) { return places.begin() + static_cast<std::ptrdiff_t>(index); };
        overlay_->ShowRecords({at(0), at(records)});
        std::vector<PageOverlay::Mark> marks;
        for (size_t i = 0; i < captions.size(); ++i)
            marks.push_back({places[records + i], i < captions.size() ? captions[i] : QString()});
        overlay_->ShowMarks(std::move(marks));
        overlay_->ShowLikes({at(records + captions.size()), places.end()});
    });
}

// The page has rebuilt itself: what was taught is found again in what it is now.
void Teaching::TakePage() {
    rebuilt_ = false;
    const QPointer<Teaching> self(this);
    asked_ = true; // messages are handled meanwhile
    try {
        auto page = std::make_shared<PointedPage>(browser_);
        if (!self)
            return;
        asked_ = false;
        if (!session_ || !page->Tree())
            return;
        page_ = std::move(page);
        session_->SetPage(page_->Tree());
        likes_.clear();
        hovered_ = noNode;
        Changed();
    } catch (const Failure& failure) {
        if (self) {
            asked_ = false;
            panel_.Say(failure.Message());
        }
    }
}

void Teaching::Hover(const QPointF& place) {
    PagePointing* const pointing = browser_.Pointing();
    if (!session_ || !pointing)
        return;
    pointing->AskElementAt(place, [this, page = page_](int number) {
        if (!session_ || page != page_)
            return;
        const NodeIndex element = page_->NodeOf(number);
        if (element == hovered_)
            return;
        hovered_ = element;
        likes_ = element == noNode ? std::vector<NodeIndex>() : session_->LikesOf(element);
        Follow();
    });
}

void Teaching::PointAt(const QPointF& place) {
    PagePointing* const pointing = browser_.Pointing();
    if (!session_ || !pointing)
        return;
    pointing->AskElementAt(place, [this, page = page_](int number) {
        const NodeIndex element = session_ && page == page_ ? page_->NodeOf(number) : noNode;
        if (element == noNode)
            return;
        if (std::exchange(pointingAtNext_, false))
            return Choose(element, nextPage);
        // The menu handles messages; it is asked for when the engine's answer has been taken.
        QTimer::singleShot(0, this, [this, element, page] {
            if (!session_ || page != page_)
                return;
            const QPointer<Teaching> self(this);
            const int what = AskField(session_->LikelyFields(element));
            if (self && session_ && page == page_ && what >= 0)
                Choose(element, what);
        });
    });
}

int Teaching::AskByMenu(const std::vector<Field>& likely) const {
    QMenu menu(overlay_);
    menu.setObjectName(u"TeachMenu");
    menu.addSection(texts_.Text(WindowText::TeachThisIs));
    for (size_t i = 0; i < likely.size(); ++i) {
        if (i == 3)
            menu.addSeparator();
        menu.addAction(captions_.value(static_cast<int>(likely[i])))->setData(static_cast<int>(likely[i]));
    }
    if (!session_->OnOwnPage()) {
        menu.addSeparator();
        menu.addAction(texts_.Text(WindowText::TeachIsNext))->setData(nextPage);
        menu.addAction(texts_.Text(WindowText::TeachIsDetails))->setData(detailsPage);
    }
    menu.setActiveAction(menu.actions().value(1));
    const QAction* const chosen = menu.exec(QCursor::pos());
    return chosen ? chosen->data().toInt() : -1;
}

void Teaching::Choose(NodeIndex element, int what) {
    if (!session_)
        return;
    pointingAtNext_ = false;
    if (what == nextPage)
        session_->SayNext(element);
    else if (what == detailsPage)
        session_->SayDetails(element);
    else
        session_->Say(static_cast<Field>(what), element);
    Changed();
}

// A business's own page is fetched as a harvest does, and shown to be pointed at. Those of two more businesses tell
// what holds for others.
void Teaching::ShowOwnPage() {
    if (!session_ || place_ != Place::List || !FetchPage)
        return;
    place_ = Place::ToOwnPage;
    panel_.Say(texts_.Text(WindowText::TeachOwnPageWait));
    const QPointer<Teaching> self(this);
    const int lesson = lesson_;
    ownPages_.clear();
    QString reason;
    for (const QString& address : session_->OwnPages(mostOwnPages)) {
        QString html;
        const bool fetched = FetchPage(address, html); // handles messages
        if (!self || lesson != lesson_)
            return;
        try {
            if (fetched)
                ownPages_.push_back({std::make_shared<const PageTree>(html), address});
        } catch (const Failure& failure) {
            reason = failure.Message();
        }
        if (!fetched && reason.isEmpty())
            reason = texts_.With(WindowText::TeachOwnPageLost, {address});
    }
    if (ownPages_.empty()) {
        place_ = Place::List;
        return panel_.Say(reason.isEmpty() ? texts_.Text(WindowText::TeachNoLink) : reason);
    }
    page_.reset(); // nothing to point at meanwhile
    if (overlay_)
        overlay_->Clear();
    browser_.Follow(ownPages_.front().Url);
}

void Teaching::BackToList() {
    if (!session_ || place_ != Place::OwnPage)
        return;
    place_ = Place::ToList;
    page_.reset();
    if (overlay_)
        overlay_->Clear();
    browser_.GoBack();
}

// A lesson that ends on another page than it began on.
void Teaching::ReturnToList() {
    const bool isAway = std::exchange(place_, Place::List) != Place::List;
    ownPages_.clear();
    if (!isAway)
        return;
    if (CancelFetch)
        CancelFetch();
    browser_.Stop();
    if (WithoutFragment(browser_.LocationAddress()) == WithoutFragment(ownAddress_))
        browser_.GoBack();
    ownAddress_.clear();
}

void Teaching::Navigated(const QString& address) {
    if (!session_)
        return FrameRecords(nullptr, {});
    const QString expected = place_ == Place::OwnPage ? ownAddress_ : address_;
    switch (place_) {
    case Place::ToOwnPage:
        ownAddress_ = address; // after redirects
        return Arrive();
    case Place::ToList:
        // The page may have made a history of its own.
        if (WithoutFragment(address) != WithoutFragment(address_))
            return browser_.Navigate(address_);
        return Arrive();
    case Place::List:
    case Place::OwnPage:
        // Another page is another lesson.
        if (WithoutFragment(address) != WithoutFragment(expected)) {
            place_ = Place::List; // where the user went is where he stays
            Leave();
        }
    }
}

// The page to which the lesson goes is there, as soon as it is whole.
void Teaching::Arrive() {
    if (!session_ || place_ == Place::List || place_ == Place::OwnPage)
        return;
    const int lesson = lesson_;
    if (browser_.Busy()) {
        QTimer::singleShot(loadInterval, this, [this, lesson] {
            if (lesson == lesson_)
                Arrive();
        });
        return;
    }
    const QPointer<Teaching> self(this);
    const bool own = place_ == Place::ToOwnPage;
    place_ = own ? Place::OwnPage : Place::List;
    asked_ = true; // messages are handled meanwhile
    try {
        auto page = std::make_shared<PointedPage>(browser_);
        if (!self || lesson != lesson_)
            return;
        if (!page->Tree())
            throw Failure(texts_.With(WindowText::TeachOwnPageLost, {browser_.LocationAddress()}));
        page_ = std::move(page);
        if (own)
            session_->OpenOwnPage({page_->Tree(), ownAddress_}, std::exchange(ownPages_, {}));
        else
            session_->CloseOwnPage(page_->Tree());
        asked_ = false;
        rebuilt_ = false;
        likes_.clear();
        hovered_ = noNode;
        Changed();
    } catch (const Failure& failure) {
        if (!self || lesson != lesson_)
            return;
        asked_ = false;
        if (own)
            BackToList();
        else
            Leave();
        panel_.Say(failure.Message());
    }
}

void Teaching::AskAbout() {
    if (!session_)
        return;
    const QPointer<Teaching> self(this);
    const int lesson = lesson_;
    TfrmAboutDirectory dialog({session_->What().Country, session_->What().Search, session_->Address()}, texts_,
                              panel_.window());
    const bool taken = dialog.exec() == QDialog::Accepted;
    if (!self || lesson != lesson_ || !taken)
        return;
    session_->SetAbout(dialog.Country(), dialog.Search());
    Changed();
}

// The website's, or that of the file where a page from disk does not say which website it is of.
QString Teaching::NameByItself() const {
    return session_->Address() == UnknownWebsite ? QFileInfo(QUrl(address_).path()).completeBaseName()
                                                 : QUrl(session_->Address()).host();
}

void Teaching::Save() {
    if (!session_ || session_->Reading().Records.empty())
        return;
    Recipe recipe = session_->What();
    recipe.Name = panel_.Name().isEmpty() ? NameByItself() : panel_.Name();
    if (recipe.Home.isEmpty())
        recipe.Home =
            QUrl(session_->Address()).adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment).toString();
    const QString userFolder = userFolder_();
    const QDir folder(userFolder);
    const QString code = mended_ ? mended_->Code : FreeRecipeCode(recipe.Name, userFolder);
    try {
        if (!folder.mkpath(u"."_s))
            throw SaveError(u"%1: the folder cannot be made"_s.arg(QDir::toNativeSeparators(userFolder)));
        SaveRecipe(recipe, folder.filePath(code + u".toml"));
    } catch (const Failure& failure) {
        return panel_.Say(failure.Message());
    }
    Leave();
    Q_EMIT Saved(code);
}

} // namespace Brindle
