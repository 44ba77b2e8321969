#include "discovery/RecordsReader.h"

#include "discovery/RecordsContacts.h"
#include "discovery/RecordsNames.h"
#include "discovery/RecordsPlaces.h"
#include "discovery/RecordsSelectors.h"

#include <QHash>
#include <QSet>
#include <QUrl>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Houses that give mail to everybody, by the first part of their names.
bool IsMailForEverybody(const QString& host) {
    static const QSet<QString> houses = [] {
        const QStringList names = u"gmail googlemail hotmail outlook yahoo ymail gmx web aol icloud me live msn mail "
                                  u"protonmail proton t-online freenet "
                                  u"libero virgilio alice tiscali tin orange wanadoo free sfr laposte bluewin hispeed "
                                  u"telenet skynet proximus ziggo kpn "
                                  u"planet xs4all btinternet btopenworld sky talktalk virginmedia ntlworld eircom "
                                  u"comcast verizon att sbcglobal bellsouth "
                                  u"cox bigpond optusnet xtra rogers shaw telus sympatico telefonica terra uol bol ig "
                                  u"sapo clix wp o2 onet interia op "
                                  u"seznam centrum azet freemail citromail telia spray bredband online start luukku "
                                  u"kolumbus yandex rambler ukr abv "
                                  u"otenet in walla bezeqint netvision qq 163 126 sina naver hanmail daum docomo ezweb "
                                  u"softbank rediffmail pacbell "
                                  u"earthlink"_s.split(u' ');
        return QSet<QString>(names.begin(), names.end());
    }();
    return houses.contains(host.section(u'.', 0, 0));
}

// What the records of a list have, as shares of them.
struct Shares {
    double Phone = 0;
    double Address = 0; ///< with a street or postal code; half for one without the other
    double Place = 0;   ///< a town at least
    double Website = 0;
    double Mail = 0;
    double Map = 0;
    double Category = 0;
    double Details = 0;
    double Rating = 0;
    double Price = 0;
    double Date = 0;
    double Street = 0;
    double Jobs = 0;
    double Trades = 0; ///< a category that names a kind of business
    double Pictures = 0;
    double Length = 0; ///< of the names, on the average
    double Kinds = 0;  ///< a category that is a trade and nothing else
    double Questions = 0;
    double Towns = 0;  ///< named as the town of their own address
    double House = 0;  ///< mail of the page's own site, or numbers of one exchange: the people of one house
    HintSet Often = 0; ///< what at least half of the records say of themselves
};

bool HasStreetNumber(QStringView street) {
    return std::any_of(street.begin(), street.end(), [](QChar c) { return c.isDigit(); });
}

class ListReader {
public:
    ListReader(const PageAnnotations& page, const Signatures& signatures, const RecordList& list,
               const PageSubject& subject)
        : page_(page), subject_(subject), columns_(page, signatures, list), names_(columns_) {}

    RecordsReading Read() {
        if (names_.Score() < 1.2) {
            reading_.Verdict = u"no texts that could be names"_s;
            return std::move(reading_);
        }
        ReadFields();
        if (reading_.Records.size() < 2) {
            reading_.Verdict = u"fewer than two records with a name"_s;
            return std::move(reading_);
        }
        Judge();
        return std::move(reading_);
    }

    /// Selectors are made for the list that is taken only.
    void Describe(RecordsReading& reading, Selectors selectors) const {
        const RecordList& list = columns_.List;
        std::vector<NodeIndex> roots;
        for (const RecordRange& range : list.Records)
            roots.push_back(range.Begin);
        if (selectors == Selectors::Made)
            reading.Selector = SelectorOfElements(page_.Page, roots);
        for (int field = 0; field < FieldCount; ++field) {
            FieldReading one;
            one.Column = static_cast<Field>(field);
            for (const PageRecord& record : reading.Records)
                one.Filled += !record.Fields.At(field).isEmpty();
            if (one.Filled == 0)
                continue;
            one.Why = WhyOf(one.Column);
            if (selectors == Selectors::Left) {
                reading.Fields.push_back(one);
                continue;
            }
            std::vector<NodeIndex> elements;
            for (const auto& nodes : nodes_) {
                NodeIndex node = nodes[static_cast<size_t>(field)];
                if (node != noNode && !page_.Page.IsElement(node))
                    node = page_.Page.Parent(node);
                elements.push_back(node);
            }
            one.Selector = SelectorWithin(page_.Page, list, elements);
            reading.Fields.push_back(one);
        }
    }

private:
    QString WhyOf(Field field) const {
        switch (field) {
        case Field::BusinessName:
            return names_.Why();
        case Field::Category:
            return placesWhy_;
        case Field::FullAddress:
            return u"lines with a postal code, a street, or that call themselves an address"_s;
        case Field::Address:
        case Field::City:
        case Field::State:
        case Field::PostalCode:
        case Field::Country:
            return u"part of the full address, or an element that says so"_s;
        case Field::Phone:
            return u"numbers that the country has, in the text or in tel: links"_s;
        case Field::Fax:
            return u"numbers that are labelled as telefax"_s;
        case Field::Website:
            return u"links to a site that one record alone leads to"_s;
        case Field::Email:
            return u"mailto: links and addresses in the text"_s;
        case Field::MapLink:
            return u"links to a map service"_s;
        case Field::DetailsLink:
            return u"link of the name, or the link to this site that differs from record to record"_s;
        }
        return {};
    }

