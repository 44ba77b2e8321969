#include "ui/teach/AnyPageWatch.h"

#include "core/Errors.h"
#include "core/SiteCatalogue.h"
#include "recipes/TeachTexts.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int settleTime = 600;   // ms after which a page that has come is looked at
constexpr qint64 restTime = 2000; // ms at least between two looks at a page that changes
constexpr size_t mostCandidates = 3;
constexpr int fewestRecords = 3;

} // namespace

AnyPageWatch::AnyPageWatch(EmbeddedBrowser& browser, AnyPageBar& bar, Teaching& teaching,
                           std::function<ChosenSite()> chosen, std::function<bool()> busy, QObject* parent)
    : QObject(parent),
      browser_(browser),
      bar_(bar),
      teaching_(teaching),
      chosen_(std::move(chosen)),
      busy_(std::move(busy)) {
    tmrLook_.setSingleShot(true);
    tmrLook_.setInterval(settleTime);
    connect(&tmrLook_, &QTimer::timeout, this, &AnyPageWatch::Look);
    connect(&browser_, &EmbeddedBrowser::NavigateComplete, this, [this] {
        harvested_.reset();
        LookSoon();
    });
    connect(&bar_, &AnyPageBar::HarvestClicked, this, [this] { Q_EMIT HarvestWanted(asAnyWebsite_); });
    connect(&bar_, &AnyPageBar::TeachClicked, this, [this] {
        const QString list = candidates_.empty() ? QString() : candidates_[candidate_].Selector;
        if (!teaching_.Begin(chosen_().Taught, list))
            bar_.Show(teaching_.Problem(), false);
    });
    connect(&bar_, &AnyPageBar::Stepped, this, [this](int by) {
        const size_t count = candidates_.size();
        if (count > 0) {
            candidate_ = (candidate_ + count + static_cast<size_t>(by + static_cast<int>(count))) % count;
            ShowCandidate();
            ScrollToCandidate();
        }
    });
    connect(&teaching_, &Teaching::Begun, this, [this] { bar_.hide(); });
    connect(&teaching_, &Teaching::Left, this, &AnyPageWatch::LookSoon);
    // A page that goes on changing is looked at again, but not all the time.
    connect(&teaching_, &Teaching::PageChanged, this, [this] {
        if (!tmrLook_.isActive() && sinceLook_.isValid() && sinceLook_.elapsed() > restTime)
            LookSoon();
    });
}

void AnyPageWatch::ApplyTexts(const WindowTexts& texts, const QStringList& captions) {
    texts_ = texts;
    captions_ = captions;
    bar_.ApplyTexts(texts);
    LookSoon();
}

void AnyPageWatch::LookSoon() {
    tmrLook_.start();
}

void AnyPageWatch::HarvestEnded(const RecipeCounts& found) {
    harvested_ = found;
    LookSoon();
}

void AnyPageWatch::Look() {
    if (looking_)
        return LookSoon(); // what is being read may be the page before
    if (busy_())
        bar_.hide(); // what it says is of before the harvest
    if (teaching_.Active() || busy_())
        return;
    candidates_.clear();
    candidate_ = 0;
    asAnyWebsite_ = false;
    const ChosenSite site = chosen_();
    const bool webPage =
        browser_.LocationAddress().startsWith(u"http") || browser_.LocationAddress().startsWith(u"file:");
    if (!webPage || browser_.Busy()) {
        bar_.hide();
        teaching_.FrameRecords(nullptr, {});
        if (webPage)
            LookSoon();
        return;
    }
    const QPointer<AnyPageWatch> self(this);
    looking_ = true;
    try {
        auto page = std::make_shared<PointedPage>(browser_);
        if (!self)
            return;
        looking_ = false;
        if (teaching_.Active() || busy_())
            return;
        if (browser_.Busy())
            return LookSoon();
        sinceLook_.start();
        page_ = std::move(page);
        bar_.OfferMending(site.Taught.has_value());
        if (!page_->Tree())
            bar_.hide();
        else if (!site.Broken.isEmpty())
            SayWhatIsBroken(site.Broken);
        else if (site.Taught)
            SayOfTaught(*site.Taught);
        else if (site.AnyWebsite)
            SayOfAny(ReadAnyPage(*page_->Tree(), browser_.LocationAddress()));
        else
            SayOfKnown(site);
    } catch (const Failure& failure) {
        if (!self)
            return;
        looking_ = false;
        bar_.Show(failure.Message(), false);
    }
}

QString AnyPageWatch::FieldsOf(const std::vector<PageRecord>& records) const {
    QStringList fields;
    for (int column = 0; column < FieldCount; ++column)
        if (std::any_of(records.begin(), records.end(),
                        [column](const PageRecord& record) { return !record.Fields.At(column).isEmpty(); }))
            fields.append(captions_.value(column));
    return fields.join(u", "_s);
}