    void ReadFields() {
        const RecordContacts contacts(columns_);
        RecordPlaces places(columns_);
        std::vector<Lead> leads;
        nodes_.reserve(columns_.Count());
        leads.reserve(columns_.Count());
        reading_.Records.reserve(columns_.Count());
        for (size_t record = 0; record < columns_.Count(); ++record) {
            std::array<NodeIndex, FieldCount> nodes;
            nodes.fill(noNode);
            Lead lead;
            lead.Name = names_.NameOf(record);
            const NodeIndex name = names_.NodeOf(record);
            nodes[static_cast<size_t>(Field::BusinessName)] = name;
            if (const PageLink* const link = names_.DetailsOf(record)) {
                lead.DetailsLink = link->Address;
                nodes[static_cast<size_t>(Field::DetailsLink)] = link->Node;
            }
            contacts.Read(record, name, lead, nodes);
            places.ReadAddress(record, name, lead, nodes);
            ReadReachingTown(record, lead, nodes);
            nodes_.push_back(nodes);
            leads.push_back(std::move(lead));
        }
        places.AgreeOnAddresses(names_, leads, nodes_);
        places.ChooseTown(subject_.Words, leads);
        places.ChooseCategory(subject_.Words, leads);
        placesWhy_ = places.CategoryWhy();
        for (size_t record = 0; record < columns_.Count(); ++record) {
            Lead& lead = leads[record];
            places.ReadTown(record, names_.NodeOf(record), lead, nodes_[record]);
            places.ReadCategory(record, names_.NodeOf(record), lead, nodes_[record]);
            const RecordRange& range = columns_.List.Records[record];
            if (!lead.Name.isEmpty() && !IsButtonText(lead.Name))
                reading_.Records.push_back({std::move(lead), range.Begin, range.End});
        }
        LeaveOutBare();
    }

    // The town of several rows of a table stands in the first of them.
    void ReadReachingTown(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
        const NodeIndex cell = lead.City.isEmpty() ? columns_.ReachingCell(record, Hint::City) : noNode;
        if (cell == noNode)
            return;
        lead.City = page_.TextWithin(cell);
        lead.FullAddress += (lead.FullAddress.isEmpty() ? QString() : u", "_s) + lead.City;
        nodes[static_cast<size_t>(Field::City)] = cell;
    }

    // A menu above the list or a note below it can be built as its entries are.
    void LeaveOutBare() {
        std::vector<PageRecord>& records = reading_.Records;
        const auto bare = [](const PageRecord& record) {
            const Lead& lead = record.Fields;
            return lead.Phone.isEmpty() && lead.Fax.isEmpty() && lead.FullAddress.isEmpty() && lead.Website.isEmpty() &&
                   lead.Email.isEmpty() && lead.Category.isEmpty();
        };
        const auto full = std::count_if(records.begin(), records.end(), [](const PageRecord& record) {
            return !record.Fields.Phone.isEmpty() && !record.Fields.FullAddress.isEmpty();
        });
        if (full < 5 || full * 3 < std::ssize(records) * 2)
            return;
        // A form or a tip of the directory's own between them.
        constexpr HintSet others = Hint::Article | Hint::Advert | Hint::Event | Hint::Similar;
        std::erase_if(records, [&](const PageRecord& record) {
            return record.Fields.Phone.isEmpty() && record.Fields.FullAddress.isEmpty() &&
                   (record.Fields.DetailsLink.isEmpty() || (page_.HintsOf(record.Begin) & others) != 0);
        });
        if (full * 5 < std::ssize(records) * 4)
            return;
        records.erase(std::find_if_not(records.rbegin(), records.rend(), bare).base(), records.end());
        records.erase(records.begin(), std::find_if_not(records.begin(), records.end(), bare));
    }

    Shares Measure() const {
        Shares shares;
        const double count = static_cast<double>(reading_.Records.size());
        std::array<int, 31> hints{};
        struct Trade {
            bool Named = false;
            bool Alone = false;
        };
        QHash<QString, Trade> trades;
        for (const PageRecord& record : reading_.Records) {
            const Lead& lead = record.Fields;
            const NodeFacts& facts = page_.FactsOf(record.Begin);
            shares.Phone += !lead.Phone.isEmpty();
            if (!lead.FullAddress.isEmpty()) {
                const bool street = facts.Streets > 0 || HasStreetNumber(lead.Street);
                const bool code = facts.PostalCodes > 0 || !lead.PostalCode.isEmpty();
                shares.Street += street;
                shares.Address += street && code ? 1 : street || code ? 0.6 : 0;
            }
            shares.Place += !lead.FullAddress.isEmpty() || !lead.City.isEmpty();
            shares.Website += !lead.Website.isEmpty();
            shares.Mail += !lead.Email.isEmpty();
            shares.Map += !lead.MapLink.isEmpty();
            shares.Category += !lead.Category.isEmpty();
            shares.Pictures += HasPicture(record);
            shares.Length += static_cast<double>(lead.Name.size());
            if (!lead.Category.isEmpty()) {
                // Many records have the same trade.
                auto known = trades.constFind(lead.Category);
                if (known == trades.cend())
                    known = trades.insert(lead.Category,
                                          {NamesBusinesses(BareView(lead.Category).View()), IsTrade(lead.Category)});
                shares.Trades += known->Named;
                shares.Kinds += known->Alone;
            }
            shares.House += !lead.Email.isEmpty() &&
                            (lead.Email.endsWith(u'@' + page_.Site) || lead.Email.endsWith(u'.' + page_.Site));
            shares.Details += !lead.DetailsLink.isEmpty();
            shares.Questions += lead.Name.endsWith(u'?') || lead.Name.endsWith(u'\uFF1F');
            shares.Towns += IsTownOfItsAddress(record);
            shares.Rating += facts.Ratings > 0;
            HintSet here = page_.HintsOf(record.Begin);
            shares.Jobs += NamesJobs(BareView(lead.Name).View());
            bool price = false;
            bool date = false;
            CountOthers(record, price, date, here);
            shares.Price += price;
            shares.Date += date;
            for (size_t bit = 0; bit < hints.size(); ++bit)
                hints[bit] += (here >> bit & 1U) != 0;
        }
        for (double* const share :
             {&shares.Phone,    &shares.Address,  &shares.Place,   &shares.Website,   &shares.Mail,
              &shares.Map,      &shares.Category, &shares.Details, &shares.Rating,    &shares.Price,
              &shares.Date,     &shares.Street,   &shares.Jobs,    &shares.Trades,    &shares.Kinds,
              &shares.Pictures, &shares.Length,   &shares.House,   &shares.Questions, &shares.Towns})
            *share /= count;
        for (size_t bit = 0; bit < hints.size(); ++bit)
            if (hints[bit] * 2 >= static_cast<int>(count))
                shares.Often |= 1U << bit;
        return shares;
    }

    bool HasPicture(const PageRecord& record) const {
        for (NodeIndex node = record.Begin; node < record.End && node < record.Begin + 60; ++node)
            if (page_.Page.Is(node, u"img"))
                return true;
        return false;
    }

    // "Boston" above "12 Main St" and "Boston, MA 02110".
    bool IsTownOfItsAddress(const PageRecord& record) const {
        const QString& name = record.Fields.Name;
        if (name.size() < 3)
            return false;
        if (name == record.Fields.City)
            return true;
        const std::vector<TextPiece>& pieces = page_.Lines.Pieces;
        for (auto i = static_cast<size_t>(page_.Lines.PieceFrom(record.Begin));
             i < pieces.size() && pieces[i].Node < record.End; ++i) {
            const auto line = static_cast<size_t>(pieces[i].Line);
            const QStringView text = page_.Lines.TextOf(page_.Lines.Lines[line]);
            if (page_.IsCodeLine[line] && text.size() < name.size() + 20 && text != name && text.contains(name))
                return true;
        }
        return false;
    }