void AnyPageWatch::Frame(const std::vector<PageRecord>& records) {
    std::vector<std::pair<NodeIndex, NodeIndex>> places;
    for (const PageRecord& record : records)
        if (record.Begin != noNode)
            places.emplace_back(record.Begin, record.End);
    teaching_.FrameRecords(page_, std::move(places));
}

void AnyPageWatch::SayOfAny(const AnyPageReading& reading) {
    if (!reading.Records.empty()) {
        bar_.Show(
            texts_.With(WindowText::AnySees, {QString::number(reading.Records.size()), FieldsOf(reading.Records)}),
            true);
        return Frame(reading.Records);
    }
    // With the selectors that tell where they are, which takes longer than seeing that nothing is sure.
    const AnyPageReading whole = ReadAnyPage(*page_->Tree(), browser_.LocationAddress(), Selectors::Made);
    for (const ListCandidate& candidate : whole.Candidates)
        if (candidates_.size() < mostCandidates && candidate.Records >= fewestRecords && !candidate.Selector.isEmpty())
            candidates_.push_back(candidate);
    if (!candidates_.empty())
        return ShowCandidate();
    bar_.Show(texts_.Text(WindowText::AnySeesNothing), false);
    Frame({});
}

void AnyPageWatch::ShowCandidate() {
    const ListCandidate& candidate = candidates_[candidate_];
    bar_.Show(texts_.With(WindowText::AnyUnsure, {QString::number(candidate.Records), QString::number(candidate_ + 1),
                                                  QString::number(candidates_.size())}),
              false, static_cast<int>(candidates_.size()));
    std::vector<PageRecord> records;
    for (const NodeIndex node : Selected(*page_->Tree(), candidate.Selector))
        records.push_back({{}, node, page_->Tree()->End(node)});
    Frame(records);
}

// The list that is stepped to may be anywhere on the page.
void AnyPageWatch::ScrollToCandidate() {
    PagePointing* const pointing = browser_.Pointing();
    const std::vector<NodeIndex> records = Selected(*page_->Tree(), candidates_[candidate_].Selector);
    const int number = records.empty() ? -1 : page_->NumberOf(records.front());
    if (pointing && number >= 0)
        pointing->ScrollTo(number);
}

void AnyPageWatch::SayWhatIsBroken(const QString& reason) {
    bar_.Show(reason, false);
    Frame({});
}

void AnyPageWatch::SayOfTaught(const RecipeEntry& recipe) {
    const RecipeReading reading = RecipeReader(recipe.What).Read(*page_->Tree(), browser_.LocationAddress());
    const QString drift = DriftText(recipe.What.Taught, harvested_.value_or(reading.Counts));
    QString line =
        reading.Records.empty()
            ? texts_.Text(WindowText::AnySeesNothing)
            : texts_.With(WindowText::AnySees, {QString::number(reading.Records.size()), FieldsOf(reading.Records)});
    if (!drift.isEmpty())
        line += u"\n" + texts_.With(WindowText::AnyDrift, {drift});
    bar_.Show(line, !reading.Records.empty());
    Frame(reading.Records);
}

QString AnyPageWatch::DriftText(const RecipeCounts& taught, const RecipeCounts& seen) const {
    QStringList lines;
    const auto fewer = [&](int was) {
        lines.append(texts_.With(WindowText::AnyFewer, {QString::number(seen.Records), QString::number(was)}));
    };
    // The last page of a list is short, a whole harvest is not.
    if (harvested_ && seen.Records > 0 && seen.Records * 2 < taught.Records)
        fewer(taught.Records);
    for (const RecipeDrift& drift : DriftsOf(taught, seen)) {
        if (drift.Column < 0)
            fewer(drift.Was);
        else
            lines.append(
                texts_.With(WindowText::AnyEmptier,
                            {captions_.value(drift.Column), QString::number(drift.Seen), QString::number(drift.OfSeen),
                             QString::number(drift.Was), QString::number(drift.OfWas)}));
    }
    return lines.join(u"; "_s);
}

void AnyPageWatch::SayOfKnown(const ChosenSite& site) {
    const auto leave = [this] {
        bar_.hide();
        Frame({});
    };
    if (!site.Known || site.Known->Layouts.empty())
        return leave();
    const QString body = browser_.BodyOuterHtml(site.Known->Form);
    if (MissingListMarkers(body, *site.Known).isEmpty())
        return leave();
    const AnyPageReading reading = ReadAnyPage(*page_->Tree(), browser_.LocationAddress());
    if (reading.Records.empty())
        return leave();
    asAnyWebsite_ = true;
    bar_.Show(texts_.With(WindowText::AnyOtherWay, {site.Label, QString::number(reading.Records.size())}), true);
    Frame(reading.Records);
}

} // namespace Brindle