    // Whether the mail of nearly all goes to one house, none of those that give mail to everybody: it is their
    // employer.
    bool MailsOfOneHouse() const {
        QHash<QString, int> hosts;
        int filled = 0;
        for (const PageRecord& record : reading_.Records)
            if (const qsizetype at = record.Fields.Email.lastIndexOf(u'@'); at > 0) {
                ++hosts[record.Fields.Email.sliced(at + 1).toLower()];
                ++filled;
            }
        const auto most = std::max_element(hosts.cbegin(), hosts.cend());
        return filled >= 4 && *most * 5 >= filled * 4 &&
               std::ptrdiff_t{5} * filled >= std::ssize(reading_.Records) * 4 && !IsMailForEverybody(most.key());
    }

    // How many different values there are, as a share of the records that have one; that share of none is given.
    double DistinctIn(QString Lead::*field, double ofNone) const {
        QSet<QString> values;
        int filled = 0;
        for (const PageRecord& record : reading_.Records)
            if (const QString& value = record.Fields.*field; !value.isEmpty()) {
                values.insert(value);
                ++filled;
            }
        return filled == 0 ? ofNone : static_cast<double>(values.size()) / filled;
    }
    double DistinctPhones() const { return DistinctIn(&Lead::Phone, 1); }
    double DistinctCategories() const { return DistinctIn(&Lead::Category, 0); }

    // What begins the records of a flat list bears their names, or each has the name of the next one.
    bool NamesComeFirst() const {
        size_t first = 0;
        size_t named = 0;
        for (size_t record = 0; record < columns_.Count(); ++record)
            if (const NodeIndex name = names_.NodeOf(record); name != noNode) {
                ++named;
                first += name < page_.Page.End(columns_.List.Records[record].Begin);
            }
        return first * 2 >= named;
    }

    double DistinctAddresses() const {
        QSet<QString> addresses;
        for (const PageRecord& record : reading_.Records)
            addresses.insert(record.Fields.FullAddress);
        return static_cast<double>(addresses.size()) / static_cast<double>(reading_.Records.size());
    }

    // Names that are a street with a number, as a share.
    double StreetNames() const {
        const auto streets = std::count_if(reading_.Records.begin(), reading_.Records.end(), [](const auto& record) {
            return HasStreetNumber(record.Fields.Name) && HasStreetWord(record.Fields.Name);
        });
        return static_cast<double>(streets) / static_cast<double>(reading_.Records.size());
    }

    // "12 - 30 €", "$80-$120"
    static bool IsRange(QStringView text) {
        for (qsizetype at = text.indexOf(u'-', 1); at > 0 && at + 1 < text.size(); at = text.indexOf(u'-', at + 1))
            if (text[at - 1].isSpace() ? text[at + 1].isSpace() : !text[at - 1].isLetter() && !text[at + 1].isLetter())
                return true;
        return text.contains(u'\u2013') || text.contains(u'~') || text.contains(u'\u301C');
    }

    // Amounts and dates that are a record's own: no price ranges, no dates of reviews.
    void CountOthers(const PageRecord& record, bool& price, bool& date, HintSet& hints) const {
        const auto& pieces = page_.Lines.Pieces;
        int line = -1;
        for (auto i = static_cast<size_t>(page_.Lines.PieceFrom(record.Begin));
             i < pieces.size() && pieces[i].Node < record.End; ++i) {
            if (pieces[i].Line == line)
                continue;
            line = pieces[i].Line;
            const auto number = static_cast<size_t>(line);
            const QStringView text = page_.Lines.TextOf(page_.Lines.Lines[number]);
            if (!page_.IsDateLine[number] && !page_.IsPriceLine[number])
                continue;
            HintSet around = 0;
            int levels = 0;
            for (NodeIndex at = page_.Page.Parent(pieces[i].Node); at != noNode && at > record.Begin && levels < 6;
                 at = page_.Page.Parent(at), ++levels)
                around |= page_.HintsOf(at);
            const bool aside = Has(around, Hint::Review) || Has(around, Hint::Hours) ||
                               Has(around, Hint::Description) || text.size() > 150;
            const bool range = IsRange(text);
            price = price || (page_.IsPriceLine[number] && !aside && !range);
            date = date || (page_.IsDateLine[number] && !aside);
        }
        for (NodeIndex node = record.Begin; node < record.End && node < record.Begin + 200; ++node) {
            if (!page_.Page.IsElement(node))
                continue;
            if (page_.Page.HasAttribute(node, u"itemtype"))
                hints |= page_.HintsOf(node) & (Hint::Product | Hint::Job | Hint::Event);
            hints |= page_.HintsOf(node) & (Hint::Author | Hint::Business | Hint::Rating);
        }
    }

    void Judge() {
        const Shares shares = Measure();
        const double count = static_cast<double>(reading_.Records.size());
        const double contact =
            3 * shares.Phone + 3 * shares.Address + 1.5 * shares.Website + 1.5 * shares.Mail + 0.5 * shares.Map;
        const double distinct = names_.DistinctNames();
        const double quality = contact + shares.Place + 0.5 * shares.Category + 0.5 * shares.Details +
                               0.25 * shares.Rating + std::min(names_.Score(), 6.0) / 3;
        reading_.Score = quality * std::min(count, 1000.0) * (names_.IsOneName() ? 0.5 : distinct);
        if (columns_.List.Flat && !NamesComeFirst())
            reading_.Score *= 0.85;
        const auto no = [this](const QString& why) {
            reading_.Sure = false;
            reading_.Verdict = why;
        };
        const bool other = subject_.OtherThings && !subject_.Businesses;
        const bool directory = subject_.Businesses && !subject_.OtherThings && !subject_.OneFirm;
        const auto often = [&shares](Hint hint) { return Has(shares.Often, hint); };
        const bool stores = names_.IsOneName() && shares.Street >= 0.8 && DistinctAddresses() >= 0.8;
        if (distinct < 0.5 && !stores)
            return no(u"its names repeat"_s);
        // Beds, tables and desks have prices, and so have the firms of a list that says what an hour of theirs costs.
        const bool hosts = directory && shares.Details >= 0.5 &&
                           (subject_.Hosts || shares.Street >= 0.7 || (shares.Place >= 0.8 && shares.Rating >= 0.5));
        if (shares.Price > 0.5 && !hosts && (shares.Phone < 0.5 || other))
            return no(u"its records have prices"_s);
        // Dates of reviews or of a membership stand in lists of addresses, too.
        const bool dated = shares.Date > 0.5 && shares.Phone < 0.3;
        const bool rated =
            shares.Place >= 0.8 && shares.Details >= 0.8 && (shares.Kinds >= 0.6 || shares.Rating >= 0.6);
        if (dated && ((shares.Street < 0.5 && !rated) || !directory))
            return no(u"its records have dates"_s);
        if (often(Hint::Author) && often(Hint::Article) && shares.Phone < 0.5)
            return no(u"its records are what readers wrote"_s);
        if ((shares.House > 0.6 || MailsOfOneHouse() || (shares.Phone > 0.6 && DistinctPhones() < 0.5)) &&
            (shares.Address < 0.3 || shares.Phone < 0.3))
            return no(u"its records are people of one house"_s);
        if (count >= 3 && shares.Address > 0.5 && DistinctAddresses() < 0.34 &&
            (shares.Phone < 0.5 || DistinctPhones() < 0.34))
            return no(u"its records name the same address again and again"_s);
        if (shares.Phone < 0.3 && shares.Website < 0.3 && StreetNames() > 0.6)
            return no(u"its names are streets"_s);
        if (shares.Questions > 0.5)
            return no(u"its records are questions"_s);
        if (shares.Towns > 0.6)
            return no(u"its records are the offices of one firm, named by their towns"_s);
        if ((often(Hint::Job) || often(Hint::Product) || often(Hint::Event)) && shares.Phone < 0.5)
            return no(u"its records call themselves jobs, goods or events"_s);
        if (often(Hint::Author) && shares.Phone < 0.5 && (shares.Street < 0.5 || !directory))
            return no(u"its records have authors"_s);
        if (subject_.Jobs && shares.Phone < 0.5)
            return no(u"the page is about jobs"_s);
        if (shares.Jobs > 0.4)
            return no(u"its records are jobs"_s);
        // A town with its postal code stands in advertisements of all kinds, too.
        const bool located =
            shares.Address >= 0.5 && (shares.Street >= 0.4 || often(Hint::Business) || subject_.Businesses);
        const bool reachable = shares.Phone >= 0.5 || located ||
                               (shares.Phone + shares.Address >= 0.6 && shares.Phone > 0 && contact >= 2);
        const double wanted = (other ? 4.0 : 1.5) + (count < 3 ? 2.0 : 0);
        // Two addresses stand in many a footer, three or four in many an article.
        const double both = std::min(shares.Phone, shares.Address);
        const bool few = count < 5;
        if (few && (names_.Score() < (directory && both >= 0.5 && shares.Address >= 0.9 ? 1.5 : 2.5) ||
                    (shares.Details < 0.5 && !often(Hint::Business) && !subject_.Businesses)))
            return no(u"too few records to be sure of"_s);
        if (few && subject_.OneFirm && shares.Details < 0.5)
            return no(u"too few records, and the page is about one firm"_s);
        if (count < 3 && (both < 0.9 || (shares.Details < 0.9 && !directory)))
            return no(u"two records are not enough to be sure of"_s);
        if (reachable && contact >= wanted) {
            reading_.Sure = true;
            reading_.Verdict = u"its records have phones or addresses"_s;
            return;
        }
        if (reachable)
            return no(u"too few signs of businesses in its records"_s);
        // Names, towns and links only.
        if (count < 5)
            return no(u"too few records without phones and addresses"_s);
        const bool trades = shares.Trades >= 0.5 && shares.Place >= 0.5 && DistinctCategories() <= 0.7;
        if (other || (!subject_.Businesses && !trades))
            return no(u"neither phones nor addresses, and nothing says that the page lists businesses"_s);
        if ((shares.Price > 0.5 && !hosts) || (shares.Date > 0.5 && !rated))
            return no(u"its records have prices or dates"_s);
        const double kinds = DistinctCategories() <= 0.7 ? 0.5 * shares.Kinds : 0;
        const double signs = 1.5 * shares.Place + shares.Category + kinds + shares.Rating + shares.Website +
                             shares.Map + (often(Hint::Business) ? 1 : 0);
        if (shares.Details < 0.7 || names_.DistinctDetails() < 0.7)
            return no(u"its records have neither phones, nor addresses, nor pages of their own"_s);
        // A guide's entries have a picture and a text, their names are shorter than headlines.
        const bool guide = directory && count >= 8 && shares.Pictures >= 0.7 && shares.Length <= 28 &&
                           shares.Details >= 0.9 && names_.DistinctDetails() >= 0.9 && !often(Hint::Article) &&
                           names_.Score() >= 2.5;
        if (signs < 1.5 && !guide)
            return no(u"names and links, without towns, trades or ratings"_s);
        reading_.Sure = true;
        reading_.Verdict = u"names, places or trades, and the page is about businesses"_s;
        // Where the links are all there is, a heading without one is no entry.
        if (shares.Details >= 0.9)
            std::erase_if(reading_.Records, [](const PageRecord& record) {
                return record.Fields.DetailsLink.isEmpty() && record.Fields.FullAddress.isEmpty() &&
                       record.Fields.City.isEmpty() && record.Fields.Category.isEmpty();
            });
    }

    const PageAnnotations& page_;
    const PageSubject& subject_;
    RecordColumns columns_;
    RecordNames names_;
    QString placesWhy_;
    std::vector<std::array<NodeIndex, FieldCount>> nodes_; // by record: what its fields were taken from
    RecordsReading reading_;
};

} // namespace

PageSubject SubjectOf(const PageAnnotations& page) {
    PageSubject subject;
    const PageTree& tree = page.Page;
    const NodeIndex headEnd = tree.Head() == noNode ? noNode : tree.End(tree.Head());
    for (NodeIndex node = tree.Head(); node != noNode && node < headEnd; ++node)
        if (tree.Is(node, u"title") && tree.FirstChild(node) != noNode) {
            subject.Words += BareWords(tree.Text(tree.FirstChild(node)).left(300)) + u'\n';
            break;
        }
    int headings = 0;
    for (NodeIndex node = tree.Body(); node != noNode && node < tree.End(tree.Body()) && headings < 2; ++node)
        if (tree.Is(node, u"h1")) {
            subject.Words += BareWords(page.TextWithin(node).left(300)) + u'\n';
            ++headings;
        }
    QString path = QUrl(page.Url).path().toLower();
    for (QChar& c : path)
        if (!c.isLetter())
            c = u' ';
    const QString words = subject.Words + path.simplified();
    subject.Businesses = NamesBusinesses(words);
    subject.Hosts = NamesHosts(words);
    subject.OtherThings = NamesOtherThings(words);
    subject.Jobs = NamesJobs(words);
    subject.OneFirm = NamesOneFirm(words);
    return subject;
}

RecordsReading ReadRecords(const PageAnnotations& page, const Signatures& signatures, const RecordList& list,
                           const PageSubject& subject, Selectors selectors) {
    ListReader reader(page, signatures, list, subject);
    RecordsReading reading = reader.Read();
    if (!reading.Records.empty())
        reader.Describe(reading, selectors);
    return reading;
}

} // namespace Brindle
